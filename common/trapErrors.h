#pragma once

#include "common/StepError.h"

#include <utility>

namespace velmorant {

enum class StepOutcome { Done, Failed };

/// Runs a step with its errors trapped and resumed: the handler goes on whatever the step did.
/// Only our own error is trapped; anything else is a defect and must be seen.
template <typename Step>
StepOutcome trapErrors(Step&& step) {
    try {
        std::forward<Step>(step)();
        return StepOutcome::Done;
    } catch (const StepError&) {
        return StepOutcome::Failed;
    }
}

} // namespace velmorant

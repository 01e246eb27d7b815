#pragma once

#include "common/ErrorLog.h"
#include "common/SourcePlace.h"
#include "common/StepError.h"

#include <utility>

namespace velmorant {

enum class StepOutcome { Done, Failed };

/// For a handler that catches by itself and goes on.
inline void noteError(ErrorLog* log, const StepError& error,
                      const SourcePlace& where = SourcePlace::current()) {
    if (log != nullptr)
        log->passedOver(error.what(), where);
}

/// Runs a step with its errors trapped and resumed: the handler goes on whatever the step did, and
/// the log, where there is one, notes what was passed over. Only our own error is trapped; anything
/// else is a defect and must be seen.
template <typename Step>
StepOutcome trapErrors(ErrorLog* log, Step&& step,
                       const SourcePlace& where = SourcePlace::current()) {
    try {
        std::forward<Step>(step)();
        return StepOutcome::Done;
    } catch (const StepError& error) {
        noteError(log, error, where);
        return StepOutcome::Failed;
    }
}

/// Runs a step so where nothing is noted: what fails is part of the answer, or expected.
template <typename Step>
StepOutcome trapErrors(Step&& step) {
    return trapErrors(nullptr, std::forward<Step>(step));
}

} // namespace velmorant

#pragma once

#include <stdexcept>
#include <string>

namespace velmorant {

/// The one exception of the logic and of the desktop's adapters: a step of a handler failed.
///
/// what() is the plain description that a message box may show. The guard at a handler's edge
/// decides what follows: skip the step, end silently, or show the message.
class StepError : public std::runtime_error {
  public:
    explicit StepError(const std::string& description) : std::runtime_error(description) {}
};

} // namespace velmorant

#pragma once

#include <chrono>

namespace velmorant {

/// Waiting inside a handler.
class Waits {
  public:
    virtual ~Waits() = default;
    /// Keeps the windows painting and the picture playing, but delivers no user input (but the
    /// "Cancel" of the window that waits) and fires no program timer.
    virtual void sleep(std::chrono::milliseconds duration) = 0;
    /// Lets pending events through, as far as the rule above allows.
    virtual void letEventsRun() = 0;
};

} // namespace velmorant

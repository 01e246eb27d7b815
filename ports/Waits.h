#pragma once

#include <chrono>
#include <functional>

namespace velmorant {

/// Waiting inside a handler.
class Waits {
  public:
    virtual ~Waits() = default;
    /// Keeps the windows painting and the picture playing, but delivers no user input (but the
    /// "Cancel" of the window that waits) and fires no program timer.
    virtual void sleep(std::chrono::milliseconds duration) = 0;
    /// The same, but no longer than until `over` says so, which may be asked often.
    virtual void sleepUntil(std::chrono::milliseconds longest,
                            const std::function<bool()>& over) = 0;
    /// Lets pending events through, as far as the rule above allows.
    virtual void letEventsRun() = 0;
};

} // namespace velmorant

#pragma once

#include <chrono>
#include <functional>

namespace velmorant {

/// A periodic window timer. No tick comes while another handler runs or waits: the adapter
/// holds it back until that handler has returned.
class Timer {
  public:
    virtual ~Timer() = default;
    virtual void setInterval(std::chrono::milliseconds interval) = 0;
    /// Enabling an enabled timer changes nothing; enabling a disabled one starts a full interval.
    virtual void setEnabled(bool enabled) = 0;
    virtual bool enabled() const = 0;
    /// The one listener; replaces an earlier one.
    virtual void onTick(std::function<void()> tick) = 0;
};

} // namespace velmorant

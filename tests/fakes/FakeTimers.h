#pragma once

#include "ports/Timer.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace velmorant::fakes {

class FakeTimers;

/// A timer whose time passes only by FakeTimers::advance().
class FakeTimer : public Timer {
  public:
    explicit FakeTimer(FakeTimers& timers);
    ~FakeTimer() override;
    FakeTimer(const FakeTimer&) = delete;
    FakeTimer& operator=(const FakeTimer&) = delete;

    void setInterval(std::chrono::milliseconds interval) override { m_interval = interval.count(); }
    void setEnabled(bool enabled) override;
    bool enabled() const override { return m_enabled; }
    void onTick(std::function<void()> tick) override { m_tick = std::move(tick); }

    std::int64_t interval() const { return m_interval; } ///< milliseconds
    int ticks() const { return m_ticks; }
    /// One tick now, as the handler gets it; fails nothing when disabled, as a late tick would not.
    void fire() {
        ++m_ticks;
        if (m_tick)
            m_tick();
    }

  private:
    friend class FakeTimers;
    FakeTimers& m_timers;
    std::int64_t m_interval = 0;
    std::int64_t m_due = 0;
    bool m_enabled = false;
    int m_ticks = 0;
    std::function<void()> m_tick;
};

/// The time of all fake timers of a test: fires them in order of their due times.
class FakeTimers {
  public:
    std::int64_t now() const { return m_now; }

    void advance(std::int64_t milliseconds) {
        const std::int64_t end = m_now + milliseconds;
        while (FakeTimer* next = nextDue(end)) {
            m_now = next->m_due;
            next->m_due += next->m_interval > 0 ? next->m_interval : 1;
            next->fire();
        }
        m_now = end;
    }

  private:
    friend class FakeTimer;

    FakeTimer* nextDue(std::int64_t end) {
        FakeTimer* next = nullptr;
        for (FakeTimer* timer : m_timers)
            if (timer->m_enabled && timer->m_due <= end &&
                (next == nullptr || timer->m_due < next->m_due))
                next = timer;
        return next;
    }

    std::int64_t m_now = 0;
    std::vector<FakeTimer*> m_timers;
};

inline FakeTimer::FakeTimer(FakeTimers& timers) : m_timers(timers) {
    m_timers.m_timers.push_back(this);
}

inline FakeTimer::~FakeTimer() {
    std::erase(m_timers.m_timers, this);
}

inline void FakeTimer::setEnabled(bool enabled) {
    if (enabled && !m_enabled)
        m_due = m_timers.m_now + (m_interval > 0 ? m_interval : 1);
    m_enabled = enabled;
}

} // namespace velmorant::fakes

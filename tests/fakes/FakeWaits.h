#pragma once

#include "ports/Waits.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace velmorant::fakes {

/// Records every wait; `whenWaiting` is called in each, after it was recorded.
class FakeWaits : public Waits {
  public:
    void sleep(std::chrono::milliseconds duration) override {
        sleeps.push_back(duration.count());
        total += duration.count();
        if (log != nullptr)
            log->push_back("sleep " + std::to_string(duration.count()));
        if (whenWaiting)
            whenWaiting();
    }
    /// `over` is asked before the wait and, as the real wait does, after what came to pass in it.
    void sleepUntil(std::chrono::milliseconds longest, const std::function<bool()>& over) override {
        if (over()) {
            ++cutShort;
            return;
        }
        sleep(longest);
        if (over())
            ++cutShort;
    }
    void letEventsRun() override {
        ++eventRuns;
        if (log != nullptr)
            log->push_back("events");
        if (whenWaiting)
            whenWaiting();
    }

    std::vector<std::int64_t> sleeps; ///< milliseconds
    std::int64_t total = 0;
    int eventRuns = 0;
    int cutShort = 0;                        ///< waits that ended early
    std::vector<std::string>* log = nullptr; ///< shared with other fakes to see an order of calls
    std::function<void()> whenWaiting;
};

} // namespace velmorant::fakes

#pragma once

#include "ports/Clock.h"

namespace velmorant::fakes {

/// A frozen clock.
class FakeClock : public Clock {
  public:
    LocalTime localTime() const override { return time; }
    std::chrono::milliseconds steadyTime() const override { return steady; }

    LocalTime time{2012, 10, 9, 10, 30, 45};
    std::chrono::milliseconds steady{0};
};

} // namespace velmorant::fakes

#pragma once

#include "ports/Clock.h"

namespace velmorant::fakes {

/// A frozen clock.
class FakeClock : public Clock {
  public:
    LocalTime localTime() const override { return time; }

    LocalTime time{2012, 10, 9, 10, 30, 45};
};

} // namespace velmorant::fakes

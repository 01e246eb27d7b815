#pragma once

#include "ports/Clock.h"

namespace velmorant {

class QtClock : public Clock {
  public:
    LocalTime localTime() const override;
    std::chrono::milliseconds steadyTime() const override;
};

} // namespace velmorant

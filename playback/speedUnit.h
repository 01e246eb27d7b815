#pragma once

#include <cstdint>
#include <string>

namespace velmorant {

/// The sign of a unit code's speed unit.
inline std::string speedUnit(std::int32_t unitCode) {
    switch (unitCode % 10) {
    case 2:
        return "mph";
    case 3:
        return "kn";
    default:
        return "km/h";
    }
}

} // namespace velmorant

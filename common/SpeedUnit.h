#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace velmorant {

/// A unit in which speeds are shown. They are kept in km/h everywhere.
struct SpeedUnit {
    std::int32_t code;     ///< "Unit" of the configuration; its last digit is the unit's index
    double factor;         ///< from km/h
    std::string_view sign; ///< as it stands behind a number

    constexpr std::int32_t index() const { return code % 10; }
};

inline constexpr std::array speedUnits = {
    SpeedUnit{1001, 1.0, "km/h"},
    SpeedUnit{1002, 0.6213712, "mph"},
    SpeedUnit{1003, 0.5399568, "kn"},
};

/// The unit that a code's last digit stands for; null when it stands for none.
constexpr const SpeedUnit* speedUnitOf(std::int32_t code) {
    const auto found =
        std::find_if(speedUnits.begin(), speedUnits.end(),
                     [=](const SpeedUnit& each) { return each.index() == code % 10; });
    return found == speedUnits.end() ? nullptr : &*found;
}

/// The sign of a code's unit; km/h, in which speeds are kept, when it stands for none.
constexpr std::string_view speedSign(std::int32_t code) {
    const SpeedUnit* unit = speedUnitOf(code);
    return unit == nullptr ? speedUnits.front().sign : unit->sign;
}

} // namespace velmorant

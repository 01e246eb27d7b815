#pragma once

#include <cstdint>

namespace velmorant {

/// The settings that every window reads; set by the start-up, changed by the settings dialog.
struct SettingsState {
    std::int32_t languageCode = 0;  ///< "mainv": 1001 English, 1002 traditional Chinese
    std::int32_t languageIndex = 0; ///< languageCode mod 10
    std::int32_t languageBase = 0;  ///< languageIndex * 10000, added to every text offset
    std::int32_t timeZoneId = 0;    ///< "Area": 2001..2025, an offset into the text table
    double timeZoneMinutes = 0.0;   ///< signed offset of that zone from UTC, in minutes
    std::int32_t unitCode = 0; ///< "Unit": 1001 km/h, 1002 miles/hour, 1003 nautical miles/hour
    double speedFactor = 0.0;  ///< multiplier from km/h to the display unit

    /// Sets code, index and base together.
    void setLanguage(std::int32_t code);

    /// Sets the unit code and the speed factor. An index (code mod 10) other than 1, 2 or 3
    /// leaves the factor as it was.
    void setUnit(std::int32_t code);
};

} // namespace velmorant

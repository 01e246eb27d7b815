#include "common/SettingsState.h"

#include "common/SpeedUnit.h"

namespace velmorant {

void SettingsState::setLanguage(std::int32_t code) {
    const std::int32_t index = code % 10;
    languageCode = code;
    languageIndex = index;
    languageBase = index * 10000;
}

void SettingsState::setUnit(std::int32_t code) {
    unitCode = code;
    if (const SpeedUnit* unit = speedUnitOf(code))
        speedFactor = unit->factor;
}

} // namespace velmorant

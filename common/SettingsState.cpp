#include "common/SettingsState.h"

namespace velmorant {

void SettingsState::setLanguage(std::int32_t code) {
    const std::int32_t index = code % 10;
    languageCode = code;
    languageIndex = index;
    languageBase = index * 10000;
}

void SettingsState::setUnit(std::int32_t code) {
    unitCode = code;
    switch (code % 10) {
    case 1:
        speedFactor = 1.0;
        break;
    case 2:
        speedFactor = 0.6213712;
        break;
    case 3:
        speedFactor = 0.5399568;
        break;
    default:
        break;
    }
}

} // namespace velmorant

#include "desktop/widgets/SkinStatusLine.h"

#include "ports/Skin.h"
#include <utility>

namespace velmorant {

SkinStatusLine::SkinStatusLine(Skin& skin, std::string place)
    : skin_(skin), place_(std::move(place)) {}

void SkinStatusLine::show(const std::string& text) {
    skin_.setText(place_, text);
}

} // namespace velmorant

#include "desktop/widgets/SkinStatusLine.h"

#include "ports/Skin.h"
#include <utility>

namespace velmorant {

SkinStatusLine::SkinStatusLine(Skin& skin, std::string place)
    : m_skin(skin), m_place(std::move(place)) {}

void SkinStatusLine::show(const std::string& text) {
    m_skin.setText(m_place, text);
}

} // namespace velmorant

#include "settings/frmTip.h"

#include "common/trapErrors.h"
#include "settings/sizeAndCentre.h"

#include <chrono>
#include <string>

namespace velmorant {

namespace {

constexpr PixelSize splashSize{1024, 708};
constexpr std::chrono::milliseconds shownFor{3000};

} // namespace

frmTip::frmTip(const frmTipNeeds& needs) : m_needs(needs) {
    m_needs.timer.setInterval(shownFor);
    m_needs.timer.onTick([this] {
        m_needs.timer.setEnabled(false);
        m_needs.window.close();
    });
    m_needs.timer.setEnabled(true);
}

SkinLoad frmTip::Load() {
    const std::string skin =
        "skin/load/load" + std::to_string(m_needs.settings.languageIndex) + ".mp4";
    const SkinLoad loaded = loadSkin(m_needs.skin, m_needs.paths.programFile(skin), m_needs.files,
                                     m_needs.texts, m_needs.messageBox);
    // Also without a picture: the frame takes the splash's place.
    Resize();
    if (loaded == SkinLoad::Missing)
        m_needs.window.close();
    return loaded;
}

void frmTip::Resize() {
    // Setting the size reports a resize of its own.
    if (m_resizing)
        return;
    m_resizing = true;
    trapErrors(m_needs.errors, [&] { sizeAndCentre(m_needs.window, m_needs.screen, splashSize); });
    m_resizing = false;
}

} // namespace velmorant

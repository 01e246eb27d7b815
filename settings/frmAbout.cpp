#include "settings/frmAbout.h"

#include "common/textRules.h"
#include "common/trapErrors.h"
#include "settings/sizeAndCentre.h"

#include <utility>

namespace velmorant {

namespace {

constexpr PixelSize boxSize{600, 400};

} // namespace

frmAbout::frmAbout(frmAboutNeeds needs) : m_needs(std::move(needs)) {}

SkinLoad frmAbout::Load() {
    const SkinLoad loaded = loadSkin(m_needs.skin, m_needs.paths.programFile("skin/about.mp4"),
                                     m_needs.files, m_needs.texts, m_needs.messageBox);
    if (loaded == SkinLoad::Missing) {
        m_needs.window.close();
        return loaded;
    }
    sizeAndCentre(m_needs.window, m_needs.screen, boxSize);
    showFacts();
    return loaded;
}

void frmAbout::showFacts() {
    // The drawing labels the places.
    m_needs.skin.setText("place.version", m_needs.facts.version);
    m_needs.skin.setText("place.licence", m_needs.facts.licence);
    m_needs.skin.setText("place.components", m_needs.facts.components);
}

void frmAbout::SkinClick(const std::string& element) {
    trapErrors(m_needs.errors, [&] {
        if (equalsIgnoringCase(element, "close"))
            m_needs.window.close();
        else if (equalsIgnoringCase(element, "webstation"))
            m_needs.shell.execute("open", m_needs.facts.webSite, "", "", ShowWindow::Normal);
    });
}

} // namespace velmorant

#include "desktop/wiring/WindowBridges.h"

namespace velmorant {

void CommandsOfFrame::showSettings() {
    if (m_rooms.setup->Load() == SkinLoad::Loaded)
        m_panes.setup.qtWindow().showModal();
}

void CommandsOfFrame::showAbout() {
    if (m_rooms.about->Load() == SkinLoad::Loaded)
        m_panes.about.qtWindow().showModal();
}

bool SettingsToProgram::writeConfiguration(const std::string& key, const std::string& value) {
    IniFile configuration(m_host.profile);
    configuration.open(m_host.paths.globalConfigurationFile(), "config");
    return configuration.writeKey(key, value) == IniFileWrite::Kept;
}

} // namespace velmorant

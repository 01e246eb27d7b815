#include "desktop/wiring/StartingWindows.h"

#include "desktop/windows/FirstPainting.h"

#include <chrono>
#include <utility>

namespace velmorant {

namespace {

constexpr std::chrono::milliseconds paintingLimit{200};

} // namespace

StartingWindows::StartingWindows(Rooms& rooms, SplashWindow& splash,
                                 const std::unique_ptr<Panes>& panes, Journal& journal,
                                 std::function<void()> buildWindows,
                                 std::function<void()> endProgram)
    : m_rooms(rooms),
      m_splash(splash),
      m_panes(panes),
      m_journal(journal),
      m_buildWindows(std::move(buildWindows)),
      m_endProgram(std::move(endProgram)) {}

void StartingWindows::showSplash() {
    if (m_rooms.tip->Load() != SkinLoad::Loaded)
        return;
    if (showPainted(m_splash, m_splash.skin(), paintingLimit))
        m_journal.write("painted splash");
}

void StartingWindows::bringSplashToForeground() {
    m_splash.qtWindow().setForeground();
    m_buildWindows();
}

void StartingWindows::loadMainWindow() {
    m_loaded = m_rooms.main->Load() == SkinLoad::Loaded;
    if (!m_loaded || m_rooms.list->Load() == SkinLoad::Loaded)
        return;
    // A frame with an empty pane in place of the list would take recordings that nobody sees.
    m_loaded = false;
    m_rooms.main->Unload();
    m_endProgram();
}

void StartingWindows::showMainWindow() {
    if (!m_loaded)
        return;
    new FirstPainting(m_panes->frame.skin(), [this] { m_journal.write("painted frame"); });
    m_panes->frame.qtWindow().show();
}

void LoadingBands::setChild(const std::string& band, const std::string& window) {
    m_panes->frame.bands().setChild(band, window);
    if (const auto loader = m_loaders.find(window); loader != m_loaders.end())
        loader->second();
}

} // namespace velmorant

#pragma once

#include "app/LanguageTable.h"
#include "app/StartUp.h"
#include "desktop/wiring/Host.h"
#include "desktop/wiring/ListMenu.h"
#include "desktop/wiring/Panes.h"
#include "desktop/wiring/Rooms.h"
#include "desktop/wiring/StartingWindows.h"
#include "desktop/wiring/TitleMenu.h"
#include "desktop/wiring/WindowBridges.h"
#include "track/MapData.h"

#include <functional>
#include <memory>
#include <string>

namespace velmorant {

/// How the picture is drawn: as VELMORANT_VIDEO says.
VideoOutput videoOutput(const EnvironmentLookup& environment);

/// The whole program: host, widgets, rooms and the connections between them.
///
/// The application object must exist, and prepareWebEngine() have been called before it.
class Application {
  public:
    Application(EnvironmentLookup environment, const std::string& programFolder);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Start-up, without the event loop.
    StartUpResult start(const std::string& commandLine);

    // For code that drives the program from within; available once it is running.
    Rooms& rooms() { return m_rooms; }
    Panes& panes() { return *m_panes; }
    Host& host() { return *m_host; }

  private:
    struct Bridges;
    void buildSplash();
    void buildWindows(); ///< every window behind the splash, with its rooms and connections
    void buildTrackRooms();
    void buildPlaybackRooms();
    void buildListRoom();
    void buildWindowRooms();
    void buildUpdateRoom();
    void connectPlayer();
    void connectPicture();
    void connectControlBar();
    void connectList();
    void connectMap();
    void connectFrame();
    void connectDialogs();
    WebEngineBrowserSettings mapSettings();
    std::optional<std::string> answerCommand(const std::string& name, const std::string& query);
    enum class MapSize { Pane, WholeWindow };
    void showMap(MapSize size);
    bool leaveWholeMap(const KeyPress& press); ///< true: the key is used
    void configureTiles();
    void endProgram();

    EnvironmentLookup m_environment;
    Rooms m_rooms;
    LanguageTable m_texts;
    std::unique_ptr<Host> m_host;
    std::unique_ptr<SplashWindow> m_splash;
    std::unique_ptr<QtTimer> m_splashTimer;
    std::unique_ptr<TileCache> m_tiles;
    std::unique_ptr<MapData> m_mapData;
    std::unique_ptr<Panes> m_panes;
    std::unique_ptr<JournalledBrowser> m_browser;
    std::unique_ptr<Bridges> m_bridges;
    std::unique_ptr<ListMenu> m_listMenu;
    std::unique_ptr<TitleMenu> m_titleMenu;
    LoadingBands m_playerBands{m_panes};
    LoadingBands m_frameBands{m_panes};
    std::unique_ptr<StartingWindows> m_startingWindows;
};

} // namespace velmorant

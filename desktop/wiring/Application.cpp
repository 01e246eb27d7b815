#include "desktop/wiring/Application.h"

#include "app/tileSettings.h"
#include "common/textRules.h"
#include "desktop/system/endEventLoop.h"
#include "desktop/wiring/Bridges.h"
#include "desktop/wiring/paneNames.h"

#include <QUrl>
#include <QUrlQuery>

namespace velmorant {

namespace {

constexpr qint64 tileCacheLimit = 200ll * 1024 * 1024;

} // namespace

VideoOutput videoOutput(const EnvironmentLookup& environment) {
    return equalsIgnoringCase(environment("VELMORANT_VIDEO").value_or(""), "opengl")
               ? VideoOutput::OpenGl
               : VideoOutput::Software;
}

Application::Application(EnvironmentLookup environment, const std::string& programFolder)
    : m_environment(std::move(environment)),
      m_texts(m_rooms.state.settings, m_environment("VELMORANT_SERVER").value_or("")) {
    m_host = std::make_unique<Host>(m_environment, programFolder, m_texts);
    buildSplash();
    m_startingWindows = std::make_unique<StartingWindows>(
        m_rooms, *m_splash, m_panes, m_host->journal, [this] { buildWindows(); },
        [this] { endProgram(); });
}

void Application::buildWindows() {
    m_tiles = std::make_unique<TileCache>(
        QString::fromStdString(folderOf(m_host->paths, m_host->paths.temporaryFolder())) + "/tiles",
        tileCacheLimit);
    m_panes = std::make_unique<Panes>(*m_host, m_texts, videoOutput(m_environment), mapSettings());
    m_browser = std::make_unique<JournalledBrowser>(m_panes->map.browser, m_host->journal);
    m_rooms.rows = std::make_unique<RecordingList>();
    m_rooms.rows->addListener(*m_panes->list.view);
    m_mapData = std::make_unique<MapData>(m_rooms.state, *m_rooms.rows, m_host->paths);
    m_bridges = std::make_unique<Bridges>(m_rooms, *m_panes, *m_host, [this] { endProgram(); });
    m_titleMenu = std::make_unique<TitleMenu>(
        *m_panes, *m_host, m_texts, [this] { m_rooms.update->Open(UpdateOpening::OnRequest); });
    m_listMenu = std::make_unique<ListMenu>(m_rooms, *m_panes, *m_host, m_texts);
    namePanes(*m_panes, m_texts);
    configureTiles();

    buildTrackRooms();
    buildPlaybackRooms();
    buildListRoom();
    buildWindowRooms();
    buildUpdateRoom();

    connectPlayer();
    connectPicture();
    connectControlBar();
    connectList();
    connectMap();
    connectFrame();
    connectDialogs();
}

Application::~Application() {
    // The rooms outlive what may still call them; but these end what they have under way through
    // transfer and timers, which are gone before the other rooms.
    m_rooms.updateSchedule.reset();
    m_rooms.update.reset();
}

StartUpResult Application::start(const std::string& commandLine) {
    StartUp startUp({.settings = m_rooms.state.settings,
                     .files = m_host->files,
                     .paths = m_host->paths,
                     .profile = m_host->profile,
                     .texts = m_texts,
                     .messageBox = m_host->messageBox,
                     .shell = m_host->shellObject,
                     .screen = m_host->screen,
                     .playerBands = m_playerBands,
                     .frameBands = m_frameBands,
                     .windows = *m_startingWindows,
                     .languageForThisRun = m_environment("VELMORANT_LANGUAGE").value_or(""),
                     .errors = &m_host->journal});
    const StartUpResult result = startUp.run(commandLine);
    if (result == StartUpResult::Running)
        m_rooms.updateSchedule->Start();
    return result;
}

void Application::endProgram() {
    m_panes->picture.player.stop();
    endEventLoop();
}

// map -> program: what the page asks for.

WebEngineBrowserSettings Application::mapSettings() {
    WebEngineBrowserSettings settings;
    settings.pageFolder = QString::fromStdString(m_host->paths.programFile("map"));
    settings.storageFolder =
        QString::fromStdString(folderOf(m_host->paths, m_host->paths.temporaryFolder()) + "/page");
    settings.language = "en";
    settings.tiles = m_tiles.get();
    settings.source.configuration = [this] { return m_mapData->configuration(); };
    settings.source.track = [this](long number) { return m_mapData->track(number); };
    settings.source.command = m_host->gate.listener(
        [this](const std::string& name, const std::string& query, const MapPageAnswer& answer) {
            answer(answerCommand(name, query));
        });
    return settings;
}

std::optional<std::string> Application::answerCommand(const std::string& name,
                                                      const std::string& query) {
    if (name != "whole-window")
        return std::nullopt;
    const bool whole =
        QUrlQuery(QString::fromStdString(query)).queryItemValue("on") == QLatin1String("1");
    showMap(whole ? MapSize::WholeWindow : MapSize::Pane);
    return whole ? "{\"wholeWindow\": true}" : "{\"wholeWindow\": false}";
}

void Application::showMap(MapSize size) {
    const bool whole = size == MapSize::WholeWindow;
    m_panes->frame.enlarge(whole ? &m_panes->map.browser.view() : nullptr);
    m_mapData->setWholeWindow(whole);
}

bool Application::leaveWholeMap(const KeyPress& press) {
    if (press.key != "Esc" || m_panes->frame.enlarged() == nullptr)
        return false;
    showMap(MapSize::Pane);
    if (m_rooms.mediaCtrl->ready())
        m_rooms.mediaCtrl->runScript("velmorantMap.readConfiguration()");
    return true;
}

void Application::configureTiles() {
    const std::optional<TileSettings> settings = tileSettings(m_environment);
    if (!settings)
        return;
    m_tiles->setProvider(TileProvider{QString::fromStdString(settings->address),
                                      QString::fromStdString(settings->referer),
                                      settings->maximumZoom});
    m_mapData->setTiles(TileCredit{settings->attribution, settings->link, settings->maximumZoom});
}

} // namespace velmorant

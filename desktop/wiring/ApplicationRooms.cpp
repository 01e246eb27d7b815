// The rooms are built here, from the bottom up. A room is handed its ports and the bridges to the
// rooms that it calls; the bridges look those up when they are called.

#include "desktop/map/prepareWebEngine.h"
#include "desktop/wiring/Bridges.h"
#include "desktop/wiring/programFacts.h"
#include "update/builtIn.h"

#include <QDateTime>

namespace velmorant {

namespace {

/// Minutes from UTC to the system's zone at a moment.
int zoneOffsetMinutes(std::int64_t utcSeconds) {
    return QDateTime::fromSecsSinceEpoch(utcSeconds).offsetFromUtc() / 60;
}

} // namespace

void Application::buildSplash() {
    m_splash = std::make_unique<SplashWindow>(m_host->gate, m_host->screen);
    m_splashTimer = std::make_unique<QtTimer>(m_host->gate);
    m_rooms.tip = std::make_unique<frmTip>(frmTipNeeds{.settings = m_rooms.state.settings,
                                                       .window = m_splash->qtWindow(),
                                                       .skin = m_splash->skin(),
                                                       .timer = *m_splashTimer,
                                                       .screen = m_host->screen,
                                                       .files = m_host->files,
                                                       .paths = m_host->paths,
                                                       .texts = m_texts,
                                                       .messageBox = m_host->messageBox,
                                                       .errors = &m_host->journal});
    m_splash->qtWindow().onResize(m_host->gate.listener([this] { m_rooms.tip->Resize(); }));
}

void Application::buildTrackRooms() {
    Bridges& bridges = *m_bridges;
    m_rooms.mediaCtrl = std::make_unique<frmMediaCtrl>(MediaCtrlNeeds{
        *m_browser, bridges.tGetMapLocal, bridges.tMapAnswer, *m_panes->map.skin, *m_panes->map.bar,
        m_host->paths, m_texts, bridges.mapToPlayer, m_panes->list.status, m_rooms.state,
        std::string(mapScheme) + "://" + mapHost + "/",
        [this](std::int32_t number) { m_rooms.sendData->SendLoadedTrack(number); }, std::nullopt});
    m_rooms.sendData = std::make_unique<frmSendData>(
        SendDataNeeds{.tStart = bridges.tStart,
                      .window = m_panes->extraction,
                      .waits = m_host->waits,
                      .files = m_host->files,
                      .paths = m_host->paths,
                      .shell = m_host->shell,
                      .document = m_host->trackDocument,
                      .messages = m_host->messageBox,
                      .texts = m_texts,
                      .status = m_panes->list.status,
                      .list = *m_rooms.rows,
                      .page = *m_rooms.mediaCtrl,
                      .state = m_rooms.state,
                      .removeMissingRows = [this] { m_rooms.list->RemoveMissing(); }});
    m_rooms.trackExport =
        std::make_unique<TrackExportRun>(TrackExportRunNeeds{.dialogs = m_host->dialogs,
                                                             .exporter = m_host->trackExport,
                                                             .window = m_panes->extraction,
                                                             .waits = m_host->waits,
                                                             .paths = m_host->paths,
                                                             .messages = m_host->messageBox,
                                                             .texts = m_texts,
                                                             .status = m_panes->list.status});
    m_rooms.follow = std::make_unique<PositionFollow>(
        PositionFollowNeeds{m_panes->picture.player, *m_panes->control.skin, bridges.followToChart,
                            *m_rooms.mediaCtrl, m_rooms.state});
}

void Application::buildPlaybackRooms() {
    Bridges& bridges = *m_bridges;
    PicturePane& picture = m_panes->picture;
    m_rooms.child = std::make_unique<frmChild>(
        ChildNeeds{picture.player, picture.player, picture.view, picture.hidden, picture.hidden,
                   bridges.tPlayTime, *m_panes->control.skin, m_panes->frame.bands(),
                   m_host->screen, m_host->files, m_host->paths, m_host->messageBox, m_texts,
                   bridges.playbackToFollow, bridges.playbackToList});
    m_rooms.chart = std::make_unique<CurveChart>(CurveChartNeeds{
        m_panes->control.chart, m_texts, *m_rooms.child, bridges.playbackToFollow, m_rooms.state});
    m_rooms.still = std::make_unique<StillPicture>(
        StillPictureNeeds{m_host->screen, m_host->capture, m_host->dialogs, m_host->clock,
                          m_host->messageBox, m_texts, *m_rooms.child});
    m_rooms.curve = std::make_unique<frmCurve>(
        CurveNeeds{picture.player, picture.player, *m_panes->control.skin, bridges.tFast,
                   m_host->files, m_host->paths, m_host->messageBox, m_texts,
                   m_panes->control.window, *m_rooms.child, *m_rooms.chart, *m_rooms.still,
                   bridges.playbackToFollow, bridges.playbackToList, m_rooms.state,
                   [this](StepDirection direction) {
                       m_panes->picture.player.stepFrame(
                           direction == StepDirection::Back ? FrameStep::Back : FrameStep::Forward);
                   },
                   [this] { m_rooms.frameSaver->Save(); }});
    m_rooms.frameSaver = std::make_unique<FrameSaver>(
        FrameSaverNeeds{bridges.frameWriter, m_host->dialogs, m_host->messageBox, m_texts,
                        m_host->paths, picture.player, *m_rooms.child, m_rooms.state});
    m_rooms.moment = std::make_unique<MomentCard>(MomentCardNeeds{
        picture.player, *m_rooms.child, m_panes->frame.skin(), *m_panes->control.skin,
        m_host->paths, m_texts, m_rooms.state, zoneOffsetMinutes});
    m_rooms.clicks = std::make_unique<PictureClicks>(*m_rooms.child, picture.view);
}

void Application::buildListRoom() {
    Bridges& bridges = *m_bridges;
    ListPane& pane = m_panes->list;
    m_rooms.list = std::make_unique<frmMP4List>(frmMP4ListNeeds{m_rooms.state,
                                                                *m_rooms.rows,
                                                                *pane.view,
                                                                *pane.view,
                                                                pane.bands,
                                                                *pane.skin,
                                                                bridges.tContinue,
                                                                pane.status,
                                                                m_host->dialogs,
                                                                m_host->messageBox,
                                                                m_host->files,
                                                                m_host->folders,
                                                                m_host->paths,
                                                                m_host->screen,
                                                                m_texts,
                                                                m_host->waits,
                                                                m_host->handOverDocument,
                                                                pane.progress,
                                                                bridges.listToMap,
                                                                bridges.listToPlayer,
                                                                bridges.listToChart,
                                                                bridges.listToExtraction});
    pane.view->setSource(&bridges.listRows);
}

void Application::buildWindowRooms() {
    Bridges& bridges = *m_bridges;
    SettingsState& settings = m_rooms.state.settings;
    m_rooms.main = std::make_unique<frmMain>(frmMainNeeds{.settings = settings,
                                                          .window = m_panes->frame.qtWindow(),
                                                          .native = m_panes->frame.nativeWindow(),
                                                          .skin = m_panes->frame.skin(),
                                                          .splash = m_splash->qtWindow(),
                                                          .files = m_host->files,
                                                          .paths = m_host->paths,
                                                          .screen = m_host->screen,
                                                          .texts = m_texts,
                                                          .messageBox = m_host->messageBox,
                                                          .waits = m_host->waits,
                                                          .commands = bridges.commandsOfFrame,
                                                          .errors = &m_host->journal});
    m_rooms.setup =
        std::make_unique<frmSetupInfo>(frmSetupInfoNeeds{.settings = settings,
                                                         .window = m_panes->setup.qtWindow(),
                                                         .skin = m_panes->setup.skin(),
                                                         .screen = m_host->screen,
                                                         .files = m_host->files,
                                                         .paths = m_host->paths,
                                                         .texts = m_texts,
                                                         .messageBox = m_host->messageBox,
                                                         .shell = m_host->shell,
                                                         .targets = bridges.settingsToProgram,
                                                         .errors = &m_host->journal});
    m_rooms.about = std::make_unique<frmAbout>(frmAboutNeeds{.window = m_panes->about.qtWindow(),
                                                             .skin = m_panes->about.skin(),
                                                             .screen = m_host->screen,
                                                             .files = m_host->files,
                                                             .paths = m_host->paths,
                                                             .texts = m_texts,
                                                             .messageBox = m_host->messageBox,
                                                             .shell = m_host->shell,
                                                             .facts = programFacts(),
                                                             .errors = &m_host->journal});
}

void Application::buildUpdateRoom() {
    Bridges& bridges = *m_bridges;
    m_rooms.update = std::make_unique<frmUpdate>(frmUpdateNeeds{.window = m_panes->updateWindow,
                                                                .progress = m_panes->update,
                                                                .transfer = bridges.transfer,
                                                                .tStartLoad = bridges.tStartLoad,
                                                                .tAllLoad = bridges.tAllLoad,
                                                                .tClose = bridges.tClose,
                                                                .texts = m_texts,
                                                                .messageBox = m_host->messageBox,
                                                                .shell = m_host->shell,
                                                                .paths = m_host->paths,
                                                                .mainProgram = mainProgramName,
                                                                .publicKey = builtInUpdateKey(),
                                                                .errors = &m_host->journal});
    m_rooms.updateSchedule = std::make_unique<UpdateSchedule>(
        UpdateScheduleNeeds{.timer = bridges.updateTimer,
                            .clock = m_host->clock,
                            .texts = m_texts,
                            .profile = m_host->profile,
                            .paths = m_host->paths,
                            .open = [this] { m_rooms.update->Open(UpdateOpening::Automatic); },
                            .errors = &m_host->journal});
    m_panes->updateWindow.onCloseRequest(
        m_host->gate.listener([this] { m_rooms.update->Close(); }));
}

} // namespace velmorant

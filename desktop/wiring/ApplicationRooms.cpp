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
        .htmlView = *m_browser,
        .tGetMapLocal = bridges.tGetMapLocal,
        .tMapAnswer = bridges.tMapAnswer,
        .backgroundSkin = *m_panes->map.skin,
        .controlSkin = *m_panes->map.bar,
        .paths = m_host->paths,
        .texts = m_texts,
        .status = m_panes->list.status,
        .state = m_rooms.state,
        .list = *m_rooms.rows,
        .player = m_panes->picture.player,
        .builtInBase = std::string(mapScheme) + "://" + mapHost + "/",
        .drawAgain = [this](std::int32_t number) { m_rooms.sendData->SendLoadedTrack(number); },
        .startRow = [this](int row) { return m_rooms.list->PlayEntry(row); },
        .seek =
            [this](double seconds) {
                m_rooms.child->seek(seconds);
                m_rooms.child->enablePlayTimer();
            }});
    m_rooms.sendData = std::make_unique<frmSendData>(
        SendDataNeeds{.tStart = bridges.tStart,
                      .clock = m_host->clock,
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
}

void Application::buildPlaybackRooms() {
    Bridges& bridges = *m_bridges;
    PicturePane& picture = m_panes->picture;
    m_rooms.follow =
        std::make_unique<PositionFollow>(PositionFollowNeeds{.player = picture.player,
                                                             .controlBar = *m_panes->control.skin,
                                                             .chart = m_panes->control.chart,
                                                             .page = *m_rooms.mediaCtrl,
                                                             .state = m_rooms.state});
    m_rooms.child = std::make_unique<frmChild>(ChildNeeds{
        .player = picture.player,
        .settings = picture.player,
        .view = picture.view,
        .hiddenPlayer = picture.hidden,
        .hiddenSettings = picture.hidden,
        .tPlayTime = bridges.tPlayTime,
        .controlBar = *m_panes->control.skin,
        .bands = m_panes->frame.bands(),
        .screen = m_host->screen,
        .files = m_host->files,
        .paths = m_host->paths,
        .messages = m_host->messageBox,
        .texts = m_texts,
        .follow = *m_rooms.follow,
        .mediaEnded = [this] { m_rooms.list->queue().MediaEnded(); },
        .playbackFailed =
            [this](const std::string& reason) { m_rooms.list->queue().PlaybackFailed(reason); }});
    m_rooms.chart = std::make_unique<CurveChart>(CurveChartNeeds{.chart = m_panes->control.chart,
                                                                 .texts = m_texts,
                                                                 .player = *m_rooms.child,
                                                                 .follow = *m_rooms.follow,
                                                                 .state = m_rooms.state});
    m_rooms.still = std::make_unique<StillPicture>(StillPictureNeeds{.screen = m_host->screen,
                                                                     .capture = m_host->capture,
                                                                     .dialogs = m_host->dialogs,
                                                                     .clock = m_host->clock,
                                                                     .messages = m_host->messageBox,
                                                                     .texts = m_texts,
                                                                     .player = *m_rooms.child});
    m_rooms.curve = std::make_unique<frmCurve>(CurveNeeds{
        .controls = picture.player,
        .settings = picture.player,
        .skin = *m_panes->control.skin,
        .tFast = bridges.tFast,
        .files = m_host->files,
        .paths = m_host->paths,
        .messages = m_host->messageBox,
        .texts = m_texts,
        .window = m_panes->control.window,
        .player = *m_rooms.child,
        .chart = *m_rooms.chart,
        .still = *m_rooms.still,
        .follow = *m_rooms.follow,
        .list = *m_rooms.rows,
        .state = m_rooms.state,
        .startRow = [this](int row) { return m_rooms.list->PlayEntry(row); },
        .stepFrame =
            [this](StepDirection direction) {
                m_panes->picture.player.stepFrame(
                    direction == StepDirection::Back ? FrameStep::Back : FrameStep::Forward);
            },
        .saveFrame = [this] { m_rooms.frameSaver->Save(); }});
    m_rooms.keys = std::make_unique<PlayerKeys>(*m_rooms.curve, picture.view);
    m_rooms.frameSaver =
        std::make_unique<FrameSaver>(FrameSaverNeeds{.writer = bridges.frameWriter,
                                                     .dialogs = m_host->dialogs,
                                                     .messages = m_host->messageBox,
                                                     .texts = m_texts,
                                                     .paths = m_host->paths,
                                                     .controls = picture.player,
                                                     .player = *m_rooms.child,
                                                     .state = m_rooms.state});
    m_rooms.moment =
        std::make_unique<MomentCard>(MomentCardNeeds{.controls = picture.player,
                                                     .player = *m_rooms.child,
                                                     .frame = m_panes->frame.skin(),
                                                     .controlBar = *m_panes->control.skin,
                                                     .paths = m_host->paths,
                                                     .texts = m_texts,
                                                     .state = m_rooms.state,
                                                     .zoneOffset = zoneOffsetMinutes});
    m_rooms.clicks = std::make_unique<PictureClicks>(*m_rooms.child, picture.view);
}

void Application::buildListRoom() {
    Bridges& bridges = *m_bridges;
    ListPane& pane = m_panes->list;
    m_rooms.list = std::make_unique<frmMP4List>(frmMP4ListNeeds{
        .state = m_rooms.state,
        .list = *m_rooms.rows,
        .control = *pane.view,
        .background = *pane.view,
        .bands = pane.bands,
        .skin = *pane.skin,
        .tContinue = bridges.tContinue,
        .status = pane.status,
        .dialogs = m_host->dialogs,
        .messageBox = m_host->messageBox,
        .files = m_host->files,
        .folders = m_host->folders,
        .paths = m_host->paths,
        .screen = m_host->screen,
        .texts = m_texts,
        .waits = m_host->waits,
        .document = m_host->handOverDocument,
        .adding = pane.progress,
        .page = *m_rooms.mediaCtrl,
        .player = m_panes->picture.player,
        .refreshMyList = [this] { m_rooms.mediaCtrl->RefreshMyList(); },
        .drawChart = [this] { m_rooms.chart->Draw(); },
        .clearChart = [this] { m_rooms.curve->ResetDisplay(); },
        .playRecording = [this](const std::string& path) { m_rooms.child->playRecording(path); },
        .tracks = {.extractSelected = [this] { m_rooms.sendData->ShowModal("One"); },
                   .extractMarked = [this] { m_rooms.sendData->ShowModal("All"); },
                   .drawTracks =
                       [this](const std::vector<std::int32_t>& serials) {
                           return m_rooms.sendData->SendLoadedTracks(serials);
                       }}});
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

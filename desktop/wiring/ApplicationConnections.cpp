// What the user and the components do, handed to the rooms. Everything passes the gate, so that no
// two handlers run at once.

#include "common/Language.h"
#include "common/textRules.h"
#include "desktop/wiring/Bridges.h"
#include "desktop/wiring/paneNames.h"

#include <QApplication>
#include <QDesktopServices>
#include <QUrl>

namespace velmorant {

// desktop -> playback: the player.

void Application::connectPlayer() {
    MpvPlayer& player = m_panes->picture.player;
    HandlerGate& gate = m_host->gate;
    player.onPlayStateChange(gate.listener([this](PlayState state) {
        m_host->journal.write("state " + std::to_string(static_cast<int>(state)) + " " +
                              m_panes->picture.player.url());
        m_rooms.child->PlayStateChange(state);
    }));
    const auto failed = [this](const std::string& path, const std::string& reason) {
        m_host->journal.write(JournalLevel::Warning, "failed " + path + ": " + reason);
        m_rooms.child->PlaybackFailed(path, reason);
    };
    player.onOpenFailed(gate.listener(failed));
    // It has played as far as it goes; the end that follows finds the next row requested already.
    player.onEndedEarly(gate.listener(failed));
    m_rooms.child->onPlayStateChanged = [this](PlayState state) {
        m_rooms.curve->PlayStateChanged(state);
        m_rooms.moment->Show();
    };
    m_rooms.child->onTicked = [this] { m_rooms.moment->Show(); };
}

// desktop -> playback: the picture.

void Application::connectPicture() {
    HandlerGate& gate = m_host->gate;
    VideoWidget& picture = *m_panes->picture.widget;
    picture.onResize(gate.listener(
        [this](int width, int height) { m_rooms.child->ResizeBackground(width, height); }));
    picture.onMouse(gate.listener([this](const PictureMouseEvent& event) {
        switch (event.action) {
        case MouseAction::Press:
            m_rooms.clicks->pressed();
            break;
        case MouseAction::Release:
            m_rooms.clicks->released();
            break;
        case MouseAction::DoubleClick:
            m_rooms.clicks->doubleClicked();
            break;
        }
    }));
    picture.onWheel(gate.listener([this](int steps) { m_rooms.curve->ChangeVolume(steps * 5); }));
}

// desktop -> playback: the control bar and the chart.

void Application::connectControlBar() {
    HandlerGate& gate = m_host->gate;
    ControlPane& control = m_panes->control;
    control.skin->onClick(gate.listener(
        [this](const std::string& element) { m_rooms.curve->ButtonClicked(element); }));
    control.skin->onSlider(gate.listener([this](const std::string& element, double) {
        m_rooms.curve->SliderChanged(element);
        m_rooms.moment->EndPreview();
    }));
    control.skin->onSliderPreview(gate.listener([this](const std::string& element, double value) {
        if (element == "playprogress")
            m_rooms.moment->Preview(value);
    }));
    QObject::connect(control.skin, &SkinView::loaded, control.skin,
                     [this] { nameKeys(*m_panes->control.skin); });
    control.chart.onMouseUp(gate.listener([this](int point) { m_rooms.chart->Click(point); }));
    control.chart.onHover(gate.listener([this](int point) {
        m_panes->control.chart.setHoverText(m_rooms.chart->PointText(point));
    }));
    // app -> playback: the player window and the bar are loaded when they get their band.
    m_playerBands.onChild("frmCurve", [this] {
        m_rooms.curve->Load();
        m_rooms.child->Load();
        m_rooms.child->Resize();
        const QSize size = m_panes->picture.widget->size();
        m_rooms.child->ResizeBackground(size.width(), size.height());
        m_rooms.moment->ShowUnit();
    });
}

// desktop -> library: the recording list.

void Application::connectList() {
    HandlerGate& gate = m_host->gate;
    ListPane& pane = m_panes->list;
    pane.skin->onClick(
        gate.listener([this](const std::string& element) { m_rooms.list->MarkCommand(element); }));
    RecordingListView::Listeners listeners;
    listeners.mouseDown = gate.listener([this](int x, int y) { m_rooms.list->MouseDown(x, y); });
    listeners.mouseClick = gate.listener([this](int x, int y) { m_rooms.list->MouseClick(x, y); });
    listeners.doubleClick = gate.listener([this] { m_rooms.list->PlaySelected(); });
    listeners.select = gate.listener([this](int row) { m_rooms.rows->select(row); });
    listeners.toggle = gate.listener([this] { m_rooms.list->ToggleSelected(); });
    listeners.activate = gate.listener([this] { m_rooms.list->PlaySelected(); });
    listeners.remove = gate.listener([this] { m_rooms.list->DeleteSelected(); });
    listeners.type =
        gate.listener([this](const std::string& typed) { m_rooms.list->SelectByTime(typed); });
    listeners.contextMenu = gate.listener([this](int row, const QPoint& screenPlace) {
        m_rooms.rows->select(row);
        m_listMenu->show(row, screenPlace);
    });
    pane.view->setListeners(std::move(listeners));
    QObject::connect(pane.skin, &SkinView::loaded, pane.skin, [this] {
        m_panes->list.view->setWords(
            {m_texts.addition("list.word.marked"), m_texts.addition("list.word.notMarked"),
             m_texts.addition("list.word.playing"), m_texts.addition("list.word.recording"),
             m_texts.addition("list.word.notPlaying")});
        m_panes->list.view->setEmptyHint(m_texts.addition("list.empty"));
    });
}

// desktop -> track: the map.

void Application::connectMap() {
    HandlerGate& gate = m_host->gate;
    WebEngineBrowser& browser = m_panes->map.browser;
    browser.onDocumentComplete(gate.listener([this](const std::string& address) {
        m_rooms.mediaCtrl->DocumentComplete(address);
        m_host->journal.write("page " + address);
    }));
    browser.onLoadFailed(gate.listener([this](const std::string& address) {
        m_rooms.mediaCtrl->LoadFailed(address);
        m_host->journal.write(JournalLevel::Warning, "no page " + address);
    }));
    browser.onPageLost(gate.listener([this] { m_rooms.mediaCtrl->PageLost(); }));
    browser.onLink(gate.listener([](const std::string& address) {
        QDesktopServices::openUrl(QUrl(QString::fromStdString(address)));
    }));
    browser.onPageMessage(gate.listener(
        [this](const std::string& text) { m_host->journal.write("page says " + text); }));
    m_panes->map.bar->onClick(gate.listener(
        [this](const std::string&) { m_panes->list.view->setFocus(Qt::OtherFocusReason); }));
    // app -> track: the pane is loaded when it gets its band.
    m_frameBands.onChild("frmMediaCtrl", [this] {
        m_panes->map.browser.setLanguage(QString::fromStdString(
            std::string(languageOf(m_rooms.state.settings.languageIndex).tag)));
        m_rooms.mediaCtrl->Load();
    });
}

// desktop -> app: the frame.

void Application::connectFrame() {
    HandlerGate& gate = m_host->gate;
    MainWindow& frame = m_panes->frame;
    frame.onCommand(
        gate.listener([this](const std::string& element) { m_rooms.main->SkinClick(element); }));
    frame.onDrop(gate.listener(
        [this](const std::vector<std::string>& paths) { m_rooms.list->AddPaths(paths); }));
    frame.onKey(PlayerKeys::keys(), gate.listener([this](const KeyPress& press) {
        if (!leaveWholeMap(press))
            m_rooms.keys->use(press);
    }));
    frame.onContextMenu(gate.listener([this](const QPoint& place) { m_titleMenu->show(place); }));
    frame.qtWindow().onResize(gate.listener([this] { m_rooms.main->Resize(); }));
    frame.qtWindow().onCloseRequest(gate.listener([this] {
        if (m_rooms.main->CloseRequest() != CloseDecision::Close)
            return;
        m_rooms.main->Unload();
        m_panes->frame.qtWindow().close();
        endProgram();
    }));
}

// desktop -> settings: the dialogs.

void Application::connectDialogs() {
    HandlerGate& gate = m_host->gate;
    m_panes->setup.skin().onClick(gate.listener([this](const std::string& element) {
        if (equalsIgnoringCase(element, "cancel"))
            m_panes->setup.qtWindow().close();
        else
            m_rooms.setup->SkinClick(element);
    }));
    m_panes->about.skin().onClick(
        gate.listener([this](const std::string& element) { m_rooms.about->SkinClick(element); }));
}

} // namespace velmorant

#include "desktop/wiring/Panes.h"

#include <utility>

namespace velmorant {

namespace {

constexpr QSize markSize{16, 16};

/// A place of a skin, or the whole skin where it names none.
QRect placeOrAll(const SkinView& skin, const char* id) {
    const QRect place = skin.placeRect(id);
    return place.isEmpty() ? skin.rect() : place;
}

} // namespace

PicturePane::PicturePane(VideoOutput output, QWidget* parent)
    : player(output, AudioOutput::System),
      hidden(VideoOutput::None, AudioOutput::None),
      widget(new VideoWidget(player, parent)),
      view(*widget) {}

ControlPane::ControlPane(HandlerGate& gate, const Screen& screen, const PlayerControls& player)
    : skin(new SkinView), chart(skin), window(*skin, gate, screen) {
    // A drag shows where it would go; the picture follows when the knob is let go.
    skin->setSliderOptions("playprogress", {1, 5, SliderDrag::AtRelease,
                                            [&player] { return player.duration().value_or(0.0); }});
    skin->setSliderOptions("volume", {5, 10, SliderDrag::Live});
    skin->setSliderOptions("playspeed", {21, 21, SliderDrag::AtRelease});
    // The program switches it on for good: a picture can be taken at any time.
    skin->setReadyElements({"photo"});
    skin->setExpectedElements({"speaker", "cmdplay", "pause", "stop", "head", "end", "back", "fast",
                               "speed", "gs", "photo", "saveframe", "playprogress", "playspeed",
                               "volume"});
    QObject::connect(skin, &SkinView::loaded, skin, [this] { layOut(); });
}

void ControlPane::layOut() {
    chart.widget().setGeometry(placeOrAll(*skin, "place.chart"));
    chart.widget().show();
}

ListPane::ListPane(const Screen& screen)
    : skin(new SkinView),
      view(new RecordingListView(screen)),
      bar(new ProgressStrip(skin)),
      bands(*skin, screen),
      progress(*bar),
      status(*skin, "place.status") {
    bands.addWindow("LstMP4", *view);
    skin->setExpectedElements({"all", "normal", "lock", "none"});
    QObject::connect(skin, &SkinView::loaded, skin, [this] { layOut(); });
}

void ListPane::layOut() {
    bands.setArea("QVBar", placeOrAll(*skin, "place.list"), QtBandContainer::Edge::Top);
    bands.recalculateLayout();
    bar->setGeometry(placeOrAll(*skin, "place.progress"));
    RowPictures pictures;
    pictures.notMarked = skin->picture("mark1", markSize);
    pictures.marked = skin->picture("mark2", markSize);
    pictures.playing = skin->picture("playing", markSize);
    view->setPictures(std::move(pictures));
}

MapPane::MapPane(HandlerGate& gate, WebEngineBrowserSettings settings)
    : skin(new SkinView), bar(new SkinView(skin)), browser(std::move(settings), gate.delivery()) {
    browser.view().setParent(skin);
    QObject::connect(skin, &SkinView::loaded, skin, [this] { layOut(); });
}

void MapPane::layOut() {
    browser.view().setGeometry(placeOrAll(*skin, "place.map"));
    const QRect place = skin->placeRect("place.bar");
    bar->setVisible(!place.isEmpty());
    bar->setGeometry(place);
}

Panes::Panes(Host& host, const Texts& texts, VideoOutput output,
             WebEngineBrowserSettings mapSettings)
    : frame(host.gate, host.screen),
      picture(output, &frame),
      control(host.gate, host.screen, picture.player),
      list(host.screen),
      map(host.gate, std::move(mapSettings)),
      extraction(host.gate, host.waits, [&texts] { return texts.addition("button.cancel"); }),
      setup(host.gate, host.screen, &frame),
      about(host.gate, host.screen, &frame),
      update(texts, &frame),
      updateWindow(update, host.gate, host.screen) {
    frame.skin().setExpectedElements({"open", "delete", "setup", "info", "minimise", "close"});
    map.bar->setExpectedElements({"mylist"});
    setup.skin().setExpectedElements(
        {"lang1001", "lang1002", "unit1001", "unit1002", "unit1003", "cancel", "cmdclose"});
    about.skin().setExpectedElements({"close", "webstation"});
    frame.host(MainWindow::Pane::Picture, *picture.widget);
    frame.host(MainWindow::Pane::List, *list.skin);
    frame.bands().addWindow("frmCurve", *control.skin);
    frame.bands().addWindow("frmMediaCtrl", *map.skin);
}

} // namespace velmorant

#pragma once

#include "desktop/chart/ChartWidget.h"
#include "desktop/map/TileCache.h"
#include "desktop/map/WebEngineBrowser.h"
#include "desktop/player/MpvPlayer.h"
#include "desktop/player/VideoWidget.h"
#include "desktop/widgets/ExtractionProgress.h"
#include "desktop/widgets/ProgressStrip.h"
#include "desktop/widgets/RecordingListView.h"
#include "desktop/widgets/SkinStatusLine.h"
#include "desktop/windows/MainWindow.h"
#include "desktop/windows/SkinDialog.h"
#include "desktop/windows/UpdateWindow.h"
#include "desktop/wiring/Host.h"
#include "desktop/wiring/ListBridges.h"
#include "library/AddingProgress.h"

#include <functional>
#include <memory>
#include <string>

namespace velmorant {

/// Shows the progress of adding many files in the list's own progress line.
class ListProgress : public AddingProgress {
  public:
    explicit ListProgress(ProgressStrip& strip) : m_strip(strip) {}
    void begin(int files) override { m_strip.begin(files); }
    void step(int filesAdded) override { m_strip.setDone(filesAdded); }
    void end() override { m_strip.end(); }

  private:
    ProgressStrip& m_strip;
};

/// The picture with its two players.
struct PicturePane {
    PicturePane(VideoOutput output, QWidget* parent);
    MpvPlayer player;
    MpvPlayer hidden;    ///< plays the system clip, invisible and muted
    VideoWidget* widget; ///< a child of the frame
    VideoWidgetView view;
};

/// The control bar with the chart in it.
struct ControlPane {
    ControlPane(HandlerGate& gate, const Screen& screen, const PlayerControls& player);
    void layOut();  ///< after a skin was loaded
    SkinView* skin; ///< a child of the frame
    ChartWidget chart;
    QtWindow window;
};

/// The recording list.
struct ListPane {
    explicit ListPane(const Screen& screen);
    void layOut();
    SkinView* skin; ///< a child of the frame
    RecordingListView* view;
    ProgressStrip* bar;
    QtBandContainer bands;
    ListProgress progress;
    SkinStatusLine status;
};

/// The map pane: background, bar and browser control.
struct MapPane {
    MapPane(HandlerGate& gate, WebEngineBrowserSettings settings);
    void layOut();
    SkinView* skin; ///< a child of the frame
    SkinView* bar;
    WebEngineBrowser browser;
};

/// Every window but the splash, and the widgets in them.
struct Panes {
    Panes(Host& host, const Texts& texts, VideoOutput output, WebEngineBrowserSettings mapSettings);
    MainWindow frame;
    PicturePane picture;
    ControlPane control;
    ListPane list;
    MapPane map;
    ExtractionProgress extraction;
    SetupDialog setup;
    AboutDialog about;
    UpdateWindow update;
    QtWindow updateWindow;
};

} // namespace velmorant

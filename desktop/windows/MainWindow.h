#pragma once

#include "desktop/system/QtNativeWindow.h"
#include "desktop/widgets/DropTarget.h"
#include "desktop/widgets/SkinView.h"
#include "desktop/windows/FrameDrag.h"
#include "desktop/windows/QtBandContainer.h"
#include "desktop/windows/QtWindow.h"
#include "ports/KeyPress.h"
#include <QWidget>
#include <map>
#include <string>
#include <vector>

namespace velmorant {

/// The frame: 1024 x 708 pixels without a frame of the desktop's, its title area and commands drawn
/// by the skin, the panes hosted in the skin's places. On a smaller screen it scrolls.
///
/// Its two band containers have the bands "MediaControl" (under the picture, keeping to the bottom)
/// and "ControlBand" (from the top of the map's place).
class MainWindow : public QWidget {
    Q_OBJECT
  public:
    static constexpr int frameWidth = 1024;
    static constexpr int frameHeight = 708;

    enum class Pane { Picture, List };

    /// Gate and screen must outlive the window.
    MainWindow(HandlerGate& gate, const Screen& screen);

    SkinView& skin() { return *skin_; }
    QtWindow& qtWindow() { return window_; }
    QtNativeWindow& nativeWindow() { return native_; }
    QtBandContainer& bands() { return bands_; } ///< of the frame and of the player in it

    /// Puts a widget into a pane; it becomes a child of the frame.
    void host(Pane pane, QWidget& widget);

    /// Clicks on elements of the skin other than "minimise" and "close", which the frame serves.
    void onCommand(GatedListener<std::string> listener) { command_ = std::move(listener); }
    /// These keys, by the names of KeyPress, alone or with Shift, where the focused pane has no use
    /// for them.
    void onKey(std::vector<std::string> keys, GatedListener<KeyPress> listener);
    void onDrop(DropTarget::Listener listener) { drop_->onDrop(std::move(listener)); }
    /// Beside all panes: by mouse, menu key or Shift+F10; the place in pixels of the frame.
    void onContextMenu(GatedListener<QPoint> listener) { contextMenu_ = std::move(listener); }

    /// Lets one widget of a pane, such as the map, fill the window below the title area; null: it
    /// is in its place again.
    void enlarge(QWidget* widget);
    QWidget* enlarged() const { return enlarged_; }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void layoutPanes();
    void openContextMenu();

    SkinView* skin_;
    QtWindow window_;
    QtNativeWindow native_;
    QtBandContainer bands_;
    FrameDrag drag_;
    std::map<Pane, QPointer<QWidget>> panes_;
    QPointer<QWidget> enlarged_;
    QPointer<QWidget> enlargedParent_; ///< where it came from
    QRect enlargedPlace_;
    DropTarget* drop_; ///< a child of this window
    GatedListener<std::string> command_;
    std::vector<std::string> keys_;
    GatedListener<KeyPress> key_;
    GatedListener<QPoint> contextMenu_;
};

} // namespace velmorant

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

    SkinView& skin() { return *m_skin; }
    QtWindow& qtWindow() { return m_window; }
    QtNativeWindow& nativeWindow() { return m_native; }
    QtBandContainer& bands() { return m_bands; } ///< of the frame and of the player in it

    /// Puts a widget into a pane; it becomes a child of the frame.
    void host(Pane pane, QWidget& widget);

    /// Clicks on elements of the skin other than "minimise" and "close", which the frame serves.
    void onCommand(GatedListener<std::string> listener) { m_command = std::move(listener); }
    /// These keys, by the names of KeyPress, alone or with Shift, where the focused pane has no use
    /// for them.
    void onKey(std::vector<std::string> keys, GatedListener<KeyPress> listener);
    void onDrop(DropTarget::Listener listener) { m_drop->onDrop(std::move(listener)); }
    /// Outside all panes: by mouse, menu key or Shift+F10; the place in pixels of the frame.
    void onContextMenu(GatedListener<QPoint> listener) { m_contextMenu = std::move(listener); }

    /// Lets one widget of a pane, such as the map, fill the window below the title area; null: it
    /// is in its place again.
    void enlarge(QWidget* widget);
    QWidget* enlarged() const { return m_enlarged; }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void layoutPanes();
    void openContextMenu();

    SkinView* m_skin;
    QtWindow m_window;
    QtNativeWindow m_native;
    QtBandContainer m_bands;
    FrameDrag m_drag;
    std::map<Pane, QPointer<QWidget>> m_panes;
    QPointer<QWidget> m_enlarged;
    QPointer<QWidget> m_enlargedParent; ///< where it came from
    QRect m_enlargedPlace;
    DropTarget* m_drop; ///< a child of this window
    GatedListener<std::string> m_command;
    std::vector<std::string> m_keys;
    GatedListener<KeyPress> m_key;
    GatedListener<QPoint> m_contextMenu;
};

} // namespace velmorant

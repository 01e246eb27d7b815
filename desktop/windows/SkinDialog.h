#pragma once

#include "desktop/widgets/SkinView.h"
#include "desktop/windows/FrameDrag.h"
#include "desktop/windows/QtWindow.h"
#include <QWidget>

namespace velmorant {

/// A frameless top-level window that is one skin: the settings dialog, the about box, the splash.
///
/// It takes the size of the skin, moves by its `place.drag`, and scrolls on a screen that is
/// smaller. Escape and the window's own close are close requests.
class SkinDialog : public QWidget {
    Q_OBJECT
  public:
    enum class Kind { Dialog, Splash };

    /// Gate and screen must outlive the dialog.
    SkinDialog(HandlerGate& gate, const Screen& screen, Kind kind, QWidget* parent = nullptr);

    SkinView& skin() { return *m_skin; }
    QtWindow& qtWindow() { return m_window; }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    SkinView* m_skin;
    QtWindow m_window;
    FrameDrag m_drag;
};

/// 800 x 480.
class SetupDialog : public SkinDialog {
  public:
    SetupDialog(HandlerGate& gate, const Screen& screen, QWidget* parent = nullptr);
};

/// 600 x 400.
class AboutDialog : public SkinDialog {
  public:
    AboutDialog(HandlerGate& gate, const Screen& screen, QWidget* parent = nullptr);
};

/// 1024 x 708: the frame takes its place.
class SplashWindow : public SkinDialog {
  public:
    SplashWindow(HandlerGate& gate, const Screen& screen);
};

} // namespace velmorant

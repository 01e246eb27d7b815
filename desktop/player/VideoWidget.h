#pragma once

#include "desktop/gate/GatedListener.h"
#include "desktop/player/PictureListener.h"
#include "desktop/player/VideoSurface.h"

#include <QPixmap>
#include <QPointer>

namespace velmorant {

enum class MouseAction { Press, Release, DoubleClick };

struct PictureMouseEvent {
    MouseAction action = MouseAction::Press;
    int button = 0; ///< 1 left, 2 right, 4 middle
    int shift = 0;  ///< 1 Shift, 2 Ctrl, 4 Alt, added up
    int x = 0;      ///< pixels from the picture's left edge
    int y = 0;
};

/// The background picture box and, over it, the player's picture, letterboxed. The player's picture
/// is hidden at first; made visible it takes the background's place when it has something to show,
/// so that nothing flickers between the two. It becomes a window of its own while it fills the
/// screen; keys pressed there arrive in this widget.
class VideoWidget : public QWidget, private PictureListener {
  public:
    /// Throws StepError when libmpv cannot draw. Widget and player may end in either order.
    explicit VideoWidget(MpvPlayer& player, QWidget* parent = nullptr);
    ~VideoWidget() override;

    void setPictureVisible(bool visible);
    bool isFullScreenPicture() const { return m_fullScreen; }
    void setFullScreenPicture(bool fullScreen);
    void setPictureSize(int width, int height);
    bool setBackgroundPicture(const std::string& path);

    void onMouse(GatedListener<PictureMouseEvent> listener);
    void onWheel(GatedListener<int> listener); ///< steps, up is positive
    /// The box was resized: width and height in pixels.
    void onResize(GatedListener<int, int> listener);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void holdPicture() override;
    void showPicture() override;
    void clearPicture() override;
    void placePicture();
    bool reportMouse(QEvent& event, MouseAction action);
    bool reportWheel(QEvent& event);
    QWidget& picture() { return m_surface->widget(); }

    VideoSurface* m_surface; ///< a child widget, deleted as such
    QPointer<QWidget> m_surfaceWidget;
    std::shared_ptr<PictureLink> m_link;
    QSize m_pictureSize;
    bool m_pictureVisible = false; ///< as asked for
    bool m_pictureThere = false;   ///< the present recording has one, or the previous one is held
    bool m_fullScreen = false;
    int m_wheelAngle = 0;
    QString m_backgroundPath;
    QPixmap m_background; ///< at the widget's size
    GatedListener<PictureMouseEvent> m_mouseListener;
    GatedListener<int> m_wheelListener;
    GatedListener<int, int> m_resizeListener;
};

/// VideoWidget as the logic's port.
class VideoWidgetView : public PlayerView {
  public:
    explicit VideoWidgetView(VideoWidget& widget) : m_widget(widget) {}
    void setVisible(bool visible) override { m_widget.setPictureVisible(visible); }
    bool fullScreen() const override { return m_widget.isFullScreenPicture(); }
    void setFullScreen(bool fullScreen) override { m_widget.setFullScreenPicture(fullScreen); }
    /// The picture has no controls of its own.
    void setUiMode(const std::string&) override {}
    void setSize(int width, int height) override { m_widget.setPictureSize(width, height); }
    bool setBackgroundPicture(const std::string& path) override {
        return m_widget.setBackgroundPicture(path);
    }

  private:
    VideoWidget& m_widget;
};

} // namespace velmorant

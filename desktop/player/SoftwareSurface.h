#pragma once

#include "desktop/player/VideoSurface.h"

#include <QImage>

#include <mpv/render.h>

namespace velmorant {

/// Draws by the processor: libmpv scales into memory that the widget paints. While the widget is
/// hidden the frames are consumed undrawn, so that the player goes on.
class SoftwareSurface : public QWidget, public VideoSurface {
  public:
    /// Throws StepError when libmpv cannot draw. `player` may end first.
    SoftwareSurface(MpvPlayer& player, QWidget* parent);
    ~SoftwareSurface() override;

    QWidget& widget() override { return *this; }
    void hold() override;
    void show() override;
    void clear() override;
    bool drawsUnseen() const override { return true; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    enum class Content { Video, Held, Black };
    void frameArrived();
    void draw();
    void skip();

    std::shared_ptr<MpvHandle> m_handle;
    mpv_render_context* m_context = nullptr;
    Content m_content = Content::Black;
    std::vector<uchar> m_memory;
    QImage m_image; ///< a view of m_memory
};

} // namespace velmorant

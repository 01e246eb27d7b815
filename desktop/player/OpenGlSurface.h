#pragma once

#include "desktop/player/VideoSurface.h"

#include <QOpenGLWidget>

#include <mpv/render_gl.h>

namespace velmorant {

/// Draws by the graphics processor. Nothing can be drawn, and the player opens nothing, before the
/// widget was shown for the first time.
class OpenGlSurface : public QOpenGLWidget, public VideoSurface {
  public:
    OpenGlSurface(MpvPlayer& player, QWidget* parent);
    ~OpenGlSurface() override;

    QWidget& widget() override { return *this; }
    void hold() override { content_ = content_ == Content::Video ? Content::Held : content_; }
    void show() override;
    void clear() override;
    bool drawsUnseen() const override { return context_; }

  protected:
    void initializeGL() override;
    void paintGL() override;

  private:
    enum class Content { Video, Held, Black };
    void frameArrived();
    void releaseContext();

    std::shared_ptr<PictureLink> link_;
    std::shared_ptr<MpvHandle> handle_;
    mpv_render_context* context_ = nullptr;
    Content content_ = Content::Black;
};

} // namespace velmorant

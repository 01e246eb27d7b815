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
    void hold() override { m_content = m_content == Content::Video ? Content::Held : m_content; }
    void show() override;
    void clear() override;
    bool drawsUnseen() const override { return m_context; }

  protected:
    void initializeGL() override;
    void paintGL() override;

  private:
    enum class Content { Video, Held, Black };
    void frameArrived();
    void releaseContext();

    std::shared_ptr<PictureLink> m_link;
    std::shared_ptr<MpvHandle> m_handle;
    mpv_render_context* m_context = nullptr;
    Content m_content = Content::Black;
};

} // namespace velmorant

#include "desktop/player/OpenGlSurface.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace velmorant {

OpenGlSurface::OpenGlSurface(MpvPlayer& player, QWidget* parent)
    : QOpenGLWidget(parent), m_link(player.link()), m_handle(player.handle()) {
    // A held picture stays in the buffer.
    setUpdateBehavior(QOpenGLWidget::PartialUpdate);
}

OpenGlSurface::~OpenGlSurface() {
    releaseContext();
}

void OpenGlSurface::initializeGL() {
    // Moving the widget to another window may make a new drawing context.
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] {
        releaseContext();
        if (m_link->player)
            m_link->player->pictureLost();
    });
    mpv_opengl_init_params functions = {
        [](void*, const char* name) {
            return reinterpret_cast<void*>(QOpenGLContext::currentContext()->getProcAddress(name));
        },
        nullptr};
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_OPENGL)},
        {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &functions},
        {MPV_RENDER_PARAM_INVALID, nullptr}};
    if (mpv_render_context_create(&m_context, m_handle->get(), parameters) < 0) {
        m_context = nullptr;
        return;
    }
    mpv_render_context_set_update_callback(
        m_context,
        [](void* self) {
            auto* surface = static_cast<OpenGlSurface*>(self);
            QMetaObject::invokeMethod(
                surface, [surface] { surface->frameArrived(); }, Qt::QueuedConnection);
        },
        this);
    if (m_link->player)
        m_link->player->pictureReady();
}

void OpenGlSurface::releaseContext() {
    if (!m_context)
        return;
    makeCurrent();
    mpv_render_context_set_update_callback(m_context, nullptr, nullptr);
    mpv_render_context_free(m_context);
    m_context = nullptr;
    doneCurrent();
}

void OpenGlSurface::show() {
    m_content = Content::Video;
    update();
}

void OpenGlSurface::clear() {
    m_content = Content::Black;
    update();
}

void OpenGlSurface::frameArrived() {
    if (!m_context || !(mpv_render_context_update(m_context) & MPV_RENDER_UPDATE_FRAME))
        return;
    if (isVisible() && m_content == Content::Video) {
        update();
        return;
    }
    int yes = 1;
    int no = 0;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SKIP_RENDERING, &yes},
                                     {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &no},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    makeCurrent();
    mpv_render_context_render(m_context, parameters);
    doneCurrent();
}

void OpenGlSurface::paintGL() {
    if (m_content == Content::Held)
        return;
    QOpenGLFunctions& functions = *context()->functions();
    if (!m_context || m_content == Content::Black) {
        functions.glClearColor(0, 0, 0, 1);
        functions.glClear(GL_COLOR_BUFFER_BIT);
        return;
    }
    const QSize pixels = (QSizeF(size()) * devicePixelRatioF()).toSize();
    mpv_opengl_fbo target = {static_cast<int>(defaultFramebufferObject()), pixels.width(),
                             pixels.height(), 0};
    int yes = 1;
    int no = 0;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_OPENGL_FBO, &target},
                                     {MPV_RENDER_PARAM_FLIP_Y, &yes},
                                     {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &no},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(m_context, parameters);
}

} // namespace velmorant

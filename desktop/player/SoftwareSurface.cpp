#include "desktop/player/SoftwareSurface.h"

#include "common/StepError.h"

#include <QPainter>

#include <array>

namespace velmorant {

namespace {
/// Start and rows of the picture in memory; less alignment makes libmpv copy the whole frame.
constexpr std::size_t alignment = 64;
} // namespace

SoftwareSurface::SoftwareSurface(MpvPlayer& player, QWidget* parent)
    : QWidget(parent), m_handle(player.handle()) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_SW)},
        {MPV_RENDER_PARAM_INVALID, nullptr}};
    const int status = mpv_render_context_create(&m_context, m_handle->get(), parameters);
    if (status < 0)
        throw StepError(std::string("libmpv cannot draw: ") + mpv_error_string(status));
    mpv_render_context_set_update_callback(
        m_context,
        [](void* self) {
            auto* surface = static_cast<SoftwareSurface*>(self);
            QMetaObject::invokeMethod(
                surface, [surface] { surface->frameArrived(); }, Qt::QueuedConnection);
        },
        this);
}

SoftwareSurface::~SoftwareSurface() {
    mpv_render_context_set_update_callback(m_context, nullptr, nullptr);
    mpv_render_context_free(m_context);
}

void SoftwareSurface::hold() {
    if (m_content == Content::Video)
        m_content = Content::Held;
}

void SoftwareSurface::show() {
    m_content = Content::Video;
    draw();
}

void SoftwareSurface::clear() {
    m_content = Content::Black;
    update();
}

void SoftwareSurface::frameArrived() {
    if (!(mpv_render_context_update(m_context) & MPV_RENDER_UPDATE_FRAME))
        return;
    if (isVisible() && m_content == Content::Video)
        draw();
    else
        skip();
}

void SoftwareSurface::skip() {
    int yes = 1;
    int no = 0;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SKIP_RENDERING, &yes},
                                     {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &no},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(m_context, parameters);
}

void SoftwareSurface::draw() {
    const QSize size = (QSizeF(this->size()) * devicePixelRatioF()).toSize();
    if (size.isEmpty())
        return skip();
    std::size_t stride =
        (static_cast<std::size_t>(size.width()) * 4 + alignment - 1) / alignment * alignment;
    if (m_image.size() != size) {
        m_memory.assign(stride * static_cast<std::size_t>(size.height()) + alignment, 0);
        void* start = m_memory.data();
        std::size_t space = m_memory.size();
        std::align(alignment, space - alignment, start, space);
        m_image = QImage(static_cast<uchar*>(start), size.width(), size.height(),
                         static_cast<qsizetype>(stride), QImage::Format_RGB32);
        m_image.setDevicePixelRatio(devicePixelRatioF());
    }
    std::array<int, 2> target = {size.width(), size.height()};
    char format[] = "bgr0";
    int no = 0;
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_SW_SIZE, target.data()},
        {MPV_RENDER_PARAM_SW_FORMAT, format},
        {MPV_RENDER_PARAM_SW_STRIDE, &stride},
        {MPV_RENDER_PARAM_SW_POINTER, const_cast<uchar*>(m_image.constBits())},
        {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &no}, // never wait in the window's thread
        {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(m_context, parameters);
    update();
}

void SoftwareSurface::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_content == Content::Black || m_image.isNull())
        painter.fillRect(rect(), Qt::black);
    else
        painter.drawImage(rect(), m_image);
}

void SoftwareSurface::resizeEvent(QResizeEvent*) {
    if (m_content == Content::Video)
        draw();
}

void SoftwareSurface::showEvent(QShowEvent*) {
    // The frames of the meantime were not drawn.
    if (m_content == Content::Video)
        draw();
}

} // namespace velmorant

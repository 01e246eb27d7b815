#include "desktop/player/VideoWidget.h"

#include "desktop/player/OpenGlSurface.h"
#include "desktop/player/SoftwareSurface.h"

#include <QCoreApplication>
#include <QImageReader>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWheelEvent>

namespace velmorant {

VideoWidget::VideoWidget(MpvPlayer& player, QWidget* parent)
    : QWidget(parent), m_link(player.link()) {
    if (player.videoOutput() == VideoOutput::OpenGl)
        m_surface = new OpenGlSurface(player, this);
    else
        m_surface = new SoftwareSurface(player, this);
    m_surfaceWidget = &m_surface->widget();
    picture().hide();
    picture().installEventFilter(this);
    m_link->picture = this;
}

VideoWidget::~VideoWidget() {
    m_link->picture = nullptr;
    if (m_surfaceWidget) {
        m_surfaceWidget->removeEventFilter(this);
        delete m_surfaceWidget; // in full screen it has no parent
    }
}

void VideoWidget::setPictureVisible(bool visible) {
    m_pictureVisible = visible;
    if (!visible)
        setFullScreenPicture(false);
    placePicture();
}

void VideoWidget::placePicture() {
    if (!m_fullScreen)
        picture().setVisible(m_pictureVisible && (m_pictureThere || !m_surface->drawsUnseen()));
}

void VideoWidget::holdPicture() {
    if (!picture().isHidden()) {
        m_surface->hold();
        return;
    }
    // What was seen last is the background: the picture of another recording must not come between.
    m_surface->clear();
    m_pictureThere = false;
}

void VideoWidget::showPicture() {
    m_surface->show();
    m_pictureThere = true;
    placePicture();
}

void VideoWidget::clearPicture() {
    m_surface->clear();
    m_pictureThere = false;
    placePicture();
}

void VideoWidget::setFullScreenPicture(bool fullScreen) {
    if (fullScreen == m_fullScreen || (fullScreen && !m_pictureVisible))
        return;
    m_fullScreen = fullScreen;
    if (fullScreen) {
        picture().setParent(nullptr, Qt::Window | Qt::FramelessWindowHint);
        picture().setGeometry(screen()->geometry());
        picture().showFullScreen();
        picture().activateWindow();
    } else {
        picture().setWindowState(Qt::WindowNoState);
        picture().setParent(this, Qt::Widget);
        picture().setGeometry(QRect(QPoint(), m_pictureSize));
        placePicture();
        window()->activateWindow();
    }
}

void VideoWidget::setPictureSize(int width, int height) {
    m_pictureSize = QSize(width, height);
    if (!m_fullScreen)
        picture().setGeometry(QRect(QPoint(), m_pictureSize));
}

bool VideoWidget::setBackgroundPicture(const std::string& path) {
    QImageReader reader(QString::fromStdString(path));
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead())
        return false;
    m_backgroundPath = reader.fileName();
    m_background = {};
    update();
    return true;
}

bool VideoWidget::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return reportMouse(*event, MouseAction::Press);
    case QEvent::MouseButtonRelease:
        return reportMouse(*event, MouseAction::Release);
    case QEvent::MouseButtonDblClick:
        return reportMouse(*event, MouseAction::DoubleClick);
    case QEvent::Wheel:
        return reportWheel(*event);
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (!m_fullScreen)
            break; // the widget's parent gets it anyway
        return QCoreApplication::sendEvent(this, event);
    case QEvent::Close:
        if (!m_fullScreen)
            break;
        event->ignore(); // the window manager closes the full screen, not the player
        setFullScreenPicture(false);
        return true;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

bool VideoWidget::reportMouse(QEvent& event, MouseAction action) {
    const auto& mouse = static_cast<QMouseEvent&>(event);
    PictureMouseEvent report;
    report.action = action;
    report.button = mouse.button() == Qt::LeftButton     ? 1
                    : mouse.button() == Qt::RightButton  ? 2
                    : mouse.button() == Qt::MiddleButton ? 4
                                                         : 0;
    const Qt::KeyboardModifiers keys = mouse.modifiers();
    report.shift = (keys & Qt::ShiftModifier ? 1 : 0) + (keys & Qt::ControlModifier ? 2 : 0) +
                   (keys & Qt::AltModifier ? 4 : 0);
    report.x = mouse.position().toPoint().x();
    report.y = mouse.position().toPoint().y();
    if (report.button != 0)
        m_mouseListener(report);
    return true;
}

bool VideoWidget::reportWheel(QEvent& event) {
    constexpr int anglePerStep = 120;
    m_wheelAngle += static_cast<QWheelEvent&>(event).angleDelta().y();
    const int steps = m_wheelAngle / anglePerStep;
    m_wheelAngle -= steps * anglePerStep;
    if (steps != 0)
        m_wheelListener(steps);
    event.accept();
    return true;
}

void VideoWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QSize wanted = (QSizeF(size()) * devicePixelRatioF()).toSize();
    if (!m_backgroundPath.isEmpty() && m_background.size() != wanted && !wanted.isEmpty()) {
        // Read anew at each size: a vector drawing stays sharp.
        QImageReader reader(m_backgroundPath);
        reader.setDecideFormatFromContent(true);
        QSize fitted = reader.size();
        if (reader.supportsOption(QImageIOHandler::ScaledSize) && !fitted.isEmpty())
            reader.setScaledSize(fitted.scaled(wanted, Qt::KeepAspectRatioByExpanding));
        const QImage image =
            reader.read().scaled(wanted, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
        const QRect middle(
            QPoint((image.width() - wanted.width()) / 2, (image.height() - wanted.height()) / 2),
            wanted);
        m_background = QPixmap::fromImage(image.copy(middle));
    }
    if (m_background.isNull())
        painter.fillRect(rect(), Qt::black);
    else
        painter.drawPixmap(rect(), m_background);
}

void VideoWidget::resizeEvent(QResizeEvent*) {
    m_resizeListener.latest(width(), height());
}

void VideoWidget::onMouse(GatedListener<PictureMouseEvent> listener) {
    m_mouseListener = std::move(listener);
}

void VideoWidget::onWheel(GatedListener<int> listener) {
    m_wheelListener = std::move(listener);
}

void VideoWidget::onResize(GatedListener<int, int> listener) {
    m_resizeListener = std::move(listener);
}

} // namespace velmorant

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
    : QWidget(parent), link_(player.link()) {
    if (player.videoOutput() == VideoOutput::OpenGl)
        surface_ = new OpenGlSurface(player, this);
    else
        surface_ = new SoftwareSurface(player, this);
    surfaceWidget_ = &surface_->widget();
    picture().hide();
    picture().installEventFilter(this);
    link_->picture = this;
}

VideoWidget::~VideoWidget() {
    link_->picture = nullptr;
    if (surfaceWidget_) {
        surfaceWidget_->removeEventFilter(this);
        delete surfaceWidget_; // in full screen it has no parent
    }
}

void VideoWidget::setPictureVisible(bool visible) {
    pictureVisible_ = visible;
    if (!visible)
        setFullScreenPicture(false);
    placePicture();
}

void VideoWidget::placePicture() {
    if (!fullScreen_)
        picture().setVisible(pictureVisible_ && (pictureThere_ || !surface_->drawsUnseen()));
}

void VideoWidget::holdPicture() {
    if (!picture().isHidden()) {
        surface_->hold();
        return;
    }
    // What was seen last is the background: the picture of another recording must not come between.
    surface_->clear();
    pictureThere_ = false;
}

void VideoWidget::showPicture() {
    surface_->show();
    pictureThere_ = true;
    placePicture();
}

void VideoWidget::clearPicture() {
    surface_->clear();
    pictureThere_ = false;
    placePicture();
}

void VideoWidget::setFullScreenPicture(bool fullScreen) {
    if (fullScreen == fullScreen_ || (fullScreen && !pictureVisible_))
        return;
    fullScreen_ = fullScreen;
    if (fullScreen) {
        picture().setParent(nullptr, Qt::Window | Qt::FramelessWindowHint);
        picture().setGeometry(screen()->geometry());
        picture().showFullScreen();
        picture().activateWindow();
    } else {
        picture().setWindowState(Qt::WindowNoState);
        picture().setParent(this, Qt::Widget);
        picture().setGeometry(QRect(QPoint(), pictureSize_));
        placePicture();
        window()->activateWindow();
    }
}

void VideoWidget::setPictureSize(int width, int height) {
    pictureSize_ = QSize(width, height);
    if (!fullScreen_)
        picture().setGeometry(QRect(QPoint(), pictureSize_));
}

bool VideoWidget::setBackgroundPicture(const std::string& path) {
    QImageReader reader(QString::fromStdString(path));
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead())
        return false;
    backgroundPath_ = reader.fileName();
    background_ = {};
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
        if (!fullScreen_)
            break; // the widget's parent gets it anyway
        return QCoreApplication::sendEvent(this, event);
    case QEvent::Close:
        if (!fullScreen_)
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
        mouseListener_(report);
    return true;
}

bool VideoWidget::reportWheel(QEvent& event) {
    constexpr int anglePerStep = 120;
    wheelAngle_ += static_cast<QWheelEvent&>(event).angleDelta().y();
    const int steps = wheelAngle_ / anglePerStep;
    wheelAngle_ -= steps * anglePerStep;
    if (steps != 0)
        wheelListener_(steps);
    event.accept();
    return true;
}

void VideoWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QSize wanted = (QSizeF(size()) * devicePixelRatioF()).toSize();
    if (!backgroundPath_.isEmpty() && background_.size() != wanted && !wanted.isEmpty()) {
        // Read anew at each size: a vector drawing stays sharp.
        QImageReader reader(backgroundPath_);
        reader.setDecideFormatFromContent(true);
        QSize fitted = reader.size();
        if (reader.supportsOption(QImageIOHandler::ScaledSize) && !fitted.isEmpty())
            reader.setScaledSize(fitted.scaled(wanted, Qt::KeepAspectRatioByExpanding));
        const QImage image =
            reader.read().scaled(wanted, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
        const QRect middle(
            QPoint((image.width() - wanted.width()) / 2, (image.height() - wanted.height()) / 2),
            wanted);
        background_ = QPixmap::fromImage(image.copy(middle));
    }
    if (background_.isNull())
        painter.fillRect(rect(), Qt::black);
    else
        painter.drawPixmap(rect(), background_);
}

void VideoWidget::resizeEvent(QResizeEvent*) {
    resizeListener_.latest(width(), height());
}

void VideoWidget::onMouse(GatedListener<PictureMouseEvent> listener) {
    mouseListener_ = std::move(listener);
}

void VideoWidget::onWheel(GatedListener<int> listener) {
    wheelListener_ = std::move(listener);
}

void VideoWidget::onResize(GatedListener<int, int> listener) {
    resizeListener_ = std::move(listener);
}

} // namespace velmorant

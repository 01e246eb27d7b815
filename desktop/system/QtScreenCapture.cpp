#include "desktop/system/QtScreenCapture.h"

#include "common/FileReplacement.h"
#include "common/StepError.h"
#include <QBuffer>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QScreen>

namespace velmorant {

void QtScreenCapture::capture(const PixelRectangle& area) {
    QScreen* screen = QGuiApplication::primaryScreen();
    const QRect wanted(area.left, area.top, area.width, area.height);
    const QRect inside = wanted & QRect(QPoint(0, 0), screen->size());
    if (wanted.isEmpty())
        throw StepError("The screen cannot be copied: the area is empty");
    QImage picture(wanted.size() * screen->devicePixelRatio(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(screen->devicePixelRatio());
    picture.fill(Qt::black);
    if (!inside.isEmpty()) {
        const QPixmap copy =
            screen->grabWindow(0, inside.x(), inside.y(), inside.width(), inside.height());
        if (copy.isNull())
            throw StepError("The screen cannot be copied: this desktop does not allow it");
        QPainter(&picture).drawPixmap(inside.topLeft() - wanted.topLeft(), copy);
    }
    m_picture = picture;
}

void QtScreenCapture::savePicture(const std::string& path) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (m_picture.isNull() || !m_picture.save(&buffer, "BMP"))
        throw StepError(path + ": there is no picture to save");
    replaceFile(path, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

} // namespace velmorant

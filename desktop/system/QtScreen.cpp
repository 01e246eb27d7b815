#include "desktop/system/QtScreen.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace velmorant {

int QtScreen::twipsPerPixel(double dotsPerInch) {
    return std::lround(dotsPerInch) == 120 ? 12 : 15;
}

int QtScreen::width() const {
    return QGuiApplication::primaryScreen()->geometry().width() * twipsPerPixelX();
}

int QtScreen::height() const {
    return QGuiApplication::primaryScreen()->geometry().height() * twipsPerPixelY();
}

int QtScreen::twipsPerPixelX() const {
    return twipsPerPixel(QGuiApplication::primaryScreen()->logicalDotsPerInchX());
}

int QtScreen::twipsPerPixelY() const {
    return twipsPerPixel(QGuiApplication::primaryScreen()->logicalDotsPerInchY());
}

} // namespace velmorant

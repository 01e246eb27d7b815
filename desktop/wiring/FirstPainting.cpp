#include "desktop/wiring/FirstPainting.h"

#include <QEvent>
#include <QWidget>

#include <utility>

namespace velmorant {

FirstPainting::FirstPainting(QWidget& widget, std::function<void()> painted)
    : QObject(&widget), m_painted(std::move(painted)) {
    widget.installEventFilter(this);
}

bool FirstPainting::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Paint)
        return false;
    watched->removeEventFilter(this);
    // Queued: what is painted goes to the screen when the whole window is.
    QMetaObject::invokeMethod(this, m_painted, Qt::QueuedConnection);
    return false;
}

} // namespace velmorant

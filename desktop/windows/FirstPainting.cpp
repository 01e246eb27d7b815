#include "desktop/windows/FirstPainting.h"

#include <QEvent>
#include <QEventLoop>
#include <QTimer>
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

bool showPainted(QWidget& window, QWidget& contents, std::chrono::milliseconds limit) {
    QEventLoop loop;
    bool painted = false;
    const FirstPainting painting(contents, [&] {
        painted = true;
        loop.quit();
    });
    window.show();
    QTimer::singleShot(limit, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    return painted;
}

} // namespace velmorant

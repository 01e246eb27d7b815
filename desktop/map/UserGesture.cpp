#include "desktop/map/UserGesture.h"

#include <QChildEvent>
#include <QKeyEvent>
#include <QWidget>

namespace velmorant {

namespace {

/// As long as browsers let a script open a window after a click.
constexpr qint64 longestMilliseconds = 5000;

bool isActivatingKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
           event.key() == Qt::Key_Space;
}

} // namespace

void UserGesture::watch(QWidget& widget) {
    widget.installEventFilter(this);
    for (QObject* child : widget.children())
        child->installEventFilter(this);
}

bool UserGesture::take() {
    const bool fresh = m_since.isValid() && m_since.elapsed() < longestMilliseconds;
    m_since.invalidate();
    return fresh;
}

bool UserGesture::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ChildAdded:
        // The control makes the widget that gets the events anew with every process of the page.
        static_cast<QChildEvent*>(event)->child()->installEventFilter(this);
        break;
    case QEvent::MouseButtonRelease:
    case QEvent::TouchEnd:
        m_since.start();
        break;
    case QEvent::KeyPress:
        if (isActivatingKey(*static_cast<QKeyEvent*>(event)))
            m_since.start();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace velmorant

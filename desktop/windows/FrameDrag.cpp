#include "desktop/windows/FrameDrag.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace velmorant {

void FrameDrag::begin(const QMouseEvent& event) {
    QWindow* native = m_window.windowHandle();
    if (native && native->startSystemMove())
        return;
    m_offset = event.globalPosition().toPoint() - m_window.pos();
}

void FrameDrag::move(const QMouseEvent& event) {
    if (m_offset)
        m_window.move(event.globalPosition().toPoint() - *m_offset);
}

} // namespace velmorant

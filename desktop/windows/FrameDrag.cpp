#include "desktop/windows/FrameDrag.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace velmorant {

void FrameDrag::begin(const QMouseEvent& event) {
    QWindow* native = window_.windowHandle();
    if (native && native->startSystemMove())
        return;
    offset_ = event.globalPosition().toPoint() - window_.pos();
}

void FrameDrag::move(const QMouseEvent& event) {
    if (offset_)
        window_.move(event.globalPosition().toPoint() - *offset_);
}

} // namespace velmorant

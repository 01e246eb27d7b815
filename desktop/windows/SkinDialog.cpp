#include "desktop/windows/SkinDialog.h"

#include "desktop/windows/FrameArea.h"
#include <QKeyEvent>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace velmorant {

SkinDialog::SkinDialog(HandlerGate& gate, const Screen& screen, Kind kind, QWidget* parent)
    : QWidget(parent), m_skin(new SkinView), m_window(*this, gate, screen), m_drag(*this) {
    setWindowFlags((kind == Kind::Splash ? Qt::SplashScreen : Qt::Dialog) |
                   Qt::FramelessWindowHint);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new FrameArea(m_skin));
    connect(m_skin, &SkinView::loaded, this, [this] { setWindowTitle(m_skin->accessibleName()); });
}

void SkinDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        event->ignore();
}

void SkinDialog::mousePressEvent(QMouseEvent* event) {
    const QPoint place = m_skin->mapFrom(this, event->position().toPoint());
    if (event->button() == Qt::LeftButton && m_skin->placeRect("place.drag").contains(place))
        m_drag.begin(*event);
}

void SkinDialog::mouseMoveEvent(QMouseEvent* event) {
    m_drag.move(*event);
}

void SkinDialog::mouseReleaseEvent(QMouseEvent*) {
    m_drag.end();
}

SetupDialog::SetupDialog(HandlerGate& gate, const Screen& screen, QWidget* parent)
    : SkinDialog(gate, screen, Kind::Dialog, parent) {
    resize(800, 480);
}

AboutDialog::AboutDialog(HandlerGate& gate, const Screen& screen, QWidget* parent)
    : SkinDialog(gate, screen, Kind::Dialog, parent) {
    resize(600, 400);
}

SplashWindow::SplashWindow(HandlerGate& gate, const Screen& screen)
    : SkinDialog(gate, screen, Kind::Splash) {
    resize(1024, 708);
}

} // namespace velmorant

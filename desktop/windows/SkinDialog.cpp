#include "desktop/windows/SkinDialog.h"

#include "desktop/windows/FrameArea.h"
#include <QKeyEvent>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace velmorant {

SkinDialog::SkinDialog(HandlerGate& gate, const Screen& screen, Kind kind, QWidget* parent)
    : QWidget(parent), skin_(new SkinView), window_(*this, gate, screen), drag_(*this) {
    setWindowFlags((kind == Kind::Splash ? Qt::SplashScreen : Qt::Dialog) |
                   Qt::FramelessWindowHint);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new FrameArea(skin_));
    connect(skin_, &SkinView::loaded, this, [this] { setWindowTitle(skin_->accessibleName()); });
}

void SkinDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        event->ignore();
}

void SkinDialog::mousePressEvent(QMouseEvent* event) {
    const QPoint place = skin_->mapFrom(this, event->position().toPoint());
    if (event->button() == Qt::LeftButton && skin_->placeRect("place.drag").contains(place))
        drag_.begin(*event);
}

void SkinDialog::mouseMoveEvent(QMouseEvent* event) {
    drag_.move(*event);
}

void SkinDialog::mouseReleaseEvent(QMouseEvent*) {
    drag_.end();
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

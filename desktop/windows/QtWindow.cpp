#include "desktop/windows/QtWindow.h"

#include <QEvent>
#include <QEventLoop>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace velmorant {

QtWindow::QtWindow(QWidget& widget, HandlerGate& gate, const Screen& screen)
    : widget_(&widget), gate_(gate), screen_(screen) {
    widget.installEventFilter(this);
}

void QtWindow::show() {
    widget_->show();
}

void QtWindow::showModal() {
    widget_->setWindowModality(Qt::ApplicationModal);
    widget_->show();
    widget_->activateWindow();
    QEventLoop loop;
    const auto leaveWhenHidden = [&] {
        if (!widget_ || !widget_->isVisible())
            loop.quit();
    };
    class HideWatch : public QObject {
      public:
        explicit HideWatch(std::function<void()> hidden) : hidden_(std::move(hidden)) {}
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Hide || event->type() == QEvent::Destroy)
                hidden_();
            return false;
        }

      private:
        std::function<void()> hidden_;
    } watch(leaveWhenHidden);
    widget_->installEventFilter(&watch);
    connect(widget_, &QObject::destroyed, &loop, &QEventLoop::quit);
    const HandlerGate::ModalScope modal(gate_);
    if (widget_->isVisible())
        loop.exec(QEventLoop::DialogExec);
}

void QtWindow::close() {
    if (!widget_)
        return;
    closing_ = true;
    widget_->close();
    closing_ = false;
    // While the user's own wish to close is delivered, the toolkit takes a second one for the same.
    if (widget_ && widget_->isVisible())
        widget_->hide();
}

void QtWindow::setForeground() {
    widget_->raise();
    widget_->activateWindow();
}

void QtWindow::setCaption(const std::string& caption) {
    widget_->setWindowTitle(QString::fromStdString(caption));
}

// The middle of a screen that is smaller than the window would put its title area out of reach.
void QtWindow::move(int left, int top) {
    const QPoint wanted(left / screen_.twipsPerPixelX(), top / screen_.twipsPerPixelY());
    const QRect desktop = widget_->screen()->virtualGeometry();
    widget_->move(std::max(wanted.x(), desktop.left()), std::max(wanted.y(), desktop.top()));
}

// On a screen that is smaller than the window the window takes what there is; its contents scroll.
void QtWindow::resize(int width, int height) {
    const QSize wanted(width / screen_.twipsPerPixelX(), height / screen_.twipsPerPixelY());
    widget_->resize(wanted.boundedTo(widget_->screen()->availableSize()));
}

int QtWindow::left() const {
    return widget_->x() * screen_.twipsPerPixelX();
}

int QtWindow::top() const {
    return widget_->y() * screen_.twipsPerPixelY();
}

void QtWindow::onCloseRequest(GatedListener<> listener) {
    closeRequest_ = std::move(listener);
}

void QtWindow::onResize(GatedListener<> listener) {
    resized_ = std::move(listener);
}

/// What a window manager tells while it takes the window over may be the place from before the
/// window was moved. The toolkit then believes that one for pictures of the screen, menus and
/// screen readers, until the place is asked for again.
void QtWindow::agreeOnPlace() {
    QWindow* const native = widget_->windowHandle();
    if (native && native->position() != widget_->geometry().topLeft())
        native->setPosition(widget_->geometry().topLeft());
}

bool QtWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched != widget_)
        return false;
    if (event->type() == QEvent::WindowActivate)
        agreeOnPlace();
    if (event->type() == QEvent::Resize)
        resized_.latest();
    if (event->type() != QEvent::Close || closing_ || !closeRequest_)
        return false;
    event->ignore();
    // One question is enough, however often the user asks before it can be put.
    closeRequest_.latest();
    return true;
}

} // namespace velmorant

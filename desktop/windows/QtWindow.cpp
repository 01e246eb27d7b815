#include "desktop/windows/QtWindow.h"

#include <QEvent>
#include <QEventLoop>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace velmorant {

QtWindow::QtWindow(QWidget& widget, HandlerGate& gate, const Screen& screen)
    : m_widget(&widget), m_gate(gate), m_screen(screen) {
    widget.installEventFilter(this);
}

void QtWindow::show() {
    m_widget->show();
}

void QtWindow::showModal() {
    m_widget->setWindowModality(Qt::ApplicationModal);
    m_widget->show();
    m_widget->activateWindow();
    QEventLoop loop;
    const auto leaveWhenHidden = [&] {
        if (!m_widget || !m_widget->isVisible())
            loop.quit();
    };
    class HideWatch : public QObject {
      public:
        explicit HideWatch(std::function<void()> hidden) : m_hidden(std::move(hidden)) {}
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Hide || event->type() == QEvent::Destroy)
                m_hidden();
            return false;
        }

      private:
        std::function<void()> m_hidden;
    } watch(leaveWhenHidden);
    m_widget->installEventFilter(&watch);
    connect(m_widget, &QObject::destroyed, &loop, &QEventLoop::quit);
    const HandlerGate::ModalScope modal(m_gate);
    if (m_widget->isVisible())
        loop.exec(QEventLoop::DialogExec);
}

void QtWindow::close() {
    if (!m_widget)
        return;
    m_closing = true;
    m_widget->close();
    m_closing = false;
    // While the user's own wish to close is delivered, the toolkit takes a second one for the same.
    if (m_widget && m_widget->isVisible())
        m_widget->hide();
}

void QtWindow::setForeground() {
    m_widget->raise();
    m_widget->activateWindow();
}

void QtWindow::setCaption(const std::string& caption) {
    m_widget->setWindowTitle(QString::fromStdString(caption));
}

// The middle of a screen that is smaller than the window would put its title area out of reach.
void QtWindow::move(int left, int top) {
    const QPoint wanted(left / m_screen.twipsPerPixelX(), top / m_screen.twipsPerPixelY());
    const QRect desktop = m_widget->screen()->virtualGeometry();
    m_widget->move(std::max(wanted.x(), desktop.left()), std::max(wanted.y(), desktop.top()));
}

// On a screen that is smaller than the window the window takes what there is; its contents scroll.
void QtWindow::resize(int width, int height) {
    const QSize wanted(width / m_screen.twipsPerPixelX(), height / m_screen.twipsPerPixelY());
    m_widget->resize(wanted.boundedTo(m_widget->screen()->availableSize()));
}

int QtWindow::left() const {
    return m_widget->x() * m_screen.twipsPerPixelX();
}

int QtWindow::top() const {
    return m_widget->y() * m_screen.twipsPerPixelY();
}

void QtWindow::onCloseRequest(GatedListener<> listener) {
    m_closeRequest = std::move(listener);
}

void QtWindow::onResize(GatedListener<> listener) {
    m_resized = std::move(listener);
}

/// What a window manager tells while it takes the window over may be the place from before the
/// window was moved. The toolkit then believes that one for pictures of the screen, menus and
/// screen readers, until the place is asked for again.
void QtWindow::agreeOnPlace() {
    QWindow* const native = m_widget->windowHandle();
    if (native && native->position() != m_widget->geometry().topLeft())
        native->setPosition(m_widget->geometry().topLeft());
}

bool QtWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_widget)
        return false;
    if (event->type() == QEvent::WindowActivate)
        agreeOnPlace();
    if (event->type() == QEvent::Resize)
        m_resized.latest();
    if (event->type() != QEvent::Close || m_closing || !m_closeRequest)
        return false;
    event->ignore();
    // One question is enough, however often the user asks before it can be put.
    m_closeRequest.latest();
    return true;
}

} // namespace velmorant

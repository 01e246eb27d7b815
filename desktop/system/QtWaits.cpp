#include "desktop/system/QtWaits.h"

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace velmorant {
namespace {

/// Shorter than anybody notices, and long beside what a question costs.
constexpr std::chrono::milliseconds questionInterval{2};

bool isUserInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

/// Lets the input of one window through and swallows that of all others.
class InputFilter : public QObject {
  public:
    explicit InputFilter(const QWidget& window) : m_window(window) {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* receiver, QEvent* event) override {
        return isUserInput(event->type()) && !belongs(receiver);
    }

  private:
    bool belongs(QObject* receiver) const {
        if (const auto* widget = qobject_cast<QWidget*>(receiver))
            return widget->window() == &m_window;
        return receiver == m_window.windowHandle();
    }

    const QWidget& m_window;
};

template <typename Run>
void runGuarded(const QWidget* answering, Run run) {
    if (!answering || !answering->isVisible()) {
        run(QEventLoop::ExcludeUserInputEvents);
        return;
    }
    const InputFilter filter(*answering);
    run(QEventLoop::AllEvents);
}

} // namespace

void QtWaits::sleep(std::chrono::milliseconds duration) {
    sleepUntil(duration, {});
}

void QtWaits::sleepUntil(std::chrono::milliseconds longest, const std::function<bool()>& over) {
    if (over && over())
        return;
    runGuarded(m_answering, [&](QEventLoop::ProcessEventsFlags flags) {
        QEventLoop loop;
        const QPointer<QEventLoop> outer = std::exchange(m_sleeping, &loop);
        QTimer end;
        end.setTimerType(Qt::PreciseTimer);
        end.setSingleShot(true);
        QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
        end.start(std::max(longest, std::chrono::milliseconds(0)));
        QTimer question;
        if (over) {
            question.setTimerType(Qt::PreciseTimer);
            QObject::connect(&question, &QTimer::timeout, &loop, [&] {
                if (over())
                    loop.quit();
            });
            question.start(questionInterval);
        }
        loop.exec(flags);
        m_sleeping = outer;
    });
}

void QtWaits::endSleep() {
    if (m_sleeping)
        m_sleeping->quit();
}

void QtWaits::letEventsRun() {
    runGuarded(m_answering, [](QEventLoop::ProcessEventsFlags flags) {
        QCoreApplication::processEvents(flags);
    });
}

void QtWaits::setAnsweringWindow(QWidget* window) {
    m_answering = window;
}

} // namespace velmorant

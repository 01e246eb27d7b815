#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>

#include <functional>

namespace velmorant {

/// Lets events run until the condition holds; false when it does not within the limit.
inline bool waitFor(const std::function<bool()>& condition, int milliseconds = 10000) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > milliseconds)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
    }
    return true;
}

/// Lets events run for a while, to see what does not happen.
inline void letRun(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

} // namespace velmorant

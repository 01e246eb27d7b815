#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <functional>

namespace velmorant {

/// Lets events run for a moment, asleep while there are none.
inline void runEvents(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Lets events run until the condition holds; false when it does not within the limit.
inline bool waitFor(const std::function<bool()>& condition, int milliseconds = 10000) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > milliseconds)
            return false;
        runEvents(2);
    }
    return true;
}

/// Lets events run for a while, to see what does not happen.
inline void letRun(int milliseconds) {
    runEvents(milliseconds);
}

} // namespace velmorant

#include "desktop/system/QtClock.h"

#include <QDateTime>

namespace velmorant {

LocalTime QtClock::localTime() const {
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    const QTime time = now.time();
    return {date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()};
}

std::chrono::milliseconds QtClock::steadyTime() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

} // namespace velmorant

#include "desktop/system/QtClock.h"

#include <QDateTime>

namespace velmorant {

LocalTime QtClock::localTime() const {
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    const QTime time = now.time();
    return {date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()};
}

} // namespace velmorant

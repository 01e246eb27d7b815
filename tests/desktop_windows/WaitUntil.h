#pragma once

#include <QTest>
#include <functional>

namespace velmorant {

/// Runs the event loop until the condition holds; false when it does not within the limit.
inline bool waitUntil(const std::function<bool()>& condition, int limitMilliseconds = 5000) {
    return QTest::qWaitFor(condition, limitMilliseconds);
}

} // namespace velmorant

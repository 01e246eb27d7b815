#include "track/BatchProgress.h"

#include "common/fillIn.h"

#include <utility>

namespace velmorant {

namespace {

/// Fewer tell too little of those that follow.
constexpr int enoughToTell = 3;
/// Above it, minutes are told.
constexpr std::int64_t mostSeconds = 90;

} // namespace

BatchProgress::BatchProgress(const Clock& clock, const Texts& texts, int total)
    : m_clock(clock), m_texts(texts), m_start(clock.steadyTime()), m_total(total) {}

std::string BatchProgress::begin(const std::string& name) {
    const std::string left = timeLeft();
    ++m_begun;
    std::string text = m_texts.addition("extraction.place");
    text = fillIn(std::move(text), "%2", std::to_string(m_begun));
    text = fillIn(std::move(text), "%3", std::to_string(m_total));
    // A name may hold what looks like a place for a number, so it comes last.
    return fillIn(std::move(text), "%1", name) + left;
}

std::string BatchProgress::timeLeft() const {
    if (m_begun < enoughToTell)
        return {};
    const std::int64_t elapsed = (m_clock.steadyTime() - m_start).count();
    const std::int64_t milliseconds = elapsed * (m_total - m_begun) / m_begun;
    const std::int64_t seconds = (milliseconds + 999) / 1000;
    if (seconds <= mostSeconds)
        return fillIn(m_texts.addition("extraction.secondsLeft"), "%1", std::to_string(seconds));
    return fillIn(m_texts.addition("extraction.minutesLeft"), "%1",
                  std::to_string((seconds + 59) / 60));
}

std::string BatchProgress::summary(int failed) const {
    if (failed == 0)
        return fillIn(m_texts.addition("extraction.read"), "%1", std::to_string(m_read));
    std::string text = m_texts.addition("extraction.readInPart");
    text = fillIn(std::move(text), "%1", std::to_string(m_read));
    return fillIn(std::move(text), "%2", std::to_string(failed));
}

} // namespace velmorant

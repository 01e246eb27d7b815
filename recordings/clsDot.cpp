#include "recordings/clsDot.h"

#include "common/StepError.h"
#include "common/textRules.h"

#include <algorithm>

namespace velmorant {

namespace {

constexpr double unitsPerDegree = 10'000'000.0;

const TrackDot emptyDot{};

} // namespace

clsDot::clsDot() : m_dots(1) {}

const TrackDot& clsDot::dot(std::int32_t index) const {
    const bool inside = index >= 1 && static_cast<std::size_t>(index) <= m_dots.size();
    return inside ? m_dots[static_cast<std::size_t>(index) - 1] : emptyDot;
}

const SampleDetails* clsDot::detailsOfDot(std::int32_t index) const {
    const bool known = index >= 1 && static_cast<std::size_t>(index) <= m_details.samples.size();
    return known ? &m_details.samples[static_cast<std::size_t>(index) - 1] : nullptr;
}

std::int32_t clsDot::lPtLocal(std::int32_t x, std::int32_t y) const {
    if (count() == 1 && m_dots.front().x == x && m_dots.front().y == y)
        return 1;
    return static_cast<std::int32_t>(m_segments.firstHolding(x, y));
}

void clsDot::ForcePlayLocal(std::int32_t second) {
    if (count() < 3)
        return;
    const auto pairs = static_cast<std::size_t>(count() - 2);
    const std::size_t found = m_seconds.firstPairHolding(second, pairs);
    if (found > 0)
        m_current = static_cast<std::int32_t>(found);
}

std::int32_t clsDot::MouseSecond(std::int32_t index) const {
    return dot(index).second;
}

std::int16_t clsDot::MouseSpeed(std::int32_t index) const {
    return dot(index).speed;
}

std::string clsDot::ShowInfo(std::int32_t index, double speedFactor) const {
    if (&dot(index) == &emptyDot)
        return {};
    return "Time:" + dot(index).timeText + "\rSpeed:" + twoDecimals(dot(index).speed * speedFactor);
}

std::int32_t clsDot::GetDotTime(std::int32_t index) const {
    if (&dot(index) == &emptyDot)
        throw StepError("Subscript out of range: the track has no dot " + std::to_string(index));
    return dot(index).second;
}

void clsDot::SetDot(const std::string& dateText, const std::string& timeText, std::int16_t speed,
                    std::int32_t second, const std::string& lonText, const std::string& latText,
                    double gSum, std::int16_t angle, double gX, double gY, double gZ) {
    TrackDot& last = m_dots.back();
    last.dateText = dateText;
    last.timeText = timeText;
    last.speed = speed;
    last.second = second;
    last.lonLatText = lonText + "|" + latText;
    last.x = toInt32(toDouble(lonText) * unitsPerDegree);
    last.y = toInt32(toDouble(latText) * unitsPerDegree);
    last.gSum = gSum;
    last.gX = gX;
    last.gY = gY;
    last.gZ = gZ;
    last.angle = angle;
    noteExtremes(last);
    m_lastSecond = second;
    m_dots.emplace_back();
    addToIndexes();
}

void clsDot::noteExtremes(const TrackDot& dot) {
    m_maximumSpeed = std::max(m_maximumSpeed, static_cast<double>(dot.speed));
    for (const double g : {dot.gX, dot.gY, dot.gZ}) {
        m_maximumG = std::max(m_maximumG, g);
        m_minimumG = std::min(m_minimumG, g);
    }
}

void clsDot::addToIndexes() {
    m_seconds.add(m_lastSecond);
    if (count() < 3)
        return;
    const TrackDot& from = dot(count() - 2);
    const TrackDot& to = dot(count() - 1);
    m_segments.add(from.x, from.y, to.x, to.y);
}

} // namespace velmorant

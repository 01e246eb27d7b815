#include "telemetry/Samples.h"

#include <algorithm>

namespace velmorant::telemetry {

std::size_t Telemetry::fixes() const {
    return static_cast<std::size_t>(
        std::count_if(samples.begin(), samples.end(),
                      [](const Sample& sample) { return sample.state == FixState::good; }));
}

std::string_view name(FixState state) {
    switch (state) {
    case FixState::good:
        return "good";
    case FixState::noReading:
        return "no reading";
    case FixState::noFix:
        return "no fix";
    case FixState::badDate:
        return "impossible date";
    case FixState::outOfRange:
        return "out of range";
    case FixState::zeroPosition:
        return "zero position";
    case FixState::jump:
        return "jump";
    case FixState::stale:
        return "left over from the last drive";
    case FixState::parkedDrift:
        return "speed without movement";
    case FixState::frozen:
        return "frozen place";
    case FixState::enciphered:
        return "enciphered by an unknown rule";
    }
    return "";
}

std::string_view name(TimeBase base) {
    switch (base) {
    case TimeBase::none:
        return "none";
    case TimeBase::creation:
        return "creation";
    case TimeBase::camera:
        return "camera";
    case TimeBase::utc:
        return "utc";
    }
    return "";
}

} // namespace velmorant::telemetry

#include "telemetry/Nmea.h"

#include <charconv>

#include "telemetry/Geometry.h"
#include "telemetry/UtcTime.h"

namespace velmorant::telemetry {

namespace {

double coordinate(std::string_view value, std::string_view side, char negative) {
    const double degrees = fromDegreesMinutes(decimal(value));
    return !side.empty() && side[0] == negative ? -degrees : degrees;
}

// The talker ("GP", "GN" ...) and "$" in front may be cut off; what counts starts at the name.
std::optional<std::string_view> behindName(std::string_view sentence, std::string_view name) {
    const std::size_t at = sentence.substr(0, 8).find(name);
    if (at == std::string_view::npos) {
        return std::nullopt;
    }
    return sentence.substr(at + name.size());
}

} // namespace

int digits(std::string_view text, std::size_t at, std::size_t count) {
    if (at + count > text.size()) {
        return -1;
    }
    int value = 0;
    for (std::size_t i = at; i < at + count; ++i) {
        if (text[i] < '0' || text[i] > '9') {
            return -1;
        }
        value = value * 10 + (text[i] - '0');
    }
    return value;
}

double decimal(std::string_view text) {
    if (!text.empty() && text[0] == '+') {
        text.remove_prefix(1);
    }
    double value = 0;
    const auto result =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() ? value : unknown;
}

std::string_view field(std::string_view text, std::size_t index, char separator) {
    for (; index > 0; --index) {
        const std::size_t at = text.find(separator);
        if (at == std::string_view::npos) {
            return {};
        }
        text.remove_prefix(at + 1);
    }
    return text.substr(0, text.find(separator));
}

std::optional<Fix> readRmc(std::string_view sentence) {
    const auto body = behindName(sentence, "RMC,");
    if (!body) {
        return std::nullopt;
    }
    Fix fix;
    fix.state = field(*body, 1) == "A" ? FixState::good : FixState::noFix;
    fix.latitude = coordinate(field(*body, 2), field(*body, 3), 'S');
    fix.longitude = coordinate(field(*body, 4), field(*body, 5), 'W');
    fix.speed = decimal(field(*body, 6)) * kmhPerKnot;
    fix.heading = decimal(field(*body, 7));
    const std::string_view time = field(*body, 0);
    const std::string_view date = field(*body, 8);
    if (date.size() < 6) {
        return fix; // some recorders leave the date out
    }
    CivilTime civil;
    civil.year = 2000 + digits(date, 4, 2);
    civil.month = digits(date, 2, 2);
    civil.day = digits(date, 0, 2);
    civil.hour = digits(time, 0, 2);
    civil.minute = digits(time, 2, 2);
    civil.second = time.size() >= 6 ? decimal(time.substr(4)) : -1;
    if (const auto milliseconds = toMilliseconds(civil)) {
        fix.time = *milliseconds;
        fix.base = TimeBase::utc;
        fix.standardTime = true;
    } else if (fix.state == FixState::good) {
        fix.state = FixState::badDate;
    }
    return fix;
}

std::optional<Fix> readGga(std::string_view sentence) {
    const auto body = behindName(sentence, "GGA,");
    if (!body) {
        return std::nullopt;
    }
    Fix fix;
    fix.state = digits(field(*body, 5), 0, 1) > 0 ? FixState::good : FixState::noFix;
    fix.latitude = coordinate(field(*body, 1), field(*body, 2), 'S');
    fix.longitude = coordinate(field(*body, 3), field(*body, 4), 'W');
    fix.altitude = decimal(field(*body, 8));
    return fix;
}

} // namespace velmorant::telemetry

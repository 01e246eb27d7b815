#include "telemetry/families/EncipheredText.h"

#include <string>

#include "telemetry/Geometry.h"
#include "telemetry/Nmea.h"
#include "telemetry/UtcTime.h"

namespace velmorant::telemetry {

namespace {

constexpr std::size_t shortest = 77;
constexpr std::size_t longest = 282;

// Sign and three digits, in hundredths of a g.
std::optional<double> hundredths(std::string_view text, std::size_t at) {
    if (at >= text.size() || (text[at] != '+' && text[at] != '-')) {
        return std::nullopt;
    }
    const int value = digits(text, at + 1, 3);
    if (value < 0) {
        return std::nullopt;
    }
    return (text[at] == '-' ? -value : value) / 100.0;
}

void readAccelerations(std::string_view text, std::size_t at, std::vector<Acceleration>& into) {
    for (; into.size() < 16; at += 12) {
        const auto x = hundredths(text, at);
        const auto y = hundredths(text, at + 4);
        const auto z = hundredths(text, at + 8);
        if (!x || !y || !z) {
            return;
        }
        into.push_back({*x, *y, *z});
    }
}

double coordinate(std::string_view text, std::size_t at, std::size_t count, char negative) {
    const int value = digits(text, at + 1, count);
    if (value < 0) {
        return unknown;
    }
    const double degrees = fromDegreesMinutes(value / 10000.0);
    return text[at] == negative ? -degrees : degrees;
}

CivilTime timeOf(std::string_view text) {
    CivilTime time;
    time.year = digits(text, 8, 4);
    time.month = digits(text, 12, 2);
    time.day = digits(text, 14, 2);
    time.hour = digits(text, 16, 2);
    time.minute = digits(text, 18, 2);
    time.second = digits(text, 20, 2);
    return time;
}

void readPosition(std::string_view text, Fix& fix) {
    const bool letters =
        (text[38] == 'N' || text[38] == 'S') && (text[47] == 'E' || text[47] == 'W');
    fix.latitude = coordinate(text, 38, 8, 'S');
    fix.longitude = coordinate(text, 47, 9, 'W');
    if (!letters || !known(fix.latitude) || !known(fix.longitude)) {
        fix.state = FixState::noFix;
    }
    const int speed = digits(text, 62, 3);
    fix.speed = speed < 0 ? unknown : speed;
    const int altitude = digits(text, 58, 4);
    if (altitude >= 0 && (text[57] == '+' || text[57] == '-')) {
        fix.altitude = text[57] == '-' ? -altitude : altitude;
    }
}

} // namespace

std::optional<EncipheredReading> readEncipheredText(Bytes enciphered) {
    if (enciphered.size() < shortest) {
        return std::nullopt;
    }
    std::string text(enciphered.text(0, longest));
    for (char& c : text) {
        c = static_cast<char>(static_cast<unsigned char>(c) ^ 0xaaU);
    }
    const CivilTime time = timeOf(text);
    if (time.year < 0 || time.month < 0 || time.day < 0) {
        return std::nullopt;
    }
    EncipheredReading reading;
    if (const auto milliseconds = toMilliseconds(time)) {
        reading.fix.time = *milliseconds;
        reading.fix.base = TimeBase::camera;
    } else {
        reading.fix.state = FixState::badDate;
    }
    readPosition(text, reading.fix);
    readAccelerations(text, 65, reading.accelerations);
    if (reading.accelerations.empty()) {
        readAccelerations(text, 173, reading.accelerations);
    }
    return reading;
}

} // namespace velmorant::telemetry

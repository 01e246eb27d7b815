#include "tools/recordings/Drive.h"

#include <algorithm>
#include <cmath>

namespace velmorant::recordings {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double gravity = 9.80665;
constexpr double metresPerDegree = 111194.9266; // on a sphere of the mean radius
constexpr double comfortableBraking = 2.2;
constexpr double comfortableStart = 1.6;
constexpr double comfortableCurve = 2.5; // metres per second squared, sideways

double fraction(std::mt19937& random) {
    return static_cast<double>(random() % 10001) / 10000;
}

double turn(double from, double to) {
    return std::remainder(to - from, 360);
}

} // namespace

Driver::Driver(Place start, double direction, unsigned seed)
    : m_place(start),
      m_direction(direction),
      m_heading(direction),
      m_random(seed),
      m_plannedHeading(direction) {}

// A street and the curve at its end; the curves lead back towards the drive's direction.
void Driver::buildMore() {
    const double limit = fraction(m_random) < 0.3 ? 70 / 3.6 : 50 / 3.6;
    m_ahead.push_back({90 + 160 * fraction(m_random), 0, limit});
    const double off = turn(m_plannedHeading, m_direction);
    const bool right = std::abs(off) > 40 ? off > 0 : fraction(m_random) < 0.5;
    const double angle = (35 + 50 * fraction(m_random)) * (right ? 1 : -1);
    const double radius = 14 + 30 * fraction(m_random);
    m_plannedHeading += angle;
    m_ahead.push_back({radius * std::abs(angle) * pi / 180, (right ? 1 : -1) / radius,
                       std::sqrt(comfortableCurve * radius)});
    if (fraction(m_random) < 0.25) {
        m_ahead.push_back({1, 0, 0.3}); // a stop line
    }
}

// The fastest speed from which every piece ahead can still be entered at its own limit.
double Driver::allowedSpeed() const {
    double allowed = 1e9;
    double way = 0;
    for (const Piece& piece : m_ahead) {
        allowed =
            std::min(allowed, std::sqrt(piece.limit * piece.limit + 2 * comfortableBraking * way));
        way += piece.length;
    }
    return allowed;
}

void Driver::step(double seconds) {
    while (m_ahead.size() < 8) {
        buildMore();
    }
    if (m_waiting > 0) {
        m_waiting -= seconds;
        m_acceleration = 0;
        m_speed = 0;
        return;
    }
    const double before = m_speed;
    const double allowed = allowedSpeed();
    m_speed = std::min(allowed, m_speed + comfortableStart * seconds);
    m_speed = std::max(m_speed, std::max(0.2, before - 1.5 * comfortableBraking * seconds));
    m_acceleration = (m_speed - before) / seconds;
    double way = m_speed * seconds;
    while (way > 0) {
        Piece& piece = m_ahead.front();
        const double part = std::min(way, piece.length);
        const double turned = part * piece.curvature * 180 / pi;
        const double middle = (m_heading + turned / 2) * pi / 180;
        m_place.latitude += part * std::cos(middle) / metresPerDegree;
        m_place.longitude +=
            part * std::sin(middle) / (metresPerDegree * std::cos(m_place.latitude * pi / 180));
        m_place.longitude = std::remainder(m_place.longitude, 360);
        m_heading += turned;
        m_altitude += part * 0.01 * std::sin(m_place.latitude * 3000);
        piece.length -= part;
        way -= part;
        if (piece.length <= 1e-9) {
            if (piece.limit < 1) {
                m_waiting = 4 + 4 * fraction(m_random);
            }
            m_ahead.erase(m_ahead.begin());
        }
    }
}

std::vector<DriveSecond> Driver::drive(std::int64_t time, int seconds) {
    constexpr int steps = 20;
    std::vector<DriveSecond> result;
    for (int second = 0; second < seconds; ++second) {
        DriveSecond now;
        now.time = time + second;
        now.latitude = m_place.latitude;
        now.longitude = m_place.longitude;
        now.altitude = m_altitude;
        now.speed = m_speed * 3.6;
        now.heading = std::fmod(std::fmod(m_heading, 360) + 360, 360);
        for (int i = 0; i < steps; ++i) {
            step(1.0 / steps);
            const double curvature = m_waiting > 0 ? 0 : m_ahead.front().curvature;
            now.right += m_speed * m_speed * curvature / gravity / steps;
            now.forwards += m_acceleration / gravity / steps;
        }
        // The road's own roughness, more of it at speed.
        now.up += (fraction(m_random) - 0.5) * 0.004 * m_speed;
        result.push_back(now);
    }
    return result;
}

void loseFix(std::vector<DriveSecond>& drive, std::size_t first, std::size_t last) {
    for (std::size_t i = first; i <= last && i < drive.size(); ++i) {
        drive[i].fix = false;
    }
}

} // namespace velmorant::recordings

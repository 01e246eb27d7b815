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
    : place_(start),
      direction_(direction),
      heading_(direction),
      random_(seed),
      plannedHeading_(direction) {}

// A street and the curve at its end; the curves lead back towards the drive's direction.
void Driver::buildMore() {
    const double limit = fraction(random_) < 0.3 ? 70 / 3.6 : 50 / 3.6;
    ahead_.push_back({90 + 160 * fraction(random_), 0, limit});
    const double off = turn(plannedHeading_, direction_);
    const bool right = std::abs(off) > 40 ? off > 0 : fraction(random_) < 0.5;
    const double angle = (35 + 50 * fraction(random_)) * (right ? 1 : -1);
    const double radius = 14 + 30 * fraction(random_);
    plannedHeading_ += angle;
    ahead_.push_back({radius * std::abs(angle) * pi / 180, (right ? 1 : -1) / radius,
                      std::sqrt(comfortableCurve * radius)});
    if (fraction(random_) < 0.25) {
        ahead_.push_back({1, 0, 0.3}); // a stop line
    }
}

// The fastest speed from which every piece ahead can still be entered at its own limit.
double Driver::allowedSpeed() const {
    double allowed = 1e9;
    double way = 0;
    for (const Piece& piece : ahead_) {
        allowed =
            std::min(allowed, std::sqrt(piece.limit * piece.limit + 2 * comfortableBraking * way));
        way += piece.length;
    }
    return allowed;
}

void Driver::step(double seconds) {
    while (ahead_.size() < 8) {
        buildMore();
    }
    if (waiting_ > 0) {
        waiting_ -= seconds;
        acceleration_ = 0;
        speed_ = 0;
        return;
    }
    const double before = speed_;
    const double allowed = allowedSpeed();
    speed_ = std::min(allowed, speed_ + comfortableStart * seconds);
    speed_ = std::max(speed_, std::max(0.2, before - 1.5 * comfortableBraking * seconds));
    acceleration_ = (speed_ - before) / seconds;
    double way = speed_ * seconds;
    while (way > 0) {
        Piece& piece = ahead_.front();
        const double part = std::min(way, piece.length);
        const double turned = part * piece.curvature * 180 / pi;
        const double middle = (heading_ + turned / 2) * pi / 180;
        place_.latitude += part * std::cos(middle) / metresPerDegree;
        place_.longitude +=
            part * std::sin(middle) / (metresPerDegree * std::cos(place_.latitude * pi / 180));
        place_.longitude = std::remainder(place_.longitude, 360);
        heading_ += turned;
        altitude_ += part * 0.01 * std::sin(place_.latitude * 3000);
        piece.length -= part;
        way -= part;
        if (piece.length <= 1e-9) {
            if (piece.limit < 1) {
                waiting_ = 4 + 4 * fraction(random_);
            }
            ahead_.erase(ahead_.begin());
        }
    }
}

std::vector<DriveSecond> Driver::drive(std::int64_t time, int seconds) {
    constexpr int steps = 20;
    std::vector<DriveSecond> result;
    for (int second = 0; second < seconds; ++second) {
        DriveSecond now;
        now.time = time + second;
        now.latitude = place_.latitude;
        now.longitude = place_.longitude;
        now.altitude = altitude_;
        now.speed = speed_ * 3.6;
        now.heading = std::fmod(std::fmod(heading_, 360) + 360, 360);
        for (int i = 0; i < steps; ++i) {
            step(1.0 / steps);
            const double curvature = waiting_ > 0 ? 0 : ahead_.front().curvature;
            now.right += speed_ * speed_ * curvature / gravity / steps;
            now.forwards += acceleration_ / gravity / steps;
        }
        // The road's own roughness, more of it at speed.
        now.up += (fraction(random_) - 0.5) * 0.004 * speed_;
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

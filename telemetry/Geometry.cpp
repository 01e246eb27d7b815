#include "telemetry/Geometry.h"

#include <cmath>

namespace velmorant::telemetry {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double earthRadius = 6371008.8; // metres, mean
constexpr double radians(double degrees) {
    return degrees * pi / 180;
}

} // namespace

double distance(double latitude1, double longitude1, double latitude2, double longitude2) {
    const double sinLatitude = std::sin(radians(latitude2 - latitude1) / 2);
    const double sinLongitude = std::sin(radians(longitude2 - longitude1) / 2);
    const double h = sinLatitude * sinLatitude + std::cos(radians(latitude1)) *
                                                     std::cos(radians(latitude2)) * sinLongitude *
                                                     sinLongitude;
    return 2 * earthRadius * std::asin(std::sqrt(h < 1 ? h : 1));
}

double Movement::metres() const {
    return std::sqrt(north * north + east * east);
}

double Movement::heading() const {
    const double degrees = std::atan2(east, north) * 180 / pi;
    return degrees < 0 ? degrees + 360 : degrees;
}

Movement movementBetween(double latitude1, double longitude1, double latitude2, double longitude2) {
    double turn = longitude2 - longitude1;
    turn -= turn > 180 ? 360 : turn < -180 ? -360 : 0; // over the date line
    const double metresPerDegree = radians(1) * earthRadius;
    return {(latitude2 - latitude1) * metresPerDegree,
            turn * metresPerDegree * std::cos(radians((latitude1 + latitude2) / 2))};
}

double fromDegreesMinutes(double value) {
    const double degrees = std::trunc(value / 100);
    return degrees + (value - degrees * 100) / 60;
}

} // namespace velmorant::telemetry

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

double bearing(double latitude1, double longitude1, double latitude2, double longitude2) {
    const double difference = radians(longitude2 - longitude1);
    const double y = std::sin(difference) * std::cos(radians(latitude2));
    const double x =
        std::cos(radians(latitude1)) * std::sin(radians(latitude2)) -
        std::sin(radians(latitude1)) * std::cos(radians(latitude2)) * std::cos(difference);
    const double degrees = std::atan2(y, x) * 180 / pi;
    return degrees < 0 ? degrees + 360 : degrees;
}

double fromDegreesMinutes(double value) {
    const double degrees = std::trunc(value / 100);
    return degrees + (value - degrees * 100) / 60;
}

} // namespace velmorant::telemetry

// Distances and directions between places a few kilometres apart, on a sphere.
#pragma once

namespace velmorant::telemetry {

// Metres.
double distance(double latitude1, double longitude1, double latitude2, double longitude2);

// From one place to another at most a few kilometres away, on the plane that touches the sphere
// between them: off by less than a thousandth up to 80 degrees of latitude.
struct Movement {
    double north = 0, east = 0; // metres

    double metres() const;
    double heading() const; // degrees clockwise from north, 0 up to 360
};
Movement movementBetween(double latitude1, double longitude1, double latitude2, double longitude2);

// Degrees and minutes in one number, as NMEA 0183 writes them: 4807.038 is 48 degrees 7.038
// minutes.
double fromDegreesMinutes(double value);

inline constexpr double kmhPerKnot = 1.852;
inline constexpr double kmhPerMetrePerSecond = 3.6;
inline constexpr double kmhPerMile = 1.609344;
inline constexpr double standardGravity = 9.80665; // metres per second squared

} // namespace velmorant::telemetry

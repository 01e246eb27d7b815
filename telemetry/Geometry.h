// Distances and directions between places a few kilometres apart, on a sphere.
#pragma once

namespace velmorant::telemetry {

// Metres.
double distance(double latitude1, double longitude1, double latitude2, double longitude2);
// Degrees clockwise from north, 0 up to 360, from the first place to the second.
double bearing(double latitude1, double longitude1, double latitude2, double longitude2);

// Degrees and minutes in one number, as NMEA 0183 writes them: 4807.038 is 48 degrees 7.038
// minutes.
double fromDegreesMinutes(double value);

inline constexpr double kmhPerKnot = 1.852;
inline constexpr double kmhPerMetrePerSecond = 3.6;
inline constexpr double kmhPerMile = 1.609344;
inline constexpr double standardGravity = 9.80665; // metres per second squared

} // namespace velmorant::telemetry

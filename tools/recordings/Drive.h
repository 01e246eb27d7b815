// The truth behind every made recording: a car on streets with curves, second by second. The car
// brakes before a curve, speeds up behind it and stops now and then; speed, heading, place and
// acceleration all come from the one motion.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

namespace velmorant::recordings {

struct DriveSecond {
    std::int64_t time = 0; // UTC, seconds since 1970
    bool fix = true;
    int written = 1;                    // how often the recorder writes it; a lost second 0 times
    double latitude = 0, longitude = 0; // degrees
    double altitude = 0;                // metres
    double speed = 0;                   // km/h
    double heading = 0;                 // degrees clockwise from north
    // Mean over the second in g: to the right, forwards, and against gravity (1 at rest).
    double right = 0, forwards = 0, up = 1;
};

struct Place {
    double latitude = 25.0478;
    double longitude = 121.5170;
};

class Driver {
  public:
    // `direction`: where the drive leads on the whole, degrees clockwise from north.
    Driver(Place start, double direction, unsigned seed);

    // The next seconds of the drive; the first one at `time`. A further call goes on from there.
    std::vector<DriveSecond> drive(std::int64_t time, int seconds);

  private:
    struct Piece {
        double length;    // metres
        double curvature; // 1 / metres, positive to the right
        double limit;     // metres per second
    };

    void buildMore();
    double allowedSpeed() const;
    void step(double seconds);

    Place m_place;
    double m_direction;
    double m_heading; // degrees
    std::mt19937 m_random;
    std::vector<Piece> m_ahead; // the piece under the car first
    double m_plannedHeading;
    double m_speed = 0;        // metres per second
    double m_acceleration = 0; // metres per second squared
    double m_waiting = 2;      // seconds left standing
    double m_altitude = 20;
};

// Takes the fix from the seconds first..last, as a tunnel does.
void loseFix(std::vector<DriveSecond>& drive, std::size_t first, std::size_t last);

} // namespace velmorant::recordings

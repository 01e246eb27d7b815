#pragma once

#include "tools/recordings/FamilyMakers.h"

#include <cstdint>
#include <cstdio>
#include <sstream>
#include <string>

namespace velmorant::recordings {

/// The time of day of a moment on 12 June 2024, the day of the tests' drives.
inline std::string isoTime(std::int64_t seconds, const char* zone) {
    char text[40];
    const std::int64_t ofDay = seconds % 86400;
    std::snprintf(text, sizeof text, "2024-06-12T%02d:%02d:%02d%s", static_cast<int>(ofDay / 3600),
                  static_cast<int>(ofDay / 60 % 60), static_cast<int>(ofDay % 60), zone);
    return text;
}

/// A drive as another receiver's track file, its times moved by some seconds and written with the
/// zone given.
inline std::string gpxOf(const DriveSeconds& drive, std::int64_t later = 0,
                         const char* zone = "Z") {
    std::ostringstream gpx;
    gpx.precision(10);
    gpx << "<?xml version=\"1.0\"?><gpx version=\"1.1\"><trk><name>a > b</name><trkseg>\n";
    for (const DriveSecond& second : drive) {
        if (second.fix) {
            gpx << "<trkpt lat=\"" << second.latitude << "\" lon='" << second.longitude
                << "'><ele>12.5</ele><time>" << isoTime(second.time + later, zone)
                << "</time><extensions><x:speed>" << second.speed / 3.6 << "</x:speed><x:course>"
                << second.heading << "</x:course></extensions></trkpt>";
        }
    }
    gpx << "</trkseg></trk></gpx>";
    return gpx.str();
}

} // namespace velmorant::recordings

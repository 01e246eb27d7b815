// Telemetry in formats that other programs read. Everything is written as it comes; nothing is
// kept.
//
//   GPX 1.1   one "trk" per trip, a "trkseg" per unbroken run of fixes; speed (metres per second)
//             and course in the track point extension, version 2
//   KML 2.2   one "Placemark" per trip with a "gx:MultiTrack", a "gx:Track" per run; lines and
//             points in a "MultiGeometry" where the recording has no time
//   GeoJSON   (RFC 7946) one feature per recording: a MultiLineString, cut at the 180th meridian,
//             its times, speeds, headings and G values beside it in the same shape
//   CSV       (RFC 4180) a row per second, fix or not, names and units in the first row
//
// Times end in "Z" where they are UTC. Others stand as the clock showed them, without "Z", and a
// comment, description, property or column says which clock that was.
#pragma once

#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

enum class ExportFormat { gpx, kml, geoJson, csv };
enum class Positions {
    trusted, // good fixes alone
    raw      // every position as the recorder wrote it
};

std::optional<ExportFormat> exportFormatNamed(const std::string& name); // "gpx", "kml" ...
std::string extensionOf(ExportFormat format);                           // ".gpx" ...

class TrackExporter {
  public:
    virtual ~TrackExporter() = default;

    // Calls come in this order: begin, then for each trip beginTrip, its recordings in the order of
    // time, endTrip; then end.
    virtual void begin() = 0;
    virtual void beginTrip(const std::string& title) = 0;
    virtual void recording(const std::string& path, const Telemetry& telemetry) = 0;
    virtual void endTrip() = 0;
    virtual void end() = 0;
};

std::unique_ptr<TrackExporter> makeExporter(ExportFormat format, Positions positions,
                                            std::ostream& out);

} // namespace velmorant::telemetry

// What the export formats share.
#pragma once

#include <string>
#include <vector>

#include "telemetry/Samples.h"
#include "telemetry/XmlText.h"
#include "telemetry/export/TrackExporter.h"

namespace velmorant::telemetry {

struct ExportPoint {
    std::size_t second = 0; // index of the sample
    double latitude = 0, longitude = 0;
    double speed = 0; // km/h
};

// The unbroken runs of exported positions. With `cutAtDateLine` a run ends where it would cross the
// 180th meridian.
enum class DateLine { crossed, cut };
std::vector<std::vector<ExportPoint>> runsOf(const Telemetry& telemetry, Positions positions,
                                             DateLine dateLine);

// What the times are, for people: "UTC", "the recorder's own clock, 8 h ahead of UTC" ...
std::string clockText(const Telemetry& telemetry);
// A time of the recording as the formats write it: with "Z" where the clock is UTC, else without.
void appendTime(std::string& out, const Sample& sample, const Telemetry& telemetry);
// "2024-06-12T10:30:45Z"; milliseconds follow the seconds where they are not whole.
void appendIsoTime(std::string& out, std::int64_t milliseconds, bool withZone);
// Quoted and escaped; bytes that are no UTF-8 become U+FFFD.
void appendJsonText(std::string& out, std::string_view text);

} // namespace velmorant::telemetry

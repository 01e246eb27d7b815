// The track file: XML 1.0 in UTF-8, one line feed behind each element.
//
//   <track recording="PATH" [recording_encoding="percent"] family="NAME" time_base="BASE"
//          duration="SECONDS" fixes="NUMBER">
//     <error CODE>TEXT</error>  instead of all that follows, when the recording could not be used
//     <notice CODE>TEXT</notice>*  what was wrong and did not stop the reading
//     <gpsinfo>*                one per second of the recording, the first second first
//       <utc_Year> <utc_Month> <utc_Day>        of the first second, in every sample
//       <utc_Hour> <utc_Minute> <utc_Second>    rise by one second each; the hour goes on past 23
//       <Latitude> <Longitude>   decimal degrees, sign always written, seven decimals
//       <Angle>                  heading, degrees clockwise from north, 0 up to 360
//       <Speed>                  km/h
//       <G_sum> <G_x> <G_y> <G_z>   in g: the mean of the second's readings and its magnitude
//       <fix>                    "yes", or "no": the place is held from the last fix, before the
//                                first one from the first; without any fix it is 0 and 0. Speed 0.
//       [<fix_reason>]           why not: "no fix", "no reading", "jump", "zero position" ...
//       [<altitude>]             metres
//       [<G_max>]                greatest magnitude of the second's readings; without it the second
//                                has no readings and its G values are 0
//       [<time_recorded base="BASE">]   the source's own time of this second,
//                                YYYY-MM-DDThh:mm:ss.sss, by the clock BASE: "utc" or "camera"
//     </gpsinfo>
//   </track>
//
// CODE is code="WORD" [amount="NUMBER"]: the reason in a word of its own, and what it counts (see
// ReasonCode); TEXT says the same in plain English with the place.
// PATH is the recording's path as the extractor was given it, made absolute. Where it holds bytes
// that XML cannot carry (control characters, bytes that are no UTF-8), recording_encoding="percent"
// stands beside it, and in PATH each such byte and each '%' is '%' and two hexadecimal digits.
// BASE tells what the utc_ elements count from: "utc" a satellite time, "camera" the recorder's own
// clock, "creation" the file's creation time, "none" nothing at all (1970).
#pragma once

#include <optional>
#include <string>
#include <system_error>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

// Writes beside `trackFile` and renames, so that nobody ever reads half of it; only the owner may
// read it, and what runs that were broken off have left beside it goes. Returns what went wrong.
// `recording` is the absolute path.
std::optional<Error> writeTrackFile(const std::string& trackFile, const std::string& recording,
                                    const Result<Telemetry>& outcome);
// The error of a file or folder that could not be made.
Error notWritten(const std::string& path, const std::error_code& cause);

} // namespace velmorant::telemetry

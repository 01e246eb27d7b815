// The points of a track file, GPX or subtitles, one after the other. Files of any size are read
// through a small window; what is no point is passed over.
#pragma once

#include <functional>

#include "telemetry/ByteSource.h"
#include "telemetry/Samples.h"

namespace velmorant::telemetry {

// A fix whose mediaTime is the subtitle's place in the recording, unknown in GPX. Its base is utc
// or camera where it has a time. The visitor returns false to end the reading.
using VisitPoint = std::function<bool(const Fix& point)>;

void forEachGpxPoint(ByteSource& source, const VisitPoint& visit);
void forEachSubtitlePoint(ByteSource& source, const VisitPoint& visit);

// "2024-06-12T10:30:45.250Z", "...+02:00", or without a zone; also with a blank for the "T". Sets
// time and base, or leaves them.
void readIsoTime(std::string_view text, Fix& fix);

} // namespace velmorant::telemetry

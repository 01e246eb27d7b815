// GPX and KML.
#pragma once

#include "telemetry/export/TrackExporter.h"

namespace velmorant::telemetry {

std::unique_ptr<TrackExporter> makeGpxExporter(Positions positions, std::ostream& out);
std::unique_ptr<TrackExporter> makeKmlExporter(Positions positions, std::ostream& out);

} // namespace velmorant::telemetry

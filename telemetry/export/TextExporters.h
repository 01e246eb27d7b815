// GeoJSON and CSV.
#pragma once

#include "telemetry/export/TrackExporter.h"

namespace velmorant::telemetry {

std::unique_ptr<TrackExporter> makeGeoJsonExporter(Positions positions, std::ostream& out);
std::unique_ptr<TrackExporter> makeCsvExporter(Positions positions, std::ostream& out);

} // namespace velmorant::telemetry

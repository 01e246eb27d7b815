#include "telemetry/export/TrackExporter.h"

#include <array>

#include "telemetry/export/TextExporters.h"
#include "telemetry/export/XmlExporters.h"

namespace velmorant::telemetry {

namespace {

struct Format {
    ExportFormat format;
    const char* name;
    std::unique_ptr<TrackExporter> (*make)(Positions positions, std::ostream& out);
};

constexpr std::array formats = {Format{ExportFormat::gpx, "gpx", makeGpxExporter},
                                Format{ExportFormat::kml, "kml", makeKmlExporter},
                                Format{ExportFormat::geoJson, "geojson", makeGeoJsonExporter},
                                Format{ExportFormat::csv, "csv", makeCsvExporter}};

const Format& rowOf(ExportFormat format) {
    return formats[static_cast<std::size_t>(format)];
}

} // namespace

std::optional<ExportFormat> exportFormatNamed(const std::string& name) {
    for (const Format& row : formats) {
        if (name == row.name) {
            return row.format;
        }
    }
    return std::nullopt;
}

std::string extensionOf(ExportFormat format) {
    return std::string(".") + rowOf(format).name;
}

std::unique_ptr<TrackExporter> makeExporter(ExportFormat format, Positions positions,
                                            std::ostream& out) {
    return rowOf(format).make(positions, out);
}

} // namespace velmorant::telemetry

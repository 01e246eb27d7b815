#include "telemetry/export/XmlExporters.h"

#include "telemetry/export/ExportText.h"

namespace velmorant::telemetry {

namespace {

class Exporter : public TrackExporter {
  public:
    Exporter(Positions positions, std::ostream& out) : positions_(positions), out_(out) {}

  protected:
    void flush() {
        out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
        text_.clear();
    }
    void textElement(const char* tag, std::string_view content) {
        text_ += '<';
        text_ += tag;
        text_ += '>';
        appendXmlText(text_, content);
        text_ += "</";
        text_ += tag;
        text_ += ">\n";
    }

    Positions positions_;
    std::ostream& out_;
    std::string text_;
};

class GpxExporter final : public Exporter {
  public:
    using Exporter::Exporter;

    void begin() override {
        text_ += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                 "<gpx version=\"1.1\" creator=\"dvr-track\" "
                 "xmlns=\"http://www.topografix.com/GPX/1/1\" "
                 "xmlns:gpxtpx=\"http://www.garmin.com/xmlschemas/TrackPointExtension/v2\" "
                 "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                 "xsi:schemaLocation=\"http://www.topografix.com/GPX/1/1 "
                 "http://www.topografix.com/GPX/1/1/gpx.xsd\">\n";
        flush();
    }
    void beginTrip(const std::string& title) override {
        text_ += "<trk>\n";
        textElement("name", title);
    }
    void recording(const std::string&, const Telemetry& telemetry) override {
        if (!described_) {
            described_ = true;
            textElement("cmt", "Times: " + clockText(telemetry));
            textElement("src", "time base: " + std::string(name(telemetry.base)) + ", read from " +
                                   telemetry.family);
        }
        for (const auto& run : runsOf(telemetry, positions_, DateLine::crossed)) {
            text_ += "<trkseg>\n";
            for (const ExportPoint& point : run) {
                appendPoint(point, telemetry);
            }
            text_ += "</trkseg>\n";
        }
        flush();
    }
    void endTrip() override {
        text_ += "</trk>\n";
        described_ = false;
        flush();
    }
    void end() override {
        text_ += "</gpx>\n";
        flush();
    }

  private:
    void appendPoint(const ExportPoint& point, const Telemetry& telemetry) {
        const Sample& sample = telemetry.samples[point.second];
        text_ += "<trkpt lat=\"";
        appendFixed(text_, point.latitude, 7);
        text_ += "\" lon=\"";
        appendFixed(text_, point.longitude, 7);
        text_ += "\">";
        if (known(sample.altitude)) {
            text_ += "<ele>";
            appendFixed(text_, sample.altitude, 1);
            text_ += "</ele>";
        }
        if (telemetry.base != TimeBase::none) {
            text_ += "<time>";
            appendTime(text_, sample, telemetry);
            text_ += "</time>";
        }
        text_ += "<extensions><gpxtpx:TrackPointExtension><gpxtpx:speed>";
        appendFixed(text_, point.speed / 3.6, 2);
        text_ += "</gpxtpx:speed>";
        if (sample.state == FixState::good) {
            text_ += "<gpxtpx:course>";
            appendFixed(text_, sample.heading >= 359.95 ? 0 : sample.heading, 1);
            text_ += "</gpxtpx:course>";
        }
        text_ += "</gpxtpx:TrackPointExtension></extensions></trkpt>\n";
    }

    bool described_ = false;
};

class KmlExporter final : public Exporter {
  public:
    using Exporter::Exporter;

    void begin() override {
        text_ += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                 "<kml xmlns=\"http://www.opengis.net/kml/2.2\" "
                 "xmlns:gx=\"http://www.google.com/kml/ext/2.2\">\n<Document>\n";
        flush();
    }
    void beginTrip(const std::string& title) override {
        text_ += "<Placemark>\n";
        textElement("name", title);
    }
    void recording(const std::string&, const Telemetry& telemetry) override {
        // Of times that count from nothing there is none to write; all of a trip have one base.
        if (geometry_.empty()) {
            textElement("description", "Times: " + clockText(telemetry));
            const bool timed = telemetry.base != TimeBase::none;
            geometry_ = timed ? "gx:MultiTrack" : "MultiGeometry";
            text_ += '<' + geometry_ + ">\n";
            text_ += timed ? "<gx:interpolate>0</gx:interpolate>\n" : "";
        }
        for (const auto& run : runsOf(telemetry, positions_, DateLine::crossed)) {
            if (telemetry.base == TimeBase::none) {
                appendLine(run, telemetry);
            } else {
                appendTrack(run, telemetry);
            }
        }
        flush();
    }
    void endTrip() override {
        text_ += geometry_.empty() ? "" : "</" + geometry_ + ">\n";
        text_ += "</Placemark>\n";
        geometry_.clear();
        flush();
    }
    void end() override {
        text_ += "</Document>\n</kml>\n";
        flush();
    }

  private:
    void appendTrack(const std::vector<ExportPoint>& run, const Telemetry& telemetry) {
        text_ += "<gx:Track>\n";
        for (const ExportPoint& point : run) {
            text_ += "<when>";
            appendTime(text_, telemetry.samples[point.second], telemetry);
            text_ += "</when>\n";
        }
        for (const ExportPoint& point : run) {
            text_ += "<gx:coord>";
            appendPlace(point, telemetry, ' ');
            text_ += "</gx:coord>\n";
        }
        text_ += "</gx:Track>\n";
    }
    void appendLine(const std::vector<ExportPoint>& run, const Telemetry& telemetry) {
        const char* element = run.size() == 1 ? "Point" : "LineString";
        text_ += '<';
        text_ += element;
        text_ += "><coordinates>";
        for (const ExportPoint& point : run) {
            appendPlace(point, telemetry, ',');
            text_ += '\n';
        }
        text_ += "</coordinates></";
        text_ += element;
        text_ += ">\n";
    }
    void appendPlace(const ExportPoint& point, const Telemetry& telemetry, char separator) {
        const double altitude = telemetry.samples[point.second].altitude;
        appendFixed(text_, point.longitude, 7);
        text_ += separator;
        appendFixed(text_, point.latitude, 7);
        text_ += separator;
        appendFixed(text_, known(altitude) ? altitude : 0, 1);
    }

    std::string geometry_; // the element around the trip's runs; empty before its first recording
};

} // namespace

std::unique_ptr<TrackExporter> makeGpxExporter(Positions positions, std::ostream& out) {
    return std::make_unique<GpxExporter>(positions, out);
}

std::unique_ptr<TrackExporter> makeKmlExporter(Positions positions, std::ostream& out) {
    return std::make_unique<KmlExporter>(positions, out);
}

} // namespace velmorant::telemetry

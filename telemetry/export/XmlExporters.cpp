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
            appendIsoTime(text_, sample.time * 1000, true);
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
        text_ += "<gx:MultiTrack>\n<gx:interpolate>0</gx:interpolate>\n";
    }
    void recording(const std::string&, const Telemetry& telemetry) override {
        for (const auto& run : runsOf(telemetry, positions_, DateLine::crossed)) {
            text_ += "<gx:Track>\n";
            for (const ExportPoint& point : run) {
                text_ += "<when>";
                appendIsoTime(text_, telemetry.samples[point.second].time * 1000, true);
                text_ += "</when>\n";
            }
            for (const ExportPoint& point : run) {
                const double altitude = telemetry.samples[point.second].altitude;
                text_ += "<gx:coord>";
                appendFixed(text_, point.longitude, 7);
                text_ += ' ';
                appendFixed(text_, point.latitude, 7);
                text_ += ' ';
                appendFixed(text_, known(altitude) ? altitude : 0, 1);
                text_ += "</gx:coord>\n";
            }
            text_ += "</gx:Track>\n";
        }
        flush();
    }
    void endTrip() override {
        text_ += "</gx:MultiTrack>\n</Placemark>\n";
        flush();
    }
    void end() override {
        text_ += "</Document>\n</kml>\n";
        flush();
    }
};

} // namespace

std::unique_ptr<TrackExporter> makeGpxExporter(Positions positions, std::ostream& out) {
    return std::make_unique<GpxExporter>(positions, out);
}

std::unique_ptr<TrackExporter> makeKmlExporter(Positions positions, std::ostream& out) {
    return std::make_unique<KmlExporter>(positions, out);
}

} // namespace velmorant::telemetry

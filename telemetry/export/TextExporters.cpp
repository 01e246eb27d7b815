#include "telemetry/export/TextExporters.h"

#include <functional>

#include "telemetry/export/ExportText.h"

namespace velmorant::telemetry {

namespace {

class GeoJsonExporter final : public TrackExporter {
  public:
    GeoJsonExporter(Positions positions, std::ostream& out) : positions_(positions), out_(out) {}

    void begin() override { out_ << "{\"type\":\"FeatureCollection\",\"features\":["; }
    void beginTrip(const std::string& title) override { trip_ = title; }
    void recording(const std::string& path, const Telemetry& telemetry) override {
        auto runs = runsOf(telemetry, positions_, DateLine::cut);
        for (auto& run : runs) {
            if (run.size() == 1) {
                run.push_back(run.front()); // a line has two positions at least
            }
        }
        std::string text = first_ ? "\n" : ",\n";
        first_ = false;
        text += "{\"type\":\"Feature\",\"geometry\":";
        appendGeometry(text, runs, telemetry);
        text += ",\"properties\":{\"recording\":";
        appendJsonText(text, path);
        text += ",\"trip\":";
        appendJsonText(text, trip_);
        text += ",\"family\":";
        appendJsonText(text, telemetry.family);
        text += ",\"timeBase\":";
        appendJsonText(text, name(telemetry.base));
        text += ",\"clock\":";
        appendJsonText(text, clockText(telemetry));
        using Append = std::function<void(const ExportPoint&, const Sample&)>;
        const auto values = [&](const char* key, const Append& append) {
            text += ",\"";
            text += key;
            text += "\":";
            nested(text, runs, [&](const ExportPoint& point) {
                append(point, telemetry.samples[point.second]);
            });
        };
        if (telemetry.base != TimeBase::none) {
            values("times", [&](const ExportPoint&, const Sample& sample) {
                text += '"';
                appendTime(text, sample, telemetry);
                text += '"';
            });
        }
        values("speedsKmh",
               [&](const ExportPoint& point, const Sample&) { appendFixed(text, point.speed, 2); });
        values("headings", [&](const ExportPoint&, const Sample& sample) {
            appendFixed(text, known(sample.heading) ? sample.heading : 0, 1);
        });
        values("strongestG", [&](const ExportPoint&, const Sample& sample) {
            appendFixed(text, sample.strongest, 3);
        });
        text += "}}";
        out_ << text;
    }
    void endTrip() override {}
    void end() override { out_ << "\n]}\n"; }

  private:
    using Runs = std::vector<std::vector<ExportPoint>>;

    template <class Append>
    static void nested(std::string& text, const Runs& runs, Append append) {
        text += '[';
        for (std::size_t r = 0; r < runs.size(); ++r) {
            text += r == 0 ? "[" : ",[";
            for (std::size_t p = 0; p < runs[r].size(); ++p) {
                if (p > 0) {
                    text += ',';
                }
                append(runs[r][p]);
            }
            text += ']';
        }
        text += ']';
    }

    static void appendGeometry(std::string& text, const Runs& runs, const Telemetry& telemetry) {
        if (runs.empty()) {
            text += "null";
            return;
        }
        text += "{\"type\":\"MultiLineString\",\"coordinates\":";
        nested(text, runs, [&](const ExportPoint& point) {
            text += '[';
            appendFixed(text, point.longitude, 7);
            text += ',';
            appendFixed(text, point.latitude, 7);
            const double altitude = telemetry.samples[point.second].altitude;
            if (known(altitude)) {
                text += ',';
                appendFixed(text, altitude, 1);
            }
            text += ']';
        });
        text += '}';
    }

    Positions positions_;
    std::ostream& out_;
    std::string trip_;
    bool first_ = true;
};

class CsvExporter final : public TrackExporter {
  public:
    CsvExporter(Positions positions, std::ostream& out) : positions_(positions), out_(out) {}

    void begin() override {
        out_ << "recording,trip,second (s),time (UTC where it ends in Z),time base,fix,"
                "fix reason,latitude (deg),longitude (deg),altitude (m),speed (km/h),"
                "heading (deg),G x (g),G y (g),G z (g),G sum (g),strongest G (g),time recorded,"
                "time recorded base,clock of the times\r\n";
    }
    void beginTrip(const std::string& title) override { trip_ = title; }
    void recording(const std::string& path, const Telemetry& telemetry) override {
        std::string prefix;
        appendCell(prefix, path);
        prefix += ',';
        appendCell(prefix, trip_);
        std::string clock = ",";
        appendCell(clock, clockText(telemetry));
        std::string text;
        for (std::size_t i = 0; i < telemetry.samples.size(); ++i) {
            text += prefix;
            text += ',';
            appendInteger(text, static_cast<std::int64_t>(i));
            appendRow(text, telemetry.samples[i], telemetry.base);
            text += clock;
            text += "\r\n";
        }
        out_.write(text.data(), static_cast<std::streamsize>(text.size()));
    }
    void endTrip() override {}
    void end() override {}

  private:
    static void appendCell(std::string& out, const std::string& value) {
        if (value.find_first_of(",\"\r\n") == std::string::npos) {
            out += value;
            return;
        }
        out += '"';
        for (const char c : value) {
            out += c;
            if (c == '"') {
                out += '"';
            }
        }
        out += '"';
    }

    static void appendNumber(std::string& out, double value, int decimals) {
        out += ',';
        if (known(value)) {
            appendFixed(out, value, decimals);
        }
    }

    void appendRow(std::string& out, const Sample& sample, TimeBase base) const {
        const bool good = sample.state == FixState::good;
        const bool raw = positions_ == Positions::raw;
        out += ',';
        if (base != TimeBase::none) {
            appendIsoTime(out, sample.time * 1000, base == TimeBase::utc);
        }
        out += ',';
        out += name(base);
        out += good ? ",yes," : ",no,";
        out += good ? std::string_view() : name(sample.state);
        appendNumber(out, raw ? sample.rawLatitude : good ? sample.latitude : unknown, 7);
        appendNumber(out, raw ? sample.rawLongitude : good ? sample.longitude : unknown, 7);
        appendNumber(out, sample.altitude, 1);
        appendNumber(out, raw ? sample.rawSpeed : good ? sample.speed : unknown, 2);
        appendNumber(out, good ? sample.heading : unknown, 1);
        const bool accelerated = sample.hasAcceleration;
        appendNumber(out, accelerated ? sample.mean.x : unknown, 4);
        appendNumber(out, accelerated ? sample.mean.y : unknown, 4);
        appendNumber(out, accelerated ? sample.mean.z : unknown, 4);
        appendNumber(out, accelerated ? sample.magnitude() : unknown, 4);
        appendNumber(out, accelerated ? sample.strongest : unknown, 4);
        out += ',';
        if (sample.timeRecorded != noTime) {
            appendIsoTime(out, sample.timeRecorded, sample.recordedBase == TimeBase::utc);
        }
        out += ',';
        out += sample.timeRecorded != noTime ? name(sample.recordedBase) : std::string_view();
    }

    Positions positions_;
    std::ostream& out_;
    std::string trip_;
};

} // namespace

std::unique_ptr<TrackExporter> makeGeoJsonExporter(Positions positions, std::ostream& out) {
    return std::make_unique<GeoJsonExporter>(positions, out);
}

std::unique_ptr<TrackExporter> makeCsvExporter(Positions positions, std::ostream& out) {
    return std::make_unique<CsvExporter>(positions, out);
}

} // namespace velmorant::telemetry

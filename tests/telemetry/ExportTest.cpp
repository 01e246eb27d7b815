// The exports against the rules that their formats publish.
#include "telemetry/export/TrackExporter.h"

#include <gmock/gmock.h>

#include <regex>
#include <sstream>
#include <stack>

#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FreeGpsBlocks.h"

namespace velmorant::telemetry {

using namespace recordings;
using testing::HasSubstr;

namespace {

// Elements nest, one root, attributes quoted, no stray markup characters.
bool isWellFormedXml(const std::string& text) {
    static const std::regex token(
        R"(<\?[^?]*\?>|<(/?)([A-Za-z][\w:.-]*)((?:\s+[\w:]+="[^"<]*")*)\s*(/?)>|[^<]+)");
    std::stack<std::string> open;
    std::size_t at = 0;
    std::size_t roots = 0;
    for (std::sregex_iterator i(text.begin(), text.end(), token), end; i != end; ++i) {
        if (static_cast<std::size_t>(i->position()) != at) {
            return false;
        }
        at += static_cast<std::size_t>(i->length());
        if (!(*i)[2].matched) {
            static const std::regex ampersand(R"(&(?!amp;|lt;|gt;|quot;|apos;|#\d+;))");
            if (std::regex_search(i->str(), ampersand)) {
                return false;
            }
            continue;
        }
        if ((*i)[1].length() > 0) {
            if (open.empty() || open.top() != (*i)[2]) {
                return false;
            }
            open.pop();
        } else if ((*i)[4].length() == 0) {
            roots += open.empty() ? 1 : 0;
            open.push((*i)[2]);
        }
    }
    return at == text.size() && open.empty() && roots == 1;
}

// A value of JSON at the text's beginning; the text behind it is left.
bool takeJson(std::string_view& text) {
    const auto blank = [&] {
        while (!text.empty() && (text[0] == ' ' || text[0] == '\n')) {
            text.remove_prefix(1);
        }
    };
    blank();
    std::smatch match;
    static const std::regex scalar(
        R"(^(-?(0|[1-9]\d*)(\.\d+)?|null|true|false|"([^"\\\x00-\x1f]|\\["\\]|\\u[0-9a-f]{4})*"))");
    const bool object = !text.empty() && text[0] == '{';
    if (!object && (text.empty() || text[0] != '[')) {
        std::cmatch found;
        const char* end = text.data() + std::min<std::size_t>(text.size(), 4096);
        if (!std::regex_search(text.data(), end, found, scalar)) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(found.length()));
        return true;
    }
    const char close = object ? '}' : ']';
    text.remove_prefix(1);
    blank();
    for (bool first = true; !text.empty() && text[0] != close; first = false) {
        if (!first) {
            if (text[0] != ',') {
                return false;
            }
            text.remove_prefix(1);
        }
        if (object) {
            blank();
            if (text.empty() || text[0] != '"' || !takeJson(text) || text.empty() ||
                text[0] != ':') {
                return false;
            }
            text.remove_prefix(1);
        }
        if (!takeJson(text)) {
            return false;
        }
        blank();
    }
    if (text.empty()) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

bool isJson(std::string_view text) {
    return takeJson(text) && text.find_first_not_of(" \n") == std::string_view::npos;
}

Telemetry telemetryOf(Place place) {
    auto drive = Driver(place, 90, 5).drive(morning, 40);
    loseFix(drive, 10, 19);
    Mp4Plan plan;
    plan.seconds = 40;
    plan.index = Mp4Plan::Index::whole;
    for (std::size_t i = 0; i < drive.size(); ++i) {
        plan.blocks.push_back({freeGpsBlock(drive[i], FreeGpsLayout::withAcceleration), i});
    }
    return extractBytes(buildMp4(plan)).value();
}

std::string exported(ExportFormat format, const Telemetry& telemetry,
                     const std::string& path = "card/a & \"b\" <c>, d.MP4") {
    std::ostringstream out;
    const auto exporter = makeExporter(format, Positions::trusted, out);
    exporter->begin();
    exporter->beginTrip(path);
    exporter->recording(path, telemetry);
    exporter->endTrip();
    exporter->end();
    return out.str();
}

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace

TEST(ExportChecks, refuse_what_breaks_the_rules) {
    EXPECT_FALSE(isWellFormedXml("<a><b></a></b>"));
    EXPECT_FALSE(isWellFormedXml("<a>x & y</a>"));
    EXPECT_FALSE(isWellFormedXml("<a/><b></b><c></c>"));
    EXPECT_FALSE(isJson("{\"a\":[1,2}"));
    EXPECT_FALSE(isJson("[1,]"));
    EXPECT_TRUE(isJson("{\"a\":[1,-2.5,null,\"x\\\"\"]}"));
}

TEST(GpxExport, is_well_formed_and_ordered_as_the_schema_wants) {
    const std::string gpx = exported(ExportFormat::gpx, telemetryOf({}));
    EXPECT_TRUE(isWellFormedXml(gpx));
    EXPECT_THAT(gpx, HasSubstr("<gpx version=\"1.1\" creator=\"dvr-track\" "
                               "xmlns=\"http://www.topografix.com/GPX/1/1\""));
    EXPECT_EQ(countOf(gpx, "<trk>"), 1U);
    EXPECT_EQ(countOf(gpx, "<trkseg>"), 2U); // the tunnel parts them
    EXPECT_EQ(countOf(gpx, "<trkpt "), 30U);
    const std::regex point(
        R"(<trkpt lat="-?\d+\.\d{7}" lon="-?\d+\.\d{7}">(<ele>-?\d+\.\d</ele>)?<time>\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ</time><extensions>.*</extensions></trkpt>)");
    EXPECT_EQ(
        std::distance(std::sregex_iterator(gpx.begin(), gpx.end(), point), std::sregex_iterator()),
        30);
    EXPECT_LT(gpx.find("<name>"), gpx.find("<src>"));
    EXPECT_LT(gpx.find("<src>"), gpx.find("<trkseg>"));
}

TEST(KmlExport, has_as_many_times_as_places_in_each_track) {
    const std::string kml = exported(ExportFormat::kml, telemetryOf({}));
    EXPECT_TRUE(isWellFormedXml(kml));
    EXPECT_EQ(countOf(kml, "<gx:Track>"), 2U);
    EXPECT_EQ(countOf(kml, "<when>"), 30U);
    EXPECT_EQ(countOf(kml, "<gx:coord>"), 30U);
    const std::size_t first = kml.find("<gx:Track>");
    const std::string track = kml.substr(first, kml.find("</gx:Track>") - first);
    EXPECT_EQ(countOf(track, "<when>"), 10U);
    EXPECT_LT(track.rfind("<when>"), track.find("<gx:coord>"));
}

TEST(GeoJsonExport, cuts_lines_at_the_date_line_and_puts_longitude_first) {
    const Telemetry telemetry = telemetryOf({-16.8, 179.9993});
    const std::string json = exported(ExportFormat::geoJson, telemetry);
    EXPECT_TRUE(isJson(json)) << json.substr(0, 400);
    EXPECT_THAT(json, HasSubstr("\"coordinates\":[[[179.99"));
    const std::regex crossing(R"(\[179\.[\d.]+,-16[\d.]+\],\[-179)");
    EXPECT_FALSE(std::regex_search(json, crossing));
    EXPECT_TRUE(std::regex_search(json, std::regex(R"(\]\],\[\[-179\.)")));
}

TEST(GeoJsonExport, has_no_geometry_without_a_fix) {
    Telemetry telemetry = telemetryOf({});
    for (Sample& sample : telemetry.samples) {
        sample.state = FixState::noFix;
    }
    const std::string json = exported(ExportFormat::geoJson, telemetry, "bad\xff\x01.MP4");
    EXPECT_TRUE(isJson(json)) << json;
    EXPECT_THAT(json, HasSubstr("\"geometry\":null"));
    EXPECT_THAT(json, HasSubstr("bad\xef\xbf\xbd\\u0001.MP4"));
}

TEST(CsvExport, has_a_row_for_every_second_and_as_many_cells_as_the_heading) {
    const std::string csv = exported(ExportFormat::csv, telemetryOf({}));
    std::istringstream in(csv);
    std::string line;
    std::size_t rows = 0;
    std::size_t width = 0;
    while (std::getline(in, line)) {
        ASSERT_EQ(line.back(), '\r');
        std::size_t cells = 1;
        bool quoted = false;
        for (const char c : line) {
            quoted = c == '"' ? !quoted : quoted;
            cells += c == ',' && !quoted ? 1 : 0;
        }
        EXPECT_FALSE(quoted);
        width = rows == 0 ? cells : width;
        EXPECT_EQ(cells, width) << line;
        ++rows;
    }
    EXPECT_EQ(rows, 41U);
    EXPECT_EQ(width, 20U);
    EXPECT_THAT(csv, HasSubstr("\"card/a & \"\"b\"\" <c>, d.MP4\""));
    EXPECT_EQ(countOf(csv, ",no,no fix,"), 10U);
}

TEST(EveryExport, writes_a_time_that_is_not_utc_without_z_and_says_what_it_is) {
    Telemetry telemetry = telemetryOf({});
    for (const TimeBase base : {TimeBase::utc, TimeBase::camera, TimeBase::creation}) {
        telemetry.base = base;
        telemetry.clock.base = base;
        telemetry.clock.minutesAheadOfUtc =
            base == TimeBase::camera ? std::optional(480) : std::nullopt;
        for (Sample& sample : telemetry.samples) {
            sample.recordedBase = base;
        }
        const char* says = base == TimeBase::utc      ? "UTC"
                           : base == TimeBase::camera ? "own clock, 8 h ahead of UTC"
                                                      : "counted from the creation time";
        for (const ExportFormat format :
             {ExportFormat::gpx, ExportFormat::kml, ExportFormat::geoJson, ExportFormat::csv}) {
            const std::string text = exported(format, telemetry);
            const std::regex zoned(R"(T\d\d:\d\d:\d\dZ)");
            const std::regex time(R"(T\d\d:\d\d:\d\d[<",])");
            EXPECT_EQ(std::regex_search(text, zoned), base == TimeBase::utc);
            EXPECT_EQ(std::regex_search(text, time), base != TimeBase::utc);
            EXPECT_THAT(text, HasSubstr(says));
        }
    }
}

TEST(EveryExport, writes_no_time_where_there_is_none) {
    Telemetry telemetry = telemetryOf({});
    telemetry.base = TimeBase::none;
    for (Sample& sample : telemetry.samples) {
        sample.time -= morning;
        sample.timeRecorded = noTime;
    }
    for (const ExportFormat format :
         {ExportFormat::gpx, ExportFormat::kml, ExportFormat::geoJson, ExportFormat::csv}) {
        const std::string text = exported(format, telemetry);
        EXPECT_EQ(text.find("1970-"), std::string::npos);
        EXPECT_THAT(text, HasSubstr("no clock"));
    }
    EXPECT_EQ(countOf(exported(ExportFormat::kml, telemetry), "<LineString>"), 2U);
}

TEST(GpxExport, has_no_longitude_of_180_degrees) {
    Telemetry telemetry = telemetryOf({});
    telemetry.samples[3].longitude = 179.99999999;
    telemetry.samples[4].longitude = 180;
    const std::string gpx = exported(ExportFormat::gpx, telemetry);
    EXPECT_EQ(gpx.find("lon=\"180"), std::string::npos);
    EXPECT_EQ(countOf(gpx, "lon=\"-180.0000000\""), 2U);
}

TEST(RawExport, keeps_what_is_not_believed) {
    Telemetry telemetry = telemetryOf({});
    telemetry.samples[30].state = FixState::jump;
    telemetry.samples[30].rawLatitude = 50;
    std::ostringstream trusted, raw;
    for (const auto& [positions, out] :
         {std::pair{Positions::trusted, &trusted}, std::pair{Positions::raw, &raw}}) {
        const auto exporter = makeExporter(ExportFormat::gpx, positions, *out);
        exporter->begin();
        exporter->beginTrip("a");
        exporter->recording("a", telemetry);
        exporter->endTrip();
        exporter->end();
    }
    EXPECT_EQ(trusted.str().find("lat=\"50.0000000\""), std::string::npos);
    EXPECT_NE(raw.str().find("lat=\"50.0000000\""), std::string::npos);
    EXPECT_EQ(countOf(trusted.str(), "<trkseg>"), 3U);
}

} // namespace velmorant::telemetry

#include "telemetry/FamilyTable.h"
#include "telemetry/Geometry.h"
#include "tests/builders/gpxText.h"
#include "tests/gui/ProgramTest.h"
#include "tools/recordings/FamilyMakers.h"
#include "tools/recordings/RealPicture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <qcustomplot.h>

namespace velmorant {

namespace fs = std::filesystem;
using namespace recordings;

namespace {

constexpr int seconds = 6;
constexpr std::string_view besideTheRecording = "files beside the recording";
constexpr std::string_view frontRecording = "front recording";
constexpr std::string_view trackFile = "track file beside the recording";

/// What one family of formats wrote, and the drive that it was made from.
struct FamilyRecording {
    FamilyMaker maker;
    DriveSeconds drive;
    std::string path;
};

ByteVector contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void write(const std::string& path, const ByteVector& bytes) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

ByteVector withoutTelemetry(const DriveSeconds& drive) {
    return buildMp4(making::planOf(drive));
}

/// The first maker of each row of the table of families. What stands beside a recording without
/// telemetry is written by the test.
std::vector<FamilyMaker> oneOfEveryFamily() {
    std::vector<FamilyMaker> makers;
    for (const telemetry::Family& family : telemetry::families()) {
        const auto found =
            std::find_if(familyMakers().begin(), familyMakers().end(),
                         [&](const FamilyMaker& maker) { return maker.family == family.name; });
        FamilyMaker maker = found != familyMakers().end() ? *found : familyMakers().front();
        if (found == familyMakers().end()) {
            maker.name = family.name == frontRecording ? "104425_R" : "beside";
            maker.family = family.name;
            maker.make = withoutTelemetry;
        }
        if (maker.family == besideTheRecording || maker.family == trackFile) {
            maker.places = PlaceGrid::fine;
            maker.acceleration = Given::no;
        }
        makers.push_back(maker);
    }
    return makers;
}

} // namespace

class FamilyRoadTest : public ProgramTest {
  protected:
    /// Streets of their own for each, and a car that already moves.
    void make() {
        double latitude = 25.0;
        for (const FamilyMaker& maker : oneOfEveryFamily()) {
            Driver driver({latitude, 121.5}, 65, 7);
            driver.drive(1718188245, 20);
            FamilyRecording made{maker, driver.drive(1718188265, seconds), {}};
            // A folder for each: what stands beside one must not serve another.
            made.path = folder() + "/card/" + std::to_string(recordings.size()) + "/" +
                        std::string(maker.name) + ".MP4";
            fs::create_directories(fs::path(made.path).parent_path());
            write(made.path, playable(maker, maker.make(made.drive)));
            writeBeside(made);
            recordings.push_back(made);
            latitude += 0.02;
        }
    }

    static double metres(const MapProbe::Place& place, const DriveSecond& truth) {
        return telemetry::distance(place.latitude, place.longitude, truth.latitude,
                                   truth.longitude);
    }

    void expectRoute(int row, const FamilyRecording& made) {
        const auto places = driver().map().routePlaces(driver().number(row));
        ASSERT_EQ(places.size(), made.drive.size());
        // Floats of degrees and minutes are up to 1.8 m apart.
        const double grid = made.maker.places == PlaceGrid::floatMinutes ? 1.0 : 0.0;
        for (std::size_t i = 0; i < places.size(); ++i)
            EXPECT_LT(metres(places[i], made.drive[i]), 1 + grid + made.maker.placeGrid * 0.71)
                << "second " << i;
    }

    void expectPlays(int row) {
        ASSERT_NO_FATAL_FAILURE(play(row));
        const double before = driver().position();
        EXPECT_TRUE(waitUntil([&] { return driver().position() > before + 0.2; }));
    }

    void expectSpeeds(const FamilyRecording& made) {
        driver().clickControl("speed");
        ASSERT_TRUE(waitUntil([&] { return points(2) == 0 && points(1) == seconds; }));
        // The track has whole km/h. Derived from the places, a speed of a car that brakes differs.
        const double tolerance =
            made.maker.speed == Given::yes ? 0.55 + made.maker.speedGrid / 2 : 12.0;
        for (int i = 0; i < seconds; ++i)
            EXPECT_NEAR(value(1, i), made.drive[static_cast<std::size_t>(i)].speed, tolerance)
                << "second " << i;
    }

    void expectAccelerations(const FamilyRecording& made) {
        driver().clickControl("gs");
        ASSERT_TRUE(waitUntil([&] { return points(3) == seconds; }));
        const double tolerance = 0.015 + made.maker.accelerationGrid / 2;
        for (int i = 0; i < seconds && made.maker.acceleration == Given::yes; ++i) {
            SCOPED_TRACE("second " + std::to_string(i));
            const DriveSecond& truth = made.drive[static_cast<std::size_t>(i)];
            EXPECT_NEAR(value(1, i), truth.right, tolerance);
            EXPECT_NEAR(value(2, i), truth.forwards, tolerance);
            EXPECT_NEAR(value(3, i), truth.up, tolerance);
        }
    }

    std::vector<FamilyRecording> recordings;

  private:
    /// A few frames by ffmpeg, made once a test.
    ByteVector picture(const std::string& format) {
        const std::string path = folder() + "/picture." + format;
        if (!fs::exists(path)) {
            const std::string command =
                "ffmpeg -nostdin -v error -f lavfi -i testsrc2=size=160x90:rate=5:duration=" +
                std::to_string(seconds) +
                " -c:v libx264 -preset ultrafast -g 5 -pix_fmt yuv420p -f " + format + " '" + path +
                "'";
            EXPECT_EQ(std::system(command.c_str()), 0) << command;
        }
        return contentOf(path);
    }

    ByteVector playable(const FamilyMaker& maker, const ByteVector& recording) {
        if (maker.extension == ".MP4")
            return withPicture(recording, picture("mp4")).value_or(ByteVector());
        // The list takes the name of an MP4 file alone; a transport stream is known by its packets.
        ByteVector stream = picture("mpegts");
        stream.insert(stream.end(), recording.begin(), recording.end());
        return stream;
    }

    void writeBeside(const FamilyRecording& made) {
        const fs::path path(made.path);
        if (made.maker.family == besideTheRecording) {
            std::ofstream lines(fs::path(path).replace_extension(".nmea"));
            for (const DriveSecond& second : made.drive)
                lines << making::rmc(second) << "\r\n";
        } else if (made.maker.family == trackFile) {
            std::ofstream(fs::path(path).replace_extension(".gpx")) << gpxOf(made.drive);
        } else if (made.maker.family == frontRecording) {
            const FamilyMaker& front = familyMakers().front();
            write((path.parent_path() / "104425_F.MP4").string(),
                  playable(front, front.make(made.drive)));
        }
    }

    QCustomPlot& plot() { return dynamic_cast<QCustomPlot&>(panes().control.chart.widget()); }
    int points(int series) {
        return series < plot().graphCount() ? plot().graph(series)->data()->size() : 0;
    }
    double value(int series, int point) { return plot().graph(series)->data()->at(point)->value; }
};

TEST_F(FamilyRoadTest, every_family_goes_from_the_mark_to_route_chart_and_picture) {
    make();
    ASSERT_EQ(recordings.size(), telemetry::families().size());
    std::vector<std::string> paths;
    for (const FamilyRecording& made : recordings)
        paths.push_back(made.path);
    ASSERT_NO_FATAL_FAILURE(showOnMap(paths));
    EXPECT_EQ(boxes, std::vector<std::string>());
    for (int row = 1; row <= driver().rowCount(); ++row) {
        const FamilyRecording& made = recordings[static_cast<std::size_t>(row) - 1];
        SCOPED_TRACE(std::string(made.maker.family));
        EXPECT_TRUE(rooms().rows->marked(row));
        expectRoute(row, made);
        ASSERT_NO_FATAL_FAILURE(expectPlays(row));
        expectSpeeds(made);
        expectAccelerations(made);
    }
}

} // namespace velmorant

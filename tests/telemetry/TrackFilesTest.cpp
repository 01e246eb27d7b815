// Tracks that something else has written beside a recording.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "telemetry/export/TrackExporter.h"
#include "telemetry/families/TrackFilePoints.h"
#include "tests/builders/TemporaryFolder.h"
#include "tests/builders/gpxText.h"
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

using namespace recordings;
using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

std::string cueOf(std::size_t second, const char* lineEnd) {
    const std::string digits = (second < 10 ? "0" : "") + std::to_string(second);
    return std::to_string(second + 1) + lineEnd + "00:00:" + digits + ",000 --> 00:00:" + digits +
           ",999" + lineEnd;
}

class TrackFiles : public testing::Test {
  protected:
    void SetUp() override {
        drive_ = Driver({}, 70, 5).drive(morning, 30);
        writeRecording("20240612_183045.MP4", morning);
    }

    void writeRecording(const std::string& name, std::int64_t creation) {
        Mp4Plan plan = making::planOf(drive_);
        plan.creation = creation;
        const ByteVector bytes = buildMp4(plan);
        recording_ = m_folder / name;
        write(name, std::string(bytes.begin(), bytes.end()));
    }
    void write(const std::string& name, const std::string& text) const {
        std::ofstream(m_folder / name, std::ios::binary)
            .write(text.data(), static_cast<std::streamsize>(text.size()));
    }
    Telemetry read() const {
        const auto outcome = extractFile(recording_.string());
        EXPECT_TRUE(outcome);
        return outcome ? outcome.value() : Telemetry{};
    }
    void expectTrack(const std::string& notice) const {
        const Telemetry track = read();
        EXPECT_EQ(track.family, "track file beside the recording");
        ASSERT_EQ(track.samples.size(), drive_.size());
        for (std::size_t i = 0; i < drive_.size(); ++i) {
            EXPECT_EQ(track.samples[i].state, FixState::good) << i;
            EXPECT_LT(distance(track.samples[i].latitude, track.samples[i].longitude,
                               drive_[i].latitude, drive_[i].longitude),
                      0.5)
                << i;
        }
        ASSERT_EQ(track.notices.size(), 1U);
        EXPECT_THAT(describe(track.notices[0]), HasSubstr(notice));
    }

    const builders::TemporaryFolder m_temporary;
    const fs::path m_folder = m_temporary.path();
    fs::path recording_;
    DriveSeconds drive_;
};

} // namespace

TEST_F(TrackFiles, gpx_of_the_recordings_name_is_read) {
    write("20240612_183045.gpx", gpxOf(drive_));
    expectTrack("this one is from " + (m_folder / "20240612_183045.gpx").string() +
                ", placed by the creation time: points for 30 of 30 seconds");
    const Telemetry track = read();
    EXPECT_EQ(track.base, TimeBase::utc);
    EXPECT_EQ(track.samples[0].time, morning);
    EXPECT_NEAR(track.samples[9].speed, drive_[9].speed, 0.1);
    EXPECT_NEAR(track.samples[9].altitude, 12.5, 0.1);
}

TEST_F(TrackFiles, gpx_of_another_name_is_found_by_its_times) {
    const auto other = Driver({48, 11}, 70, 6).drive(morning + 3600, 600);
    write("another day.gpx", gpxOf(other));
    auto day = Driver({48.5, 11}, 70, 7).drive(morning - 20, 20);
    day.insert(day.end(), drive_.begin(), drive_.end());
    write("walk.GPX", gpxOf(day));
    expectTrack("walk.GPX, placed by the creation time: points for 30 of 30 seconds");
}

TEST_F(TrackFiles, a_creation_time_of_the_end_places_a_track_too) {
    writeRecording("20240612_183045.MP4", morning + 30);
    write("walk.gpx", gpxOf(drive_));
    expectTrack("placed by the creation time as that of the end: points for 30 of 30 seconds");
}

TEST_F(TrackFiles, times_without_a_zone_are_held_against_the_recorders_clock) {
    write("walk.gpx", gpxOf(drive_, 8 * 3600, ""));
    expectTrack("placed by the time in the recording's name");
    EXPECT_EQ(read().base, TimeBase::camera);
    write("walk.gpx", gpxOf(drive_, 8 * 3600, "+08:00"));
    expectTrack("placed by the creation time");
    EXPECT_EQ(read().base, TimeBase::utc);
}

TEST_F(TrackFiles, of_another_time_are_left_alone) {
    write("walk.gpx", gpxOf(drive_, 20)); // a third of the recording
    EXPECT_EQ(read().family, "none");
    write("walk.gpx", gpxOf(drive_, 86400 / 2));
    EXPECT_EQ(read().family, "none");
    write("walk.gpx", "no <gpx> at all <trkpt lat=\"1\" lon=\"2\"/><time>2024");
    EXPECT_EQ(read().family, "none");
}

TEST_F(TrackFiles, of_the_recordings_name_but_another_time_start_with_it) {
    write("20240612_183045.gpx", gpxOf(drive_, 3600));
    expectTrack("placed by its first point; its times do not fit the recording's");
    // One that is longer than the recording cannot be placed so.
    write("20240612_183045.gpx", gpxOf(Driver({}, 70, 5).drive(morning + 3600, 90)));
    EXPECT_EQ(read().family, "none");
}

TEST_F(TrackFiles, subtitles_of_the_recordings_name_are_read) {
    std::ostringstream srt;
    srt.precision(10);
    for (std::size_t i = 0; i < drive_.size(); ++i) {
        srt << cueOf(i, "\r\n") << "2024-06-12 18:30:" << 45 + i % 15
            << "\r\n[latitude: " << drive_[i].latitude << "] [longitude: " << drive_[i].longitude
            << "] " << drive_[i].speed << " km/h\r\n\r\n";
    }
    write("20240612_183045.srt", srt.str());
    expectTrack("placed by its subtitles: points for 30 of 30 seconds");
    EXPECT_NEAR(read().samples[9].speed, drive_[9].speed, 0.1);
}

TEST_F(TrackFiles, sentences_in_subtitles_are_read) {
    std::string srt;
    for (std::size_t i = 0; i < drive_.size(); ++i) {
        srt += cueOf(i, "\n") + making::rmc(drive_[i]) + "\n\n";
    }
    write("20240612_183045.SRT", srt);
    expectTrack("placed by its subtitles: points for 30 of 30 seconds");
}

TEST_F(TrackFiles, what_the_program_exports_it_reads_back) {
    write("20240612_183045.gpx", gpxOf(drive_));
    const Telemetry first = read();
    std::ostringstream out;
    const auto exporter = makeExporter(ExportFormat::gpx, Positions::trusted, out);
    exporter->begin();
    exporter->beginTrip("a & b");
    exporter->recording("a.MP4", first);
    exporter->endTrip();
    exporter->end();
    write("20240612_183045.gpx", out.str());
    expectTrack("points for 30 of 30 seconds");
    EXPECT_EQ(read().base, first.base);
}

TEST(TrackFilePoints, times_are_read_with_and_without_a_zone) {
    const auto timeOf = [](std::string_view text) {
        Fix fix;
        readIsoTime(text, fix);
        return std::pair(fix.time, fix.base);
    };
    constexpr std::int64_t milliseconds = morning * 1000;
    EXPECT_EQ(timeOf("2024-06-12T10:30:45Z"), std::pair(milliseconds, TimeBase::utc));
    EXPECT_EQ(timeOf(" 2024-06-12T10:30:45.250Z\n"), std::pair(milliseconds + 250, TimeBase::utc));
    EXPECT_EQ(timeOf("2024-06-12T18:30:45+08:00"), std::pair(milliseconds, TimeBase::utc));
    EXPECT_EQ(timeOf("2024-06-12T05:00:45-05:30"), std::pair(milliseconds, TimeBase::utc));
    EXPECT_EQ(timeOf("2024-06-12 10:30:45"), std::pair(milliseconds, TimeBase::camera));
    for (const char* wrong : {"", "2024-06-12", "2024-13-12T10:30:45Z", "2024/06/12 10:30:45",
                              "2024-06-12T10:30:4", "x024-06-12T10:30:45Z"}) {
        EXPECT_EQ(timeOf(wrong).first, noTime) << wrong;
    }
}

} // namespace velmorant::telemetry

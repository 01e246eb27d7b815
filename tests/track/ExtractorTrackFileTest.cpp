#include "extractor/TrackFileWriter.h"
#include "tests/builders/ScratchFolder.h"
#include "track/TrackFileReader.h"
#include "xml/ExpatDocument.h"

#include <gtest/gtest.h>

#include <string>

namespace velmorant {
namespace {

/// What the extractor writes, read as the program reads it: the two know each other by the file
/// alone.
class ExtractorTrackFileTest : public ::testing::Test {
  protected:
    static telemetry::Telemetry drive() {
        telemetry::Telemetry telemetry;
        telemetry.family = "test";
        telemetry.base = telemetry::TimeBase::utc;
        telemetry.duration = 3;
        for (int i = 0; i < 3; ++i) {
            telemetry::Sample sample;
            sample.time = 1349827198 + i; // 2012-10-09 23:59:58
            sample.state = telemetry::FixState::good;
            sample.latitude = -25.0412345;
            sample.longitude = 121.5 + i;
            sample.speed = 60.5;
            sample.heading = 359.9;
            sample.altitude = 12.5;
            sample.hasAcceleration = true;
            sample.mean = {0.125, -0.2, 0.98};
            sample.strongest = 2.5;
            telemetry.samples.push_back(sample);
        }
        telemetry.samples[2].state = telemetry::FixState::jump;
        telemetry.samples[2].speed = 0;
        telemetry.samples[2].hasAcceleration = false;
        return telemetry;
    }
    void write(const std::string& recording,
               const telemetry::Result<telemetry::Telemetry>& outcome) {
        const auto problem = telemetry::writeTrackFile(file, recording, outcome);
        ASSERT_FALSE(problem) << describe(*problem);
        reader.load(file);
    }

    builders::ScratchFolder folder;
    const std::string file = folder.path("output.kml");
    ExpatDocument document;
    TrackFileReader reader{document};
};

TEST_F(ExtractorTrackFileTest, samples_arrive_as_dots_that_rise_past_midnight) {
    write("/card/20121009/103045.MP4", drive());
    EXPECT_EQ(reader.recording(), "/card/20121009/103045.MP4");
    EXPECT_FALSE(reader.error());
    const auto track = reader.read();
    ASSERT_NE(track, nullptr);
    ASSERT_EQ(track->count(), 3);
    const TrackDot& first = track->dot(1);
    EXPECT_EQ(first.dateText, "2012/10/9 23:59:58");
    EXPECT_EQ(first.lonLatText, "+121.5000000|-25.0412345");
    EXPECT_EQ(first.speed, 60);
    EXPECT_EQ(first.angle, 360);
    EXPECT_EQ(first.gX, 0.12);
    EXPECT_EQ(first.gSum, 1.01);
    EXPECT_EQ(track->dot(3).dateText, "2012/10/9 24:00:00");
    EXPECT_EQ(track->dot(3).second, 2);
    EXPECT_EQ(track->dot(3).x, 1235000000);
}

TEST_F(ExtractorTrackFileTest, details_arrive_beside_the_dots) {
    write("/card/1.MP4", drive());
    const TrackDetails details = reader.read()->details();
    EXPECT_EQ(details.timeBase, TimeBase::Utc);
    ASSERT_EQ(details.samples.size(), 3u);
    EXPECT_TRUE(details.samples[0].hasFix);
    EXPECT_EQ(details.samples[0].strongestG, 2.5);
    EXPECT_EQ(details.samples[0].altitude, 12.5);
    EXPECT_FALSE(details.samples[2].hasFix);
    EXPECT_EQ(details.samples[2].fixReason, "jump");
    EXPECT_EQ(details.samples[2].strongestG, std::nullopt);
}

TEST_F(ExtractorTrackFileTest, every_path_names_its_recording) {
    for (const std::string path :
         {"/a  b & c/\"10\" 'x' <y>.MP4", "/\xe4\xb8\xad\xe6\x96\x87/\xe8\xbb\x8a.MP4",
          "/100%25.MP4", "/bad\xff\x01%/1.MP4", "/tab\tand\nline.MP4"}) {
        write(path, drive());
        EXPECT_EQ(reader.recording(), path);
    }
}

TEST_F(ExtractorTrackFileTest, the_reason_of_a_recording_that_cannot_be_used_arrives) {
    telemetry::Error error;
    error.file = "/card/1.MP4";
    error.code = telemetry::ReasonCode::unfinished;
    error.reason = "the file ends < before its index & more";
    write("/card/1.MP4", error);
    EXPECT_EQ(reader.sampleCount(), 0u);
    ASSERT_TRUE(reader.error());
    EXPECT_EQ(reader.error()->technical, "the file ends < before its index & more");
    EXPECT_EQ(reader.error()->code, "unfinished");
    EXPECT_EQ(reader.read(), nullptr);
}

TEST_F(ExtractorTrackFileTest, notices_arrive_beside_the_samples) {
    telemetry::Telemetry telemetry = drive();
    telemetry.notices.push_back({"/card/1.MP4", "moov", 7, "cut off", telemetry::ErrorKind::damaged,
                                 telemetry::ReasonCode::cutOff, 12});
    write("/card/1.MP4", telemetry);
    EXPECT_EQ(reader.sampleCount(), 3u);
    ASSERT_TRUE(reader.notice());
    EXPECT_EQ(reader.notice()->technical, "/card/1.MP4: moov at byte 7: cut off");
    EXPECT_EQ(reader.notice()->code, "cut-off");
    EXPECT_EQ(reader.notice()->amount, 12);
}

} // namespace
} // namespace velmorant

#include "desktop/system/ThreadedTrackExport.h"

#include "tests/desktop_windows/TemporaryFolder.h"
#include "tests/desktop_windows/WaitUntil.h"
#include "tools/recordings/FreeGpsBlocks.h"
#include "tools/recordings/Mp4Builder.h"
#include "xml/ExpatDocument.h"
#include <fstream>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using namespace recordings;
using Stage = ExportState::Stage;

class ThreadedTrackExportTest : public testing::Test {
  protected:
    std::string write(const std::string& name, const ByteVector& bytes) {
        const std::string path = folder.path(name);
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        return path;
    }
    std::string drive(const std::string& name) {
        const auto seconds = Driver({}, 70, 5).drive(1718188245, 20);
        Mp4Plan plan;
        plan.seconds = 20;
        for (std::size_t i = 0; i < seconds.size(); ++i)
            plan.blocks.push_back({freeGpsBlock(seconds[i], FreeGpsLayout::withAcceleration), i});
        return write(name, buildMp4(plan));
    }
    ExportState outcome(const ExportOrder& order) {
        exporter.start(order);
        EXPECT_TRUE(waitUntil([&] { return exporter.state().stage != Stage::Running; }, 60000));
        return exporter.state();
    }

    const TemporaryFolder folder;
    ThreadedTrackExport exporter;
};

TEST_F(ThreadedTrackExportTest, what_it_wrote_is_read_back_second_by_second) {
    const std::string target = folder.path("one.gpx");
    EXPECT_EQ(outcome({drive("one.MP4"), target, "gpx", "one"}).stage, Stage::Done);
    ExpatDocument gpx;
    gpx.load(target);
    EXPECT_EQ(gpx.selectElements("trkpt"), 20u);
    EXPECT_EQ(gpx.childText(0, "time"), "2024-06-12T10:30:45Z");
    EXPECT_EQ(gpx.elementText("name"), "one");
}

TEST_F(ThreadedTrackExportTest, every_format_replaces_an_older_file) {
    const std::string recording = drive("one.MP4");
    for (const char* format : {"gpx", "kml", "csv"}) {
        const std::string target = folder.write(std::string("old.") + format, "old");
        EXPECT_EQ(outcome({recording, target, format, "one"}).stage, Stage::Done) << format;
        EXPECT_GT(folder.read(QString("old.%1").arg(format).toStdString()).size(), 500) << format;
    }
}

TEST_F(ThreadedTrackExportTest, a_recording_that_holds_no_track_is_told_and_leaves_no_file) {
    Mp4Plan plain;
    plain.seconds = 5;
    const std::string target = folder.path("plain.gpx");
    EXPECT_EQ(outcome({write("plain.MP4", buildMp4(plain)), target, "gpx", "x"}).code,
              "no-telemetry");
    EXPECT_EQ(outcome({write("empty.MP4", {}), target, "gpx", "x"}).code, "empty");
    EXPECT_EQ(outcome({folder.path("none.MP4"), target, "gpx", "x"}).code, "missing");
    EXPECT_EQ(outcome({drive("one.MP4"), folder.path("no/folder.gpx"), "gpx", "x"}).code,
              "not-written");
    EXPECT_FALSE(folder.names().contains("plain.gpx"));
}

TEST_F(ThreadedTrackExportTest, never_writes_over_the_recording) {
    const std::string recording = drive("one.MP4");
    const QByteArray before = folder.read("one.MP4");
    const ExportState state = outcome(
        {recording,
         folder.path("../") + folder.path().substr(folder.path().rfind('/') + 1) + "/one.MP4",
         "gpx", "one"});
    EXPECT_EQ(state.stage, Stage::Failed);
    EXPECT_EQ(state.code, "same-file");
    EXPECT_EQ(folder.read("one.MP4"), before);
}

TEST_F(ThreadedTrackExportTest, stops_a_long_search_when_asked_and_leaves_no_file) {
    // Four gigabytes without a header are searched from end to end.
    const std::string recording = write("long.MP4", box("ftyp", {}));
    std::ofstream(recording, std::ios::app | std::ios::binary) << std::string("\0\0\0\0mdat", 8);
    std::filesystem::resize_file(recording, std::uintmax_t{4} << 30);
    const std::string target = folder.path("long.gpx");
    exporter.start({recording, target, "gpx", "x"});
    ASSERT_TRUE(waitUntil([&] { return exporter.state().percent > 0; }, 60000));
    EXPECT_EQ(exporter.state().stage, Stage::Running);
    exporter.stop();
    ASSERT_TRUE(waitUntil([&] { return exporter.state().stage != Stage::Running; }, 60000));
    EXPECT_EQ(exporter.state().stage, Stage::Stopped);
    EXPECT_FALSE(folder.names().contains("long.gpx"));
}

} // namespace
} // namespace velmorant

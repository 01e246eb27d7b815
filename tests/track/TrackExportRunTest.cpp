#include "track/TrackExportRun.h"

#include "tests/fakes/FakeFileDialogs.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeMessageBox.h"
#include "tests/fakes/FakeProgressWindow.h"
#include "tests/fakes/FakeStatusLine.h"
#include "tests/fakes/FakeTexts.h"
#include "tests/fakes/FakeTrackExport.h"
#include "tests/fakes/FakeWaits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Stage = ExportState::Stage;

class TrackExportRunTest : public ::testing::Test {
  protected:
    TrackExportRunTest() {
        dialogs.saveAnswers = {"/home/me/103045.gpx", "/home/me/again.gpx"};
        waits.whenWaiting = [this] { exporter.current.stage = Stage::Done; };
    }
    void run() { exports.run("/card/103045.MP4", "gpx"); }

    fakes::FakeFileDialogs dialogs;
    fakes::FakeTrackExport exporter;
    fakes::FakeProgressWindow window;
    fakes::FakeWaits waits;
    fakes::FakeHostPaths paths;
    fakes::FakeMessageBox messages;
    fakes::FakeTexts texts;
    fakes::FakeStatusLine status;
    TrackExportRun exports{{.dialogs = dialogs,
                            .exporter = exporter,
                            .window = window,
                            .waits = waits,
                            .paths = paths,
                            .messages = messages,
                            .texts = texts,
                            .status = status}};
};

TEST_F(TrackExportRunTest, writes_the_track_under_the_name_that_the_user_chose) {
    run();
    ASSERT_EQ(exporter.orders.size(), 1u);
    EXPECT_EQ(exporter.orders[0].recording, "/card/103045.MP4");
    EXPECT_EQ(exporter.orders[0].target, "/home/me/103045.gpx");
    EXPECT_EQ(exporter.orders[0].format, "gpx");
    EXPECT_EQ(exporter.orders[0].title, "103045");
    EXPECT_EQ(status.last(), "103045.gpx");
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(TrackExportRunTest, proposes_the_recordings_name_with_the_formats_ending) {
    exports.run("/card/GX01.0001.insv", "csv");
    ASSERT_EQ(dialogs.saveRequests.size(), 1u);
    EXPECT_EQ(dialogs.saveRequests[0].defaultName, "GX01.0001.csv");
    EXPECT_EQ(dialogs.saveRequests[0].filter, "CSV|*.csv");
    EXPECT_EQ(dialogs.saveRequests[0].title, "<list.menu.export>");
}

TEST_F(TrackExportRunTest, a_dialog_that_was_cancelled_exports_nothing) {
    dialogs.saveAnswers = {""};
    run();
    EXPECT_THAT(exporter.orders, IsEmpty());
    EXPECT_THAT(window.titles, IsEmpty());
}

TEST_F(TrackExportRunTest, an_unknown_format_does_nothing) {
    exports.run("/card/103045.MP4", "doc");
    EXPECT_THAT(dialogs.saveRequests, IsEmpty());
    EXPECT_THAT(exporter.orders, IsEmpty());
}

TEST_F(TrackExportRunTest, shows_how_far_it_has_come_until_it_is_done) {
    waits.whenWaiting = [this] {
        exporter.current.percent += 40;
        if (exporter.current.percent > 100)
            exporter.current.stage = Stage::Done;
    };
    run();
    EXPECT_THAT(window.titles, ElementsAre("<list.menu.export>"));
    EXPECT_THAT(window.texts, ElementsAre("103045.MP4"));
    EXPECT_THAT(window.values, ElementsAre(0, 40, 80, 120));
    EXPECT_THAT(waits.sleeps, Each(100));
    EXPECT_EQ(window.closed, 1);
}

TEST_F(TrackExportRunTest, cancel_stops_it_and_says_nothing) {
    waits.whenWaiting = [this] { window.cancel(); };
    run();
    EXPECT_EQ(waits.sleeps.size(), 1u);
    EXPECT_EQ(exporter.stops, 1);
    EXPECT_EQ(window.closed, 1);
    EXPECT_THAT(messages.shown, IsEmpty());
    EXPECT_EQ(status.last(), "");
}

TEST_F(TrackExportRunTest, a_cancelled_export_does_not_cancel_the_next_one) {
    waits.whenWaiting = [this] { window.cancel(); };
    run();
    waits.whenWaiting = [this] { exporter.current.stage = Stage::Done; };
    run();
    EXPECT_EQ(status.last(), "again.gpx");
}

TEST_F(TrackExportRunTest, a_failure_is_told_in_plain_words_first) {
    waits.whenWaiting = [this] {
        exporter.current = {Stage::Failed, 0, "disk-full", "/home/me/103045.gpx: no space"};
    };
    run();
    EXPECT_THAT(messages.shown, ElementsAre(fakes::ShownMessage{
                                    "103045.MP4\n<reason.diskFull>\n/home/me/103045.gpx: no space",
                                    "<13011>", MessageStyle::Stop}));
    EXPECT_EQ(status.last(), "");
}

} // namespace
} // namespace velmorant

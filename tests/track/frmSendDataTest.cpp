// Long because a run of the extraction can end in so many ways.
#include "track/frmSendData.h"

#include "common/textRules.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeMapPage.h"
#include "tests/fakes/FakeMessageBox.h"
#include "tests/fakes/FakeProgressWindow.h"
#include "tests/fakes/FakeShell.h"
#include "tests/fakes/FakeStatusLine.h"
#include "tests/fakes/FakeTexts.h"
#include "tests/fakes/FakeTimers.h"
#include "tests/fakes/FakeWaits.h"
#include "tests/fakes/FakeXmlDocument.h"
#include "tests/track/trackFileContent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <vector>

namespace velmorant {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

const std::string trackFile = "/cache/VelmorantDVRtempFile/output.kml";

class frmSendDataTest : public ::testing::Test {
  protected:
    frmSendDataTest() {
        files.folders = {"/", "/cache"};
        window.whileShown = [this] { timers.advance(150); };
        shell.whenStarted = [this](const fakes::ShellCall& call) {
            if (written.count(call.parameters) > 0)
                write(written[call.parameters]);
        };
        addRow("/card/20121009/103045.MP4", "7");
    }

    /// The extractor has its track file ready.
    void write(const fakes::XmlContent& content) {
        files.files[trackFile] = "";
        document.documents[trackFile] = content;
    }
    void addRow(const std::string& path, const std::string& serial) {
        RecordingEntry row;
        row.path = path;
        row.serial = toInt32(serial);
        row.mark = MarkState::Marked;
        list.append({row});
        list.select(list.count());
        written[path] = trackFileContent(3);
    }
    void extractOne() { send.ShowModal("One"); }
    bool extractedAndShown(int row) const {
        return list.row(row).track == TrackState::Read && list.row(row).map == MapState::Shown;
    }
    void removeMissingRows() {
        ++removals;
        for (int row = list.count(); row >= 1; --row)
            if (list.row(row).file == FileState::Missing)
                list.remove(row, 1);
    }

    fakes::FakeTimers timers;
    fakes::FakeTimer tStart{timers};
    fakes::FakeClock clock;
    fakes::FakeProgressWindow window;
    fakes::FakeWaits waits;
    fakes::FakeFileSystem files;
    fakes::FakeHostPaths paths;
    fakes::FakeShell shell;
    fakes::FakeXmlDocument document;
    fakes::FakeMessageBox messages;
    fakes::FakeTexts texts;
    fakes::FakeStatusLine status;
    RecordingList list;
    int removals = 0;
    fakes::FakeMapPage page;
    ProgramState state;
    std::map<std::string, fakes::XmlContent> written; ///< by recording: what the extractor writes
    frmSendData send{{.tStart = tStart,
                      .clock = clock,
                      .window = window,
                      .waits = waits,
                      .files = files,
                      .paths = paths,
                      .shell = shell,
                      .document = document,
                      .messages = messages,
                      .texts = texts,
                      .status = status,
                      .list = list,
                      .page = page,
                      .state = state,
                      .removeMissingRows = [this] { removeMissingRows(); }}};
};

std::string points(int from, int to) {
    std::string text;
    for (int i = from; i < to; ++i)
        text += "+" + std::to_string(i) + ".5!-" + std::to_string(i) + ".25|";
    return text;
}

TEST_F(frmSendDataTest, the_run_starts_once_after_its_window_has_shown) {
    window.whileShown = [this] {
        EXPECT_TRUE(tStart.enabled());
        timers.advance(99);
        EXPECT_TRUE(shell.calls.empty());
        timers.advance(1);
        EXPECT_EQ(shell.calls.size(), 1u);
        timers.advance(1000);
    };
    extractOne();
    EXPECT_EQ(shell.calls.size(), 1u);
    EXPECT_EQ(tStart.ticks(), 1);
    EXPECT_FALSE(tStart.enabled());
    EXPECT_THAT(window.titles, ElementsAre("<extraction.title>"));
    EXPECT_EQ(window.closed, 1);
}

TEST_F(frmSendDataTest, starts_the_extractor_hidden_with_the_whole_path_as_it_stands) {
    list.remove(1, list.count());
    addRow("/card/a  b & c/10.MP4", "1");
    extractOne();
    EXPECT_THAT(shell.calls,
                ElementsAre(fakes::ShellCall{"open", "/program/movsupport/Parse",
                                             "/card/a  b & c/10.MP4", "", ShowWindow::Hidden}));
}

TEST_F(frmSendDataTest, creates_the_temporary_folder_and_deletes_an_old_track_file_first) {
    files.files[trackFile] = "old";
    shell.whenStarted = [this](const fakes::ShellCall&) {
        EXPECT_FALSE(files.fileExists(trackFile));
        write(trackFileContent(1));
    };
    extractOne();
    EXPECT_TRUE(files.folderExists("/cache/VelmorantDVRtempFile"));
    EXPECT_TRUE(state.loadedTracks.contains(7));
}

TEST_F(frmSendDataTest, a_track_is_read_and_stored_under_the_serial_number) {
    extractOne();
    const auto track = state.loadedTracks.find(7);
    ASSERT_NE(track, nullptr);
    EXPECT_EQ(track->count(), 3);
    EXPECT_EQ(track->lSerial(), 1) << "the row's index";
    EXPECT_EQ(track->lPlayLocal(), 0);
    EXPECT_TRUE(extractedAndShown(1));
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(removals, 1);
}

TEST_F(frmSendDataTest, the_tag_is_compared_without_regard_to_case) {
    addRow("/card/2.MP4", "8");
    send.ShowModal("oNE");
    EXPECT_EQ(shell.calls.size(), 1u) << "the selected row alone";
    EXPECT_EQ(shell.calls[0].parameters, "/card/2.MP4");
}

TEST_F(frmSendDataTest, nothing_selected_extracts_nothing_and_closes) {
    list.select(0);
    extractOne();
    EXPECT_TRUE(shell.calls.empty());
    EXPECT_EQ(window.closed, 1);
}

TEST_F(frmSendDataTest, the_route_goes_to_the_page_ten_points_to_a_call) {
    written[list.row(1).path] = trackFileContent(25);
    extractOne();
    EXPECT_THAT(page.routes, ElementsAre("007" + points(0, 1), points(1, 11), points(11, 21),
                                         points(21, 25), "Over"));
}

TEST_F(frmSendDataTest, a_call_is_followed_by_events_and_a_short_pause) {
    std::vector<std::string> log;
    page.log = &log;
    waits.log = &log;
    written[list.row(1).path] = trackFileContent(11);
    extractOne();
    EXPECT_THAT(log, ElementsAre("sleep 100", "sleep 500", "route", "events", "sleep 5", "route",
                                 "events", "sleep 5", "route", "events"));
}

TEST_F(frmSendDataTest, a_last_call_without_points_is_not_sent) {
    written[list.row(1).path] = trackFileContent(11);
    extractOne();
    EXPECT_THAT(page.routes, ElementsAre("007" + points(0, 1), points(1, 11), "Over"));
}

struct NumberText {
    const char* serial;
    const char* number;
};

TEST_F(frmSendDataTest, the_page_knows_a_recording_by_at_least_three_digits) {
    const NumberText numbers[] = {{"1", "001"}, {"42", "042"}, {"999", "999"}, {"1234", "1234"}};
    for (const NumberText& number : numbers) {
        list.remove(1, list.count());
        page.routes.clear();
        addRow(std::string("/card/") + number.serial + ".MP4", number.serial);
        extractOne();
        ASSERT_FALSE(page.routes.empty());
        EXPECT_EQ(page.routes.front(), number.number + points(0, 1));
    }
}

TEST_F(frmSendDataTest, a_page_that_is_not_ready_gets_no_call_and_the_track_is_still_stored) {
    page.isReady = false;
    extractOne();
    EXPECT_TRUE(page.routes.empty());
    EXPECT_TRUE(state.loadedTracks.contains(7));
    EXPECT_EQ(waits.total, 600);
}

TEST_F(frmSendDataTest, a_page_that_becomes_ready_in_between_gets_the_points_from_then_on) {
    page.isReady = false;
    written[list.row(1).path] = trackFileContent(5);
    shell.whenStarted = [this](const fakes::ShellCall&) { write(trackFileContent(5)); };
    waits.whenWaiting = [this] { page.isReady = true; };
    extractOne();
    EXPECT_THAT(page.routes, ElementsAre("007" + points(0, 1), points(1, 5), "Over"));
}

TEST_F(frmSendDataTest, a_recording_opened_twice_is_extracted_again_but_its_first_track_stays) {
    extractOne();
    const auto first = state.loadedTracks.find(7);
    page.routes.clear();
    extractOne();
    EXPECT_EQ(shell.calls.size(), 2u);
    EXPECT_EQ(state.loadedTracks.find(7), first);
    EXPECT_THAT(page.routes, ElementsAre("Over"));
}

TEST_F(frmSendDataTest, a_track_file_without_samples_makes_no_track_but_counts_as_extracted) {
    written[list.row(1).path] = {};
    extractOne();
    EXPECT_EQ(state.loadedTracks.size(), 0u);
    EXPECT_TRUE(extractedAndShown(1));
    EXPECT_THAT(page.routes, ElementsAre("Over"));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(frmSendDataTest, an_extractor_that_cannot_be_started_is_reported_and_ends_the_run) {
    addRow("/card/2.MP4", "8");
    shell.result = 32;
    shell.errorDescription = "File not found";
    send.ShowModal("All");
    EXPECT_THAT(messages.shown, ElementsAre(fakes::ShownMessage{"<13012>error:File not found",
                                                                "<13011>", MessageStyle::Stop}));
    EXPECT_EQ(shell.calls.size(), 1u);
    EXPECT_EQ(window.closed, 1);
    EXPECT_FALSE(extractedAndShown(1));
    EXPECT_TRUE(waits.sleeps.empty());
}

TEST_F(frmSendDataTest, a_shell_result_of_33_is_a_success) {
    shell.result = 33;
    extractOne();
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_TRUE(extractedAndShown(1));
}

TEST_F(frmSendDataTest, a_track_file_that_never_comes_times_out_after_250_rounds) {
    written.clear();
    const std::string name = "103045.MP4";
    extractOne();
    EXPECT_EQ(waits.sleeps.size(), 250u);
    EXPECT_THAT(waits.sleeps, Each(100));
    EXPECT_THAT(messages.shown, ElementsAre(fakes::ShownMessage{name + "\n<13009>", "<13011>",
                                                                MessageStyle::Stop}));
    EXPECT_EQ(list.count(), 0) << "the row was flagged and is removed";
    EXPECT_EQ(shell.programsStopped, 1);
    EXPECT_TRUE(page.routes.empty());
}

TEST_F(frmSendDataTest, a_track_file_of_the_last_round_is_still_read) {
    written.clear();
    waits.whenWaiting = [this] {
        if (waits.sleeps.size() == 250)
            write(trackFileContent(1));
    };
    extractOne();
    EXPECT_TRUE(extractedAndShown(1));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(frmSendDataTest, a_batch_goes_on_after_a_time_out_and_removes_the_row_at_its_end) {
    addRow("/card/2.MP4", "8");
    addRow("/card/3.MP4", "9");
    written.erase("/card/2.MP4");
    send.ShowModal("All");
    EXPECT_EQ(messages.shown.size(), 1u);
    ASSERT_EQ(list.count(), 2);
    EXPECT_EQ(list.row(1).serial, 7);
    EXPECT_EQ(list.row(2).serial, 9);
    EXPECT_TRUE(state.loadedTracks.contains(9));
    EXPECT_EQ(removals, 1);
}

TEST_F(frmSendDataTest, a_batch_extracts_the_marked_rows_in_order_and_shows_its_share) {
    addRow("/card/2.MP4", "8");
    addRow("/card/3.MP4", "9");
    list.setMark(2, MarkState::NotMarked);
    send.ShowModal("All");
    ASSERT_EQ(shell.calls.size(), 2u);
    EXPECT_EQ(shell.calls[0].parameters, "/card/20121009/103045.MP4");
    EXPECT_EQ(shell.calls[1].parameters, "/card/3.MP4");
    EXPECT_EQ(list.selected(), 3);
    EXPECT_THAT(window.values, ElementsAre(0, 33, 100));
    EXPECT_EQ(state.loadedTracks.find(9)->lSerial(), 3);
}

TEST_F(frmSendDataTest, a_batch_says_where_it_is_and_at_its_end_what_was_read) {
    texts.texts = {{"extraction.place", "%1, %2 of %3"},
                   {"extraction.readInPart", "%1 read, %2 not"}};
    for (int i = 2; i <= 5; ++i)
        addRow("/card/" + std::to_string(i) + ".MP4", std::to_string(i));
    list.setMark(3, MarkState::NotMarked);
    written["/card/4.MP4"] = {};
    written["/card/4.MP4"].elements["error"] = "bad";
    written.erase("/card/5.MP4");
    send.ShowModal("All");
    EXPECT_THAT(window.texts, ElementsAre("103045.MP4, 1 of 4", "2.MP4, 2 of 4", "4.MP4, 3 of 4",
                                          "5.MP4, 4 of 4<extraction.secondsLeft>"));
    EXPECT_EQ(status.last(), "2 read, 2 not");
}

TEST_F(frmSendDataTest, a_batch_goes_on_behind_an_extractor_that_failed_and_keeps_its_row) {
    addRow("/card/2.MP4", "8");
    shell.whenStarted = [this](const fakes::ShellCall& call) {
        if (call.parameters == "/card/2.MP4")
            write(written[call.parameters]);
        else
            shell.end = ProgramEnd{3, false, "Parse: [disk-full] /x: no space left\n"};
    };
    send.ShowModal("All");
    EXPECT_THAT(messages.shown, ElementsAre(fakes::ShownMessage{"103045.MP4\n<reason.diskFull>",
                                                                "<13011>", MessageStyle::Stop}));
    EXPECT_EQ(list.count(), 2) << "the row stays";
    EXPECT_TRUE(state.loadedTracks.contains(8));
}

TEST_F(frmSendDataTest, mode_one_shows_the_share_of_samples) {
    written[list.row(1).path] = trackFileContent(4);
    extractOne();
    EXPECT_THAT(window.values, ElementsAre(0, 0, 25, 50, 75));
}

TEST_F(frmSendDataTest, a_track_file_of_another_recording_is_ignored_while_waiting) {
    fakes::XmlContent foreign = trackFileContent(2);
    foreign.rootAttributes["recording"] = "/card/other.MP4";
    fakes::XmlContent own = trackFileContent(5);
    own.rootAttributes["recording"] = list.row(1).path;
    written[list.row(1).path] = foreign;
    waits.whenWaiting = [&] {
        if (waits.sleeps.size() == 7)
            write(own);
    };
    extractOne();
    EXPECT_EQ(state.loadedTracks.find(7)->count(), 5);
    EXPECT_EQ(std::count(waits.sleeps.begin(), waits.sleeps.end(), 100), 7);
    EXPECT_EQ(std::count(waits.sleeps.begin(), waits.sleeps.end(), 500), 0) << "it is complete";
}

TEST_F(frmSendDataTest, only_the_track_file_of_another_recording_times_out) {
    fakes::XmlContent foreign = trackFileContent(2);
    foreign.rootAttributes["recording"] = "/card/other.MP4";
    written[list.row(1).path] = foreign;
    extractOne();
    EXPECT_EQ(waits.sleeps.size(), 250u);
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(state.loadedTracks.size(), 0u);
}

TEST_F(frmSendDataTest, a_file_still_being_written_is_loaded_after_it_has_settled) {
    shell.whenStarted = [this](const fakes::ShellCall&) { files.files[trackFile] = "<tr"; };
    waits.whenWaiting = [this] {
        if (waits.sleeps.back() == 500)
            write(trackFileContent(4));
    };
    extractOne();
    ASSERT_NE(state.loadedTracks.find(7), nullptr);
    EXPECT_EQ(state.loadedTracks.find(7)->count(), 4);
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(frmSendDataTest, a_run_time_error_drops_the_half_read_track_and_tells_the_reason) {
    fakes::XmlContent content = trackFileContent(30);
    setChild(content.records[14].second, "Speed", "fast");
    written[list.row(1).path] = content;
    extractOne();
    EXPECT_EQ(state.loadedTracks.size(), 0u);
    EXPECT_THAT(page.routes, IsEmpty()) << "the page has no half route";
    EXPECT_FALSE(extractedAndShown(1));
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "103045.MP4\n<reason.trackFile>");
    EXPECT_EQ(messages.shown[0].title, "<13011>");
    EXPECT_EQ(messages.shown[0].style, MessageStyle::Stop);
    EXPECT_THAT(list.row(1).notice,
                AllOf(StartsWith("<reason.trackFile>\nsample 15"), HasSubstr("Speed")));
    EXPECT_EQ(list.count(), 1) << "the row stays";
}

TEST_F(frmSendDataTest, an_ill_formed_track_file_is_a_run_time_error) {
    shell.whenStarted = [this](const fakes::ShellCall&) { files.files[trackFile] = "<tr"; };
    extractOne();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "103045.MP4\n<reason.trackFile>");
    EXPECT_THAT(list.row(1).notice, HasSubstr("not well-formed"));
    EXPECT_THAT(list.row(1).notice, Not(HasSubstr(trackFile)))
        << "a file that is nobody's business";
}

TEST_F(frmSendDataTest, a_temporary_folder_that_cannot_be_made_is_a_run_time_error) {
    files.broken.insert("/cache/VelmorantDVRtempFile");
    extractOne();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "103045.MP4\n<reason.notWritten>");
    EXPECT_THAT(list.row(1).notice, HasSubstr("permission denied"));
    EXPECT_TRUE(shell.calls.empty());
}

TEST_F(frmSendDataTest, the_extractors_reason_is_told_for_a_file_without_samples) {
    fakes::XmlContent content;
    content.rootAttributes["recording"] = list.row(1).path;
    content.elements["error"] = "the file is cut off before its index";
    content.elementAttributes["error"]["code"] = "unfinished";
    written[list.row(1).path] = content;
    extractOne();
    EXPECT_THAT(messages.shown, ElementsAre(fakes::ShownMessage{"103045.MP4\n<reason.unfinished>",
                                                                "<13011>", MessageStyle::Stop}));
    EXPECT_TRUE(extractedAndShown(1));
    EXPECT_EQ(list.row(1).notice, "<reason.unfinished>\nthe file is cut off before its index");
    EXPECT_THAT(page.routes, ElementsAre("Over"));
}

TEST_F(frmSendDataTest, a_notice_beside_samples_is_told_without_a_box) {
    fakes::XmlContent content = trackFileContent(3);
    content.elements["notice"] = "the last minute is missing";
    content.elementAttributes["notice"] = {{"code", "cut-off"}, {"amount", "60"}};
    texts.texts["reason.cutOffBySeconds"] = "the last %1 s are missing";
    written[list.row(1).path] = content;
    extractOne();
    EXPECT_TRUE(state.loadedTracks.contains(7));
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(status.last(), "103045.MP4: the last 60 s are missing");
    EXPECT_EQ(list.row(1).notice, "the last 60 s are missing\nthe last minute is missing");
}

TEST_F(frmSendDataTest, a_notice_that_begins_with_the_path_is_told_without_it) {
    fakes::XmlContent content = trackFileContent(3);
    content.elements["notice"] = list.row(1).path + ": moov at byte 7: the box is cut off";
    written[list.row(1).path] = content;
    extractOne();
    EXPECT_EQ(status.last(), "103045.MP4: <reason.partOfTrack>");
    EXPECT_EQ(list.row(1).notice, "<reason.partOfTrack>\nmoov at byte 7: the box is cut off");
}

TEST_F(frmSendDataTest, a_batch_tells_all_its_failures_once_at_its_end) {
    for (int i = 0; i < 3; ++i)
        addRow("/card/" + std::to_string(i) + ".MP4", std::to_string(20 + i));
    written["/card/0.MP4"].elements["error"] = "first reason";
    written["/card/0.MP4"].records.clear();
    written["/card/2.MP4"] = {};
    written["/card/2.MP4"].elements["error"] = "second reason";
    written["/card/2.MP4"].elementAttributes["error"]["code"] = "empty";
    send.ShowModal("All");
    EXPECT_THAT(messages.shown,
                ElementsAre(fakes::ShownMessage{"0.MP4\n<reason.noTrack>\n2.MP4\n<reason.empty>",
                                                "<13011>", MessageStyle::Stop}));
    EXPECT_TRUE(state.loadedTracks.contains(7));
    EXPECT_TRUE(state.loadedTracks.contains(21));
    extractOne();
    EXPECT_EQ(messages.shown.size(), 2u) << "a further run begins without the earlier failures";
}

TEST_F(frmSendDataTest, a_box_of_many_failures_stays_on_the_screen) {
    texts.texts["extraction.more"] = "and %1 more";
    list.remove(1, list.count());
    for (int i = 0; i < 300; ++i) {
        addRow("/card/" + std::to_string(i) + ".MP4", std::to_string(i + 1));
        written["/card/" + std::to_string(i) + ".MP4"] = {};
        written["/card/" + std::to_string(i) + ".MP4"].elements["error"] = "bad";
    }
    send.ShowModal("All");
    ASSERT_EQ(messages.shown.size(), 1u);
    const std::string& text = messages.shown[0].text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 24);
    EXPECT_THAT(text, ::testing::EndsWith("\nand 288 more"));
}

TEST_F(frmSendDataTest, cancel_ends_a_wait_at_once_and_leaves_the_row_as_it_was) {
    written.clear();
    addRow("/card/2.MP4", "8");
    written.clear();
    waits.whenWaiting = [this] {
        if (waits.sleeps.size() == 3)
            window.cancel();
    };
    send.ShowModal("All");
    EXPECT_EQ(waits.sleeps.size(), 3u);
    EXPECT_EQ(shell.calls.size(), 1u);
    EXPECT_EQ(shell.programsStopped, 1);
    EXPECT_FALSE(extractedAndShown(1));
    EXPECT_EQ(list.count(), 2);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(window.closed, 1);
}

TEST_F(frmSendDataTest, cancel_while_a_file_is_still_being_written_reads_none_of_it) {
    shell.whenStarted = [this](const fakes::ShellCall&) { files.files[trackFile] = "<tr"; };
    waits.whenWaiting = [this] {
        if (waits.sleeps.back() == 500)
            window.cancel();
    };
    extractOne();
    EXPECT_EQ(shell.programsStopped, 1);
    EXPECT_FALSE(extractedAndShown(1));
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(frmSendDataTest, cancel_just_before_the_file_is_there_waits_no_more) {
    written[list.row(1).path] = trackFileContent(3);
    written[list.row(1).path].rootAttributes["recording"] = list.row(1).path;
    waits.whenWaiting = [this] { window.cancel(); };
    extractOne();
    EXPECT_THAT(waits.sleeps, ::testing::ElementsAre(100));
    EXPECT_TRUE(extractedAndShown(1)) << "the file was complete";
}

TEST_F(frmSendDataTest, cancel_while_a_route_is_streamed_sends_the_rest_without_pauses) {
    written[list.row(1).path] = trackFileContent(100);
    addRow("/card/2.MP4", "8");
    waits.whenWaiting = [this] {
        if (page.routes.size() == 2)
            window.cancel();
    };
    send.ShowModal("All");
    EXPECT_EQ(page.routes.size(), 12u) << "the page has the whole route";
    EXPECT_EQ(page.routes.back(), "Over");
    EXPECT_EQ(waits.eventRuns, 2);
    EXPECT_TRUE(extractedAndShown(1));
    EXPECT_EQ(shell.calls.size(), 1u) << "the next recording is not begun";
}

TEST_F(frmSendDataTest, a_cancelled_run_does_not_cancel_the_next_one) {
    window.cancel();
    extractOne();
    EXPECT_TRUE(extractedAndShown(1));
}

TEST_F(frmSendDataTest, a_call_during_a_run_does_nothing) {
    waits.whenWaiting = [this] { send.ShowModal("All"); };
    extractOne();
    EXPECT_EQ(shell.calls.size(), 1u);
    EXPECT_EQ(window.titles.size(), 1u);
}

TEST_F(frmSendDataTest, rows_flagged_before_are_removed_after_a_run) {
    addRow("/card/2.MP4", "8");
    list.set(1, &RecordingEntry::file, FileState::Missing);
    extractOne();
    ASSERT_EQ(list.count(), 1);
    EXPECT_EQ(list.row(1).serial, 8);
}

TEST_F(frmSendDataTest, a_loaded_track_is_sent_again_with_ten_points_in_its_first_call) {
    written[list.row(1).path] = trackFileContent(25);
    extractOne();
    page.routes.clear();
    waits.sleeps.clear();
    send.SendLoadedTrack(7);
    EXPECT_THAT(page.routes,
                ElementsAre("007" + points(0, 10), points(10, 20), points(20, 25), "Over"));
    EXPECT_THAT(waits.sleeps, ElementsAre(5, 5, 5));
    EXPECT_EQ(state.loadedTracks.find(7)->lPlayLocal(), 25) << "the cursor is at the last dot";
}

TEST_F(frmSendDataTest, sending_a_number_without_a_track_does_nothing) {
    send.SendLoadedTrack(7);
    EXPECT_TRUE(page.routes.empty());
}

TEST_F(frmSendDataTest, sending_again_to_a_page_that_is_not_ready_moves_the_cursor_alone) {
    page.isReady = false;
    extractOne();
    send.SendLoadedTrack(7);
    EXPECT_TRUE(page.routes.empty());
    EXPECT_EQ(state.loadedTracks.find(7)->lPlayLocal(), 3);
}

} // namespace
} // namespace velmorant

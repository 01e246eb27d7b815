#include "tests/library/ListBench.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace velmorant {
namespace {

using Texts = std::vector<std::string>;

class PlayQueueTest : public testing::Test, protected ListBench {};

TEST_F(PlayQueueTest, starts_a_row_step_by_step) {
    addRows(3);
    const auto track = extract(2);
    EXPECT_EQ(window.PlayEntry(2), RowStart::Started);
    EXPECT_EQ(state.currentTrack, track);
    EXPECT_EQ(log, (Texts{"sleep 100", "drawChart", "play /card/20121009/100002.MP4"}));
    EXPECT_EQ(list.playingIndex(), 2);
    EXPECT_EQ(RowView::weight(list, 2), RowWeight::Bold);
    EXPECT_EQ(RowView::colour(list, 2), 65535);
    EXPECT_EQ(RowView::weight(list, 1), RowWeight::Normal);
    EXPECT_EQ(status.last(), "");
}

TEST_F(PlayQueueTest, starts_a_requested_row_after_100_milliseconds_once) {
    addRows(1);
    extract(1);
    window.RequestPlay(1);
    timers.advance(99);
    EXPECT_TRUE(log.empty());
    timers.advance(1);
    EXPECT_EQ(list.playingIndex(), 1);
    EXPECT_FALSE(tContinue.enabled());
    log.clear();
    timers.advance(1000);
    EXPECT_TRUE(log.empty());
}

TEST_F(PlayQueueTest, unmarks_and_flags_a_row_whose_file_is_missing_and_stops) {
    addRows(2);
    mark({1, 2});
    extract(1);
    extract(2);
    files.files.erase("/card/20121009/100001.MP4");
    EXPECT_EQ(window.PlayEntry(1), RowStart::FileMissing);
    EXPECT_EQ(marked(), std::vector<int>{2});
    EXPECT_EQ(list.row(1).mark, MarkState::NotMarked);
    EXPECT_EQ(text(1, SubItem::FileMissing), "1");
    EXPECT_EQ(list.playingIndex(), 0);
    EXPECT_EQ(state.currentTrack, nullptr);
    EXPECT_TRUE(log.empty());
    EXPECT_TRUE(messageBox.shown.empty());
    EXPECT_EQ(status.last(), "missing: 100001.MP4");
    timers.advance(1000);
    EXPECT_TRUE(log.empty());
}

TEST_F(PlayQueueTest, does_not_start_a_row_without_a_track_and_says_why) {
    addRows(1);
    mark({1});
    EXPECT_EQ(window.PlayEntry(1), RowStart::NoTrack);
    EXPECT_EQ(marked(), std::vector<int>{1});
    EXPECT_EQ(text(1, SubItem::FileMissing), "0");
    EXPECT_TRUE(log.empty());
    EXPECT_TRUE(messageBox.shown.empty());
    EXPECT_EQ(status.last(), "no track: 100001.MP4");
}

TEST_F(PlayQueueTest, finds_no_row_outside_the_list) {
    addRows(1);
    EXPECT_EQ(window.PlayEntry(0), RowStart::NoSuchRow);
    EXPECT_EQ(window.PlayEntry(2), RowStart::NoSuchRow);
    window.RequestPlay(2);
    timers.advance(100);
    EXPECT_FALSE(tContinue.enabled());
}

TEST_F(PlayQueueTest, resumes_after_a_step_that_fails) {
    addRows(1);
    extract(1);
    playingFails = true;
    EXPECT_EQ(window.PlayEntry(1), RowStart::Started);
    EXPECT_EQ(log.back(), "play /card/20121009/100001.MP4");
    EXPECT_EQ(list.playingIndex(), 1);
}

TEST_F(PlayQueueTest, chooses_the_marked_row_that_follows_the_one_that_ended) {
    struct Case {
        std::vector<int> marked;
        int playing;
        std::optional<int> next;
    };
    const std::vector<Case> cases = {{{2, 4}, 4, 2},
                                     {{2, 4}, 2, 4},
                                     {{3}, 3, 3},
                                     {{5}, 5, 5},
                                     {{1, 5}, 5, 1},
                                     {{}, 3, {}},
                                     {{1, 2, 3, 4, 5}, 5, 1},
                                     {{1, 2, 3}, 3, 1},
                                     {{4}, 0, 4},
                                     {{1, 4}, 0, 1},
                                     {{2}, 5, 2},
                                     {{5}, 4, 5}};
    for (const Case& each : cases) {
        ListBench bench;
        bench.addRows(5);
        bench.mark(each.marked);
        bench.list.setPlayingIndex(each.playing);
        EXPECT_EQ(bench.window.queue().NextMarked(), each.next) << each.playing;
        bench.window.queue().MediaEnded();
        EXPECT_EQ(bench.tContinue.enabled(), each.next.has_value());
        EXPECT_EQ(bench.window.queue().requestedIndex(), each.next.value_or(0));
    }
}

TEST_F(PlayQueueTest, requests_nothing_from_an_empty_list) {
    window.queue().MediaEnded();
    EXPECT_FALSE(tContinue.enabled());
}

TEST_F(PlayQueueTest, ends_when_the_next_rows_file_was_removed) {
    addRows(3);
    mark({1, 2, 3});
    for (int row = 1; row <= 3; ++row)
        extract(row);
    (void)window.PlayEntry(1);
    log.clear();
    files.files.erase("/card/20121009/100002.MP4");
    window.queue().MediaEnded();
    timers.advance(1000);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(marked(), (std::vector<int>{1, 3}));
    EXPECT_EQ(text(2, SubItem::FileMissing), "1");
    EXPECT_EQ(list.playingIndex(), 1);
}

TEST_F(PlayQueueTest, plays_a_single_marked_row_again_and_again) {
    addRows(2);
    mark({2});
    extract(2);
    (void)window.PlayEntry(2);
    for (int round = 0; round < 3; ++round) {
        log.clear();
        window.queue().MediaEnded();
        timers.advance(100);
        EXPECT_EQ(log.size(), 3U);
    }
}

TEST_F(PlayQueueTest, unmarks_a_recording_that_cannot_be_played_and_goes_on) {
    addRows(3);
    mark({1, 2});
    extract(1);
    extract(2);
    (void)window.PlayEntry(1);
    window.queue().PlaybackFailed("unknown codec");
    EXPECT_EQ(marked(), std::vector<int>{2});
    EXPECT_EQ(list.row(1).notice, "unknown codec");
    EXPECT_EQ(text(1, SubItem::FileMissing), "0");
    EXPECT_EQ(status.last(), "not playable: 100001.MP4: unknown codec");
    EXPECT_TRUE(messageBox.shown.empty());
    timers.advance(100);
    EXPECT_EQ(list.playingIndex(), 2);
    window.queue().PlaybackFailed("cut off");
    timers.advance(1000);
    EXPECT_EQ(list.playingIndex(), 2);
    EXPECT_TRUE(marked().empty());
}

TEST_F(PlayQueueTest, clears_the_reason_when_the_recording_plays_after_all) {
    addRows(1);
    extract(1);
    list.set(1, &RecordingEntry::notice, "cut off");
    (void)window.PlayEntry(1);
    EXPECT_EQ(list.row(1).notice, "");
}

TEST_F(PlayQueueTest, clears_the_flag_of_a_missing_file_that_came_back) {
    addRows(1);
    extract(1);
    const auto file = files.files.extract("/card/20121009/100001.MP4");
    EXPECT_EQ(window.PlayEntry(1), RowStart::FileMissing);
    ASSERT_EQ(text(1, SubItem::FileMissing), "1");
    files.files["/card/20121009/100001.MP4"] = "";
    EXPECT_EQ(window.PlayEntry(1), RowStart::Started);
    EXPECT_EQ(text(1, SubItem::FileMissing), "0");
    window.RemoveMissing();
    EXPECT_EQ(list.count(), 1);
}

TEST_F(PlayQueueTest, keeps_the_shown_count_true_when_it_unmarks_a_row) {
    addRows(2);
    mark({1, 2});
    extract(1);
    extract(2);
    EXPECT_EQ(skin.texts["place.count"], "2 recordings, 2 marked");
    (void)window.PlayEntry(1);
    window.queue().PlaybackFailed("cut off");
    EXPECT_EQ(skin.texts["place.count"], "2 recordings, 1 marked");
    files.files.erase("/card/20121009/100002.MP4");
    (void)window.PlayEntry(2);
    EXPECT_EQ(skin.texts["place.count"], "2 recordings, 0 marked");
}

TEST_F(PlayQueueTest, passes_over_a_failure_when_nothing_plays) {
    addRows(1);
    mark({1});
    window.queue().PlaybackFailed("late");
    EXPECT_EQ(marked(), std::vector<int>{1});
    EXPECT_FALSE(tContinue.enabled());
}

} // namespace
} // namespace velmorant

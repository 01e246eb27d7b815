#include "tests/library/ListBench.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

using fakes::ShownMessage;
using Texts = std::vector<std::string>;
using Rows = std::vector<int>;

class RecordingMarksTest : public testing::Test, protected ListBench {};

TEST_F(RecordingMarksTest, extracts_the_track_of_a_row_that_has_none) {
    addRows(2);
    extraction.whenCalled = [this] { EXPECT_EQ(list.selected(), 2); };
    window.ToggleMark(2);
    EXPECT_EQ(marked(), Rows{2});
    EXPECT_EQ(extraction.calls, Texts{"One"});
    EXPECT_EQ(text(2, SubItem::ShownOnMap), "0");
    EXPECT_EQ(skin.texts["place.count"], "2 recordings, 1 marked");
}

TEST_F(RecordingMarksTest, draws_a_hidden_track_again) {
    addRows(2);
    extract(2);
    list.set(2, &RecordingEntry::map, MapState::Hidden);
    window.ToggleMark(2);
    EXPECT_EQ(extraction.calls, Texts{"draw 2"});
    EXPECT_EQ(text(2, SubItem::ShownOnMap), "1");
}

TEST_F(RecordingMarksTest, leaves_a_track_that_is_drawn_already) {
    addRows(1);
    extract(1);
    window.ToggleMark(1);
    EXPECT_EQ(marked(), Rows{1});
    EXPECT_TRUE(extraction.calls.empty());
}

TEST_F(RecordingMarksTest, removes_the_track_of_an_unmarked_row_from_the_map) {
    addRows(7);
    extract(7);
    mark({7});
    window.ToggleMark(7);
    EXPECT_TRUE(marked().empty());
    EXPECT_EQ(list.row(7).mark, MarkState::NotMarked);
    EXPECT_EQ(text(7, SubItem::ShownOnMap), "0");
    EXPECT_EQ(text(7, SubItem::TrackExtracted), "1");
    EXPECT_EQ(page.cleared, Texts{"007"});
}

TEST_F(RecordingMarksTest, refuses_to_unmark_the_playing_row) {
    addRows(2);
    mark({1, 2});
    list.setPlayingIndex(1);
    for (const PlayState playState : {PlayState::Paused, PlayState::Playing}) {
        messageBox.shown.clear();
        player.state = playState;
        window.ToggleMark(1);
        EXPECT_EQ(messageBox.shown,
                  (std::vector<ShownMessage>{{"<13010>", "<13000>", MessageStyle::Information}}));
        EXPECT_EQ(marked(), (Rows{1, 2}));
    }
    window.ToggleMark(2);
    EXPECT_EQ(marked(), Rows{1});
}

TEST_F(RecordingMarksTest, unmarks_the_playing_row_while_stopped) {
    addRows(1);
    mark({1});
    list.setPlayingIndex(1);
    window.ToggleMark(1);
    EXPECT_TRUE(marked().empty());
    EXPECT_TRUE(messageBox.shown.empty());
}

TEST_F(RecordingMarksTest, passes_over_a_row_that_is_not_there) {
    addRows(1);
    window.ToggleMark(0);
    window.ToggleMark(2);
    window.ToggleSelected();
    EXPECT_TRUE(marked().empty());
    EXPECT_TRUE(messageBox.shown.empty());
}

TEST_F(RecordingMarksTest, toggles_the_selected_row_by_the_keyboard) {
    addRows(2);
    list.select(2);
    window.ToggleSelected();
    EXPECT_EQ(marked(), Rows{2});
}

TEST_F(RecordingMarksTest, marks_all_and_extracts_missing_tracks_once) {
    addRows(4);
    extract(1);
    extract(3);
    list.set(3, &RecordingEntry::map, MapState::Hidden);
    extraction.whenCalled = [this] { EXPECT_EQ(marked(), (Rows{1, 2, 3, 4})); };
    window.MarkCommand("all");
    EXPECT_EQ(extraction.calls, (Texts{"draw 3", "All"}));
    EXPECT_EQ(text(3, SubItem::ShownOnMap), "1");
    EXPECT_EQ(skin.texts["place.count"], "4 recordings, 4 marked");
}

TEST_F(RecordingMarksTest, starts_no_extraction_when_every_track_exists) {
    addRows(2);
    extract(1);
    extract(2);
    window.MarkCommand("ALL");
    EXPECT_EQ(marked(), (Rows{1, 2}));
    EXPECT_TRUE(extraction.calls.empty());
}

TEST_F(RecordingMarksTest, rows_behind_a_cancelled_drawing_stay_hidden_and_nothing_is_read) {
    addRows(4);
    for (int index : {1, 2, 3}) {
        extract(index);
        list.set(index, &RecordingEntry::map, MapState::Hidden);
    }
    extraction.mostDrawn = 2;
    window.MarkCommand("ALL");
    EXPECT_EQ(extraction.calls, (Texts{"draw 1", "draw 2"}));
    EXPECT_EQ(marked(), (Rows{1, 2, 3, 4}));
    EXPECT_EQ(list.row(2).map, MapState::Shown);
    EXPECT_EQ(list.row(3).map, MapState::Hidden);
    extraction.calls.clear();
    extraction.mostDrawn = 1000;
    window.MarkCommand("ALL");
    EXPECT_EQ(extraction.calls, (Texts{"draw 3", "All"})) << "the next time draws the rest";
}

TEST_F(RecordingMarksTest, does_nothing_on_an_empty_list) {
    for (const char* name : {"ALL", "NORMAL", "LOCK", "NONE", "else"})
        window.MarkCommand(name);
    EXPECT_TRUE(extraction.calls.empty());
    EXPECT_TRUE(page.cleared.empty());
}

TEST_F(RecordingMarksTest, marks_one_kind_and_unmarks_the_other) {
    add({"103045.MP4", "103046_P.MP4", "103047.MP4", "103048_P.MP4"});
    extract(1);
    list.set(1, &RecordingEntry::map, MapState::Hidden);
    extract(2);
    mark({2, 4});
    window.MarkCommand("Normal");
    EXPECT_EQ(marked(), (Rows{1, 3}));
    EXPECT_EQ(extraction.calls, (Texts{"draw 1", "All"}));
    EXPECT_EQ(page.cleared, (Texts{"002", "004"}));
    EXPECT_EQ(text(2, SubItem::ShownOnMap), "0");
    extraction.calls.clear();
    page.cleared.clear();
    window.MarkCommand("LOCK");
    EXPECT_EQ(marked(), (Rows{2, 4}));
    EXPECT_EQ(extraction.calls, (Texts{"draw 2", "All"}));
    EXPECT_EQ(page.cleared, (Texts{"001", "003"}));
}

TEST_F(RecordingMarksTest, leaves_the_row_of_the_current_track_marked) {
    addRows(4);
    mark({1, 2, 3});
    state.currentTrack = extract(2);
    extract(3);
    window.MarkCommand("NONE");
    EXPECT_EQ(marked(), Rows{2});
    EXPECT_EQ(text(2, SubItem::ShownOnMap), "1");
    EXPECT_EQ(text(3, SubItem::ShownOnMap), "0");
    EXPECT_EQ(page.cleared, (Texts{"001", "003"}));
    EXPECT_TRUE(extraction.calls.empty());
}

TEST_F(RecordingMarksTest, copes_with_rows_that_the_extraction_removed) {
    addRows(2);
    extraction.whenCalled = [this] {
        list.set(2, &RecordingEntry::file, FileState::Missing);
        window.RemoveMissing();
    };
    window.ToggleMark(2);
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(skin.texts["place.count"], "1 recording, 0 marked");
}

} // namespace
} // namespace velmorant

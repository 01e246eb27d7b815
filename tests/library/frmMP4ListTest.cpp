#include "tests/library/ListBench.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

using fakes::ShownMessage;
using Texts = std::vector<std::string>;

class frmMP4ListTest : public testing::Test, protected ListBench {};

TEST_F(frmMP4ListTest, loads_its_skin_and_adapts_to_the_density) {
    struct Case {
        int twips;
        double fontSize;
        int markWidth;
        int displayWidth;
    };
    skin.colour = 0x281812;
    for (const Case each : {Case{15, 11.0, 300, 2740}, {12, 8.7, 260, 2120}}) {
        screen.twipsY = each.twips;
        EXPECT_EQ(window.Load(), SkinLoad::Loaded);
        EXPECT_EQ(control.fontSize, each.fontSize);
        EXPECT_EQ(control.columnWidths[2], each.markWidth);
        EXPECT_EQ(control.columnWidths[3], each.displayWidth);
    }
    EXPECT_EQ(skin.loaded.front(), "/program/skin/media/ls1.MP4");
    EXPECT_EQ(bands.children.at("QVBar"), "LstMP4");
    EXPECT_EQ(background.colour, 0x281812);
    EXPECT_EQ(background.height, 255);
    EXPECT_FALSE(tContinue.enabled());
    EXPECT_EQ(tContinue.interval(), 100);
}

TEST_F(frmMP4ListTest, keeps_the_designed_sizes_at_other_densities) {
    screen.twipsY = 10;
    window.Load();
    EXPECT_EQ(control.fontSize, 0.0);
    EXPECT_TRUE(control.columnWidths.empty());
}

TEST_F(frmMP4ListTest, shows_the_message_when_its_skin_is_missing) {
    state.settings.setLanguage(1002);
    EXPECT_EQ(window.Load(), SkinLoad::Missing);
    EXPECT_EQ(messageBox.shown,
              (std::vector<ShownMessage>{{"<13012>", "<13011>", MessageStyle::Stop}}));
    EXPECT_TRUE(control.columnWidths.empty());
}

TEST_F(frmMP4ListTest, selects_the_row_under_a_pressed_button) {
    addRows(2);
    control.rowUnderMouse = 2;
    window.MouseDown(5, 5);
    window.MouseDown(5, 5);
    control.rowUnderMouse = 0;
    window.MouseDown(5, 5);
    EXPECT_EQ(list.selected(), 2);
    EXPECT_EQ(control.selections, std::vector<int>{2});
}

TEST_F(frmMP4ListTest, toggles_by_a_click_in_the_mark_column_alone) {
    struct Case {
        int x;
        int row;
        bool marks;
    };
    addRows(1);
    for (const Case each :
         {Case{12, 1, false}, {13, 1, true}, {37, 1, true}, {38, 1, false}, {15, 0, false}}) {
        list.setMark(1, MarkState::NotMarked);
        control.rowUnderMouse = each.row;
        window.MouseClick(each.x, 5);
        EXPECT_EQ(list.marked(1), each.marks) << each.x;
    }
}

TEST_F(frmMP4ListTest, plays_the_selected_row_by_a_double_click_when_it_is_marked) {
    addRows(2);
    window.PlaySelected();
    list.select(2);
    extract(2);
    window.PlaySelected();
    EXPECT_EQ(list.playingIndex(), 0);
    EXPECT_TRUE(log.empty());
    mark({2});
    window.PlaySelected();
    EXPECT_EQ(list.playingIndex(), 2);
    EXPECT_EQ(listBandRefreshes, 3);
}

TEST_F(frmMP4ListTest, recolours_rows_by_kind_and_playing_row) {
    struct Colours {
        std::int32_t colour;
        RowWeight weight;
        bool operator==(const Colours&) const = default;
    };
    const auto colours = [this] {
        std::vector<Colours> rows;
        for (int i = 1; i <= list.count(); ++i)
            rows.push_back({RowView::colour(list, i), RowView::weight(list, i)});
        return rows;
    };
    add({"103045.MP4", "103046_P.MP4", "103047.MP4"});
    window.RefreshListMarks(2);
    EXPECT_EQ(colours(), (std::vector<Colours>{{16777215, RowWeight::Normal},
                                               {65535, RowWeight::Bold},
                                               {16777215, RowWeight::Normal}}));
    window.RefreshListMarks(0);
    EXPECT_EQ(colours(), (std::vector<Colours>{{16777215, RowWeight::Normal},
                                               {255, RowWeight::Normal},
                                               {16777215, RowWeight::Normal}}));
}

TEST_F(frmMP4ListTest, deletes_all_rows_after_a_question) {
    addRows(3);
    mark({1, 3});
    state.currentTrack = extract(3);
    extract(1);
    list.setPlayingIndex(3);
    window.RequestPlay(1);
    messageBox.answers = {MessageAnswer::No, MessageAnswer::Yes};
    window.DeleteAll();
    EXPECT_EQ(list.count(), 3);
    EXPECT_TRUE(page.cleared.empty());
    EXPECT_TRUE(log.empty());
    window.DeleteAll();
    EXPECT_EQ(messageBox.shown[1], (ShownMessage{"<13004>", "<13003>", MessageStyle::Question}));
    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(page.cleared, (Texts{"003", "001"}));
    EXPECT_EQ(state.loadedTracks.size(), 0U);
    EXPECT_EQ(state.currentTrack, nullptr);
    EXPECT_EQ(list.playingIndex(), 0);
    EXPECT_FALSE(tContinue.enabled());
    EXPECT_EQ(log, Texts{"clearChart"});
    EXPECT_EQ(background.height, 255);
    EXPECT_EQ(skin.texts["place.count"], "0 recordings, 0 marked");
    EXPECT_EQ(files.files.count("/card/20121009/100001.MP4"), 1U);
    addRows(1);
    EXPECT_EQ(text(1, SubItem::SerialNumber), "4");
}

TEST_F(frmMP4ListTest, clears_the_chart_after_deleting_only_when_the_player_is_stopped) {
    addRows(1);
    player.state = PlayState::MediaEnded;
    messageBox.answers = {MessageAnswer::Yes};
    window.DeleteAll();
    EXPECT_EQ(list.count(), 0);
    EXPECT_TRUE(log.empty());
}

TEST_F(frmMP4ListTest, refuses_to_delete_all_while_playing_or_paused) {
    addRows(1);
    for (const PlayState playState : {PlayState::Paused, PlayState::Playing}) {
        messageBox.shown.clear();
        player.state = playState;
        window.DeleteAll();
        EXPECT_EQ(messageBox.shown,
                  (std::vector<ShownMessage>{{"<13008>", "<13000>", MessageStyle::Information}}));
        EXPECT_EQ(list.count(), 1);
    }
}

TEST_F(frmMP4ListTest, only_clears_the_chart_when_an_empty_list_is_deleted) {
    window.DeleteAll();
    EXPECT_TRUE(messageBox.shown.empty());
    EXPECT_EQ(log, Texts{"clearChart"});
    EXPECT_EQ(background.draws, 0);
}

TEST_F(frmMP4ListTest, runs_no_page_script_while_the_page_is_not_loaded) {
    addRows(2);
    mark({1, 2});
    page.isReady = false;
    window.MarkCommand("NONE");
    mark({1, 2});
    messageBox.answers = {MessageAnswer::Yes};
    window.DeleteAll();
    EXPECT_TRUE(page.cleared.empty());
    EXPECT_EQ(list.count(), 0);
}

TEST_F(frmMP4ListTest, removes_the_selected_row_without_a_question) {
    addRows(3);
    mark({2, 3});
    extract(2);
    const auto last = extract(3);
    list.setPlayingIndex(3);
    list.select(2);
    window.DeleteSelected();
    EXPECT_EQ(column(SubItem::SerialNumber), (Texts{"1", "3"}));
    EXPECT_EQ(list.selected(), 2);
    EXPECT_EQ(list.playingIndex(), 2);
    EXPECT_EQ(last->lSerial(), 2);
    EXPECT_EQ(page.cleared, Texts{"002"});
    EXPECT_FALSE(state.loadedTracks.contains(2));
    EXPECT_EQ(files.files.count("/card/20121009/100002.MP4"), 1U);
    EXPECT_EQ(background.height, 2 * 255);
    window.DeleteSelected();
    window.DeleteSelected();
    window.DeleteSelected();
    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(list.selected(), 0);
}

TEST_F(frmMP4ListTest, refuses_to_remove_the_row_that_is_open_in_the_player) {
    addRows(2);
    list.select(1);
    list.setPlayingIndex(1);
    player.state = PlayState::Paused;
    window.DeleteSelected();
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(status.last(), "<list.playing>");
    EXPECT_TRUE(messageBox.shown.empty());
    player.state = PlayState::Stopped;
    window.DeleteSelected();
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(list.playingIndex(), 0);
}

TEST_F(frmMP4ListTest, removes_flagged_rows_and_keeps_what_names_the_others) {
    addRows(7);
    for (const int row : {1, 3, 4, 7})
        list.set(row, &RecordingEntry::file, FileState::Missing);
    extract(3);
    const auto second = extract(2);
    const auto sixth = extract(6);
    state.currentTrack = sixth;
    list.setPlayingIndex(6);
    list.select(5);
    window.RequestPlay(5);
    window.RemoveMissing();
    EXPECT_EQ(column(SubItem::SerialNumber), (Texts{"2", "5", "6"}));
    EXPECT_EQ(list.playingIndex(), 3);
    EXPECT_EQ(list.selected(), 2);
    EXPECT_EQ(second->lSerial(), 1);
    EXPECT_EQ(sixth->lSerial(), 3);
    EXPECT_EQ(window.queue().requestedIndex(), 2);
    EXPECT_TRUE(tContinue.enabled());
    EXPECT_FALSE(state.loadedTracks.contains(3));
    EXPECT_EQ(page.cleared, Texts{"003"});
}

TEST_F(frmMP4ListTest, drops_what_named_a_removed_row) {
    addRows(2);
    list.set(2, &RecordingEntry::file, FileState::Missing);
    state.currentTrack = extract(2);
    list.setPlayingIndex(2);
    window.RequestPlay(2);
    window.RemoveMissing();
    EXPECT_EQ(list.playingIndex(), 0);
    EXPECT_FALSE(tContinue.enabled());
    EXPECT_EQ(state.currentTrack->lSerial(), 0);
    EXPECT_EQ(state.loadedTracks.size(), 0U);
}

TEST_F(frmMP4ListTest, changes_nothing_when_no_row_is_flagged) {
    addRows(2);
    control.calls.clear();
    window.RemoveMissing();
    EXPECT_TRUE(control.calls.empty());
}

TEST_F(frmMP4ListTest, names_the_kinds_in_the_new_language_and_leaves_the_shown_texts) {
    add({"103045.MP4", "103046_P.MP4"});
    const Texts shown = column(SubItem::DisplayText);
    texts.languageBase = 20000;
    EXPECT_EQ(column(SubItem::KindLabel), (Texts{"     一般", "     保護"}));
    EXPECT_EQ(column(SubItem::DisplayText), shown);
    window.RefreshListMarks(0);
    EXPECT_EQ(RowView::colour(list, 1), 16777215);
    EXPECT_EQ(RowView::colour(list, 2), 255);
    window.MarkCommand("LOCK");
    EXPECT_EQ(marked(), std::vector<int>{2});
}

TEST_F(frmMP4ListTest, jumps_to_a_typed_time) {
    add({"093045.MP4", "103045.MP4", "104500_P.MP4", "drive.MP4"});
    struct Case {
        int selected;
        const char* typed;
        bool found;
        int then;
    };
    for (const Case each : {Case{0, "1", true, 2},
                            {2, "1", true, 3},
                            {3, "1", true, 2},
                            {2, "10:4", true, 3},
                            {2, "103", true, 2},
                            {3, "0930", true, 1},
                            {1, "77", false, 1},
                            {1, "", false, 1},
                            {1, ":", false, 1}}) {
        list.select(each.selected);
        EXPECT_EQ(window.SelectByTime(each.typed), each.found) << each.typed;
        EXPECT_EQ(list.selected(), each.then) << each.typed;
    }
}

TEST_F(frmMP4ListTest, handles_20000_rows_by_ranges) {
    addRows(20000);
    control.calls.clear();
    window.MarkCommand("ALL");
    window.RefreshListMarks(7);
    window.MarkCommand("NONE");
    EXPECT_EQ(control.calls, (Texts{"changed 1 20000", "changed 7 1", "changed 1 20000"}));
    EXPECT_EQ(page.cleared.size(), 20000U);
}

} // namespace
} // namespace velmorant

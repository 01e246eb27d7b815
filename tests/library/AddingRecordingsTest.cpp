#include "tests/library/ListBench.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

using fakes::ShownMessage;
using Texts = std::vector<std::string>;

class AddingRecordings : public testing::Test, protected ListBench {};

std::string dialogResult(const Texts& pieces) {
    std::string result;
    for (const std::string& piece : pieces)
        result += (result.empty() ? "" : std::string(1, '\0')) + piece;
    return result;
}

TEST_F(AddingRecordings, adds_several_files_of_a_dated_folder) {
    dialogs.openAnswers = {dialogResult(
        {"/card/20121009_A", "103045.MP4", "103045P.MP4", "103045_P.MP4", "93000_p.mp4"})};
    window.AddRecordings();
    EXPECT_EQ(column(SubItem::DisplayText),
              (Texts{"2012/10/09  10:30:45    Normal", "2012/10/09  01:03:04    Lock",
                     "2012/10/09  10:30:45    Lock", "2012/10/09  09:30:00    Lock"}));
    EXPECT_EQ(column(SubItem::FullPath),
              (Texts{"/card/20121009_A/103045.MP4", "/card/20121009_A/103045P.MP4",
                     "/card/20121009_A/103045_P.MP4", "/card/20121009_A/93000_p.mp4"}));
    EXPECT_EQ(column(SubItem::KindLabel), (Texts{"  Normal", "  Lock", "  Lock", "  Lock"}));
    EXPECT_EQ(column(SubItem::SerialNumber), (Texts{"1", "2", "3", "4"}));
    for (const SubItem item : {SubItem::TrackExtracted, SubItem::ShownOnMap, SubItem::FileMissing})
        EXPECT_EQ(column(item), (Texts{"0", "0", "0", "0"}));
    EXPECT_TRUE(marked().empty());
    EXPECT_EQ(background.height, 4 * 255);
    EXPECT_EQ(background.draws, 1);
    EXPECT_EQ(skin.texts["place.count"], "4 recordings, 0 marked");
    EXPECT_EQ(RowView::colour(list, 1), 16777215);
    EXPECT_EQ(RowView::colour(list, 2), 255);
}

TEST_F(AddingRecordings, adds_a_single_file_by_its_path) {
    dialogs.openAnswers = {"/card//20121009/103045.mpeg4"};
    window.AddRecordings();
    EXPECT_EQ(column(SubItem::DisplayText), Texts{"2012/10/09  10:30:45    Normal"});
    EXPECT_EQ(column(SubItem::FullPath), Texts{"/card//20121009/103045.mpeg4"});
}

TEST_F(AddingRecordings, a_name_with_a_folder_of_its_own_lies_there_and_is_dated_by_it) {
    dialogs.openAnswers = {
        dialogResult({"/card/20121009", "103045.MP4", "/other/20121011/080000.MP4",
                      "/other/20121011/090000_P.MP4", "104045.MP4"})};
    window.AddRecordings();
    EXPECT_EQ(column(SubItem::FullPath),
              (Texts{"/card/20121009/103045.MP4", "/other/20121011/080000.MP4",
                     "/other/20121011/090000_P.MP4", "/card/20121009/104045.MP4"}));
    EXPECT_EQ(column(SubItem::DisplayText),
              (Texts{"2012/10/09  10:30:45    Normal", "2012/10/11  08:00:00    Normal",
                     "2012/10/11  09:00:00    Lock", "2012/10/09  10:40:45    Normal"}));
}

TEST_F(AddingRecordings, adds_the_same_file_twice_with_different_serial_numbers) {
    dialogs.openAnswers = {"/c/20121009/103045.MP4", "/c/20121009/103045.MP4"};
    window.AddRecordings();
    window.AddRecordings();
    EXPECT_EQ(column(SubItem::SerialNumber), (Texts{"1", "2"}));
    EXPECT_EQ(text(1, SubItem::FullPath), text(2, SubItem::FullPath));
}

TEST_F(AddingRecordings, asks_the_dialog_for_recordings) {
    dialogs.openAnswers = {""};
    window.AddRecordings();
    ASSERT_EQ(dialogs.openRequests.size(), 1U);
    EXPECT_EQ(dialogs.openRequests[0].title, "<13006>");
    EXPECT_EQ(dialogs.openRequests[0].filter, "<13005>");
    EXPECT_EQ(dialogs.openRequests[0].largestResult, 32767U);
    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(background.draws, 0);
}

TEST_F(AddingRecordings, asks_before_adding_while_the_map_is_not_loaded) {
    page.isReady = false;
    messageBox.answers = {MessageAnswer::No, MessageAnswer::Yes};
    window.AddRecordings();
    EXPECT_TRUE(dialogs.openRequests.empty());
    dialogs.openAnswers = {"/c/20121009/103045.MP4"};
    window.AddRecordings();
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(messageBox.shown[0],
              (ShownMessage{"<13041>", "<13000>", MessageStyle::InformationChoice}));
}

TEST_F(AddingRecordings, adds_paths_with_blanks_ampersands_chinese_signs_and_300_characters) {
    const std::string folder = "/my  card & co/行車/" + std::string(300, 'x') + "/20121009";
    dialogs.openAnswers = {dialogResult({folder, "10 30 & 45.MP4", "103045.MP4"})};
    window.AddRecordings();
    EXPECT_EQ(column(SubItem::FullPath),
              (Texts{folder + "/10 30 & 45.MP4", folder + "/103045.MP4"}));
}

TEST_F(AddingRecordings, labels_rows_for_the_density_and_the_language) {
    screen.twipsY = 12;
    add({"103045.MP4"});
    screen.twipsY = 15;
    texts.languageBase = 20000;
    add({"103045_P.MP4"});
    EXPECT_EQ(column(SubItem::DisplayText),
              (Texts{"2012/10/09  10:30:45  Normal", "2012/10/09  10:30:45       保護"}));
}

TEST_F(AddingRecordings, adds_folders_with_their_dated_sub_folders_in_order) {
    files.folders.insert({"/card", "/card/DCIM"});
    folders.folders["/card"] = {{"notes.txt", "._a.MP4"}, {"DCIM", ".Trash"}};
    folders.folders["/card/DCIM"] = {{}, {"20121010", "20121009", "locked"}};
    folders.folders["/card/DCIM/20121010"] = {{"090000.mp4", "080000.MP4"}, {}};
    folders.folders["/card/DCIM/20121009"] = {{"103045_P.MP4", "x.avi"}, {}};
    window.AddPaths({"/card", "/other/20121011/070000.MP4", "/other/readme.txt"});
    EXPECT_EQ(column(SubItem::FullPath),
              (Texts{"/card/DCIM/20121009/103045_P.MP4", "/card/DCIM/20121010/080000.MP4",
                     "/card/DCIM/20121010/090000.mp4", "/other/20121011/070000.MP4"}));
    EXPECT_EQ(text(2, SubItem::DisplayText), "2012/10/10  08:00:00    Normal");
    EXPECT_TRUE(adding.calls.empty());
    EXPECT_EQ(background.draws, 1);
}

TEST_F(AddingRecordings, asks_once_before_adding_a_whole_card_without_the_map) {
    page.isReady = false;
    files.folders.insert("/card");
    folders.folders["/card"] = {{"a.MP4", "b.MP4"}, {}};
    messageBox.answers = {MessageAnswer::No, MessageAnswer::Yes};
    window.AddPaths({"/card"});
    EXPECT_EQ(list.count(), 0);
    window.AddPaths({"/card"});
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(messageBox.shown.size(), 2U);
}

TEST_F(AddingRecordings, asks_nothing_when_nothing_is_to_be_added) {
    page.isReady = false;
    files.folders.insert("/card");
    window.AddPaths({"/card", "/a.txt"});
    EXPECT_TRUE(messageBox.shown.empty());
    EXPECT_EQ(list.count(), 0);
}

TEST_F(AddingRecordings, follows_no_link_to_a_folder) {
    folders.folders["/card"] = {{"a.MP4"}, {}, {"round"}};
    folders.folders["/card/round"] = {{"b.MP4"}, {}};
    files.folders = {"/card", "/card/round"};
    window.AddPaths({"/card"});
    EXPECT_EQ(column(SubItem::FullPath), Texts{"/card/a.MP4"});
}

TEST_F(AddingRecordings, ends_in_folders_that_contain_themselves) {
    files.folders.insert("/loop");
    std::string folder = "/loop";
    for (int depth = 0; depth < 40; ++depth) {
        folders.folders[folder] = {{"a.MP4"}, {"in"}};
        folder += "/in";
    }
    window.AddPaths({"/loop"});
    EXPECT_EQ(list.count(), 16);
}

TEST_F(AddingRecordings, shows_progress_above_200_files_and_lets_events_run) {
    addRows(200);
    EXPECT_TRUE(adding.calls.empty());
    log.clear();
    addRows(401);
    EXPECT_EQ(adding.calls, (Texts{"begin 401", "step 200", "step 400", "step 401", "end"}));
    EXPECT_EQ(log, (Texts{"events", "events", "events"}));
}

} // namespace
} // namespace velmorant

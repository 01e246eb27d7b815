#include "library/RecordingListFile.h"

#include "tests/builders/TemporaryFolder.h"
#include "tests/library/ListBench.h"
#include "xml/ExpatDocument.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

using Texts = std::vector<std::string>;

/// The hand-over file in a real folder, through the real XML document.
class RecordingListFileTest : public testing::Test, protected ListBench {
  protected:
    RecordingListFileTest() {
        paths.writableFolder = folder.path();
        files.folders.insert(folder.path());
    }
    void put(const std::string& content) { files.files[folder.write("flow.xml", content)] = ""; }
    bool filePresent() const { return files.fileExists(folder.file("flow.xml")); }
    /// A second instance of the program reads what this one wrote.
    void restart() {
        file.SaveRecordingList(list);
        files.files[folder.file("flow.xml")] = "";
        list.remove(1, list.count());
        load();
    }
    void load() {
        frmMP4List next(needs(realDocument));
        next.Load();
    }

    builders::TemporaryFolder folder;
    ExpatDocument realDocument;
    RecordingListFile file{realDocument, files, paths};
};

TEST_F(RecordingListFileTest, composes_one_element_per_row) {
    EXPECT_EQ(RecordingListFile::compose(list), "<?xml version='1.0'?>\n<mp4list>\n</mp4list>");
    add({"103045.MP4", "103046_P.MP4"});
    EXPECT_EQ(RecordingListFile::compose(list),
              "<?xml version='1.0'?>\n<mp4list>\n"
              "<Data>\n<x2>2012/10/09  10:30:45</x2>\n<x3>/card/20121009/103045.MP4</x3>\n</Data>\n"
              "<Data>\n<x2>2012/10/09  10:30:46</x2>\n"
              "<x3>/card/20121009/103046_P.MP4</x3>\n</Data>\n</mp4list>");
}

TEST_F(RecordingListFileTest, composes_every_row_whatever_its_state) {
    add({"103045.MP4", "103045.MP4", "103046_P.MP4"});
    const std::string before = RecordingListFile::compose(list);
    list.setMark(2, MarkState::Marked);
    list.set(1, &RecordingEntry::file, FileState::Missing);
    list.set(3, &RecordingEntry::track, TrackState::Read);
    EXPECT_EQ(RecordingListFile::compose(list), before);
}

TEST_F(RecordingListFileTest, writes_a_short_display_text_whole_and_cuts_a_longer_one) {
    put("<mp4list><Data><x2>9</x2><x3>/a.MP4</x3></Data>"
        "<Data><x2>2012/10/09  10:30:45</x2><x3>/b.MP4</x3></Data></mp4list>");
    load();
    const std::string text = RecordingListFile::compose(list);
    EXPECT_NE(text.find("<x2>9    Normal</x2>"), std::string::npos) << text;
    EXPECT_NE(text.find("<x2>2012/10/09  10:30:45</x2>"), std::string::npos) << text;
}

TEST_F(RecordingListFileTest, carries_the_same_path_twice) {
    add({"103045.MP4", "103045.MP4"});
    restart();
    EXPECT_EQ(column(SubItem::FullPath),
              (Texts{"/card/20121009/103045.MP4", "/card/20121009/103045.MP4"}));
    EXPECT_EQ(column(SubItem::SerialNumber), (Texts{"1", "2"}));
}

TEST_F(RecordingListFileTest, writes_utf8_and_no_carriage_return) {
    add({"\u884c\u8eca.MP4"});
    file.SaveRecordingList(list);
    const std::string bytes = folder.read("flow.xml");
    EXPECT_NE(bytes.find("\xE8\xA1\x8C\xE8\xBB\x8A.MP4"), std::string::npos) << bytes;
    EXPECT_EQ(bytes.find('\r'), std::string::npos);
}

TEST_F(RecordingListFileTest, shows_nothing_when_the_file_cannot_be_written) {
    paths.writableFolder = folder.file("nowhere/deeper");
    add({"103045.MP4"});
    file.SaveRecordingList(list);
    EXPECT_TRUE(messageBox.shown.empty());
    EXPECT_EQ(list.count(), 1);
}

TEST_F(RecordingListFileTest, carries_the_rows_across_a_restart_in_order) {
    add({"103046_P.MP4", "103045.MP4", "103045.MP4", "103047_p.MP4", "drive.MP4"});
    list.remove(2, 1);
    list.setMark(1, MarkState::Marked);
    const Texts display = column(SubItem::DisplayText);
    const Texts fullPaths = column(SubItem::FullPath);
    const Texts kinds = column(SubItem::KindLabel);
    restart();
    EXPECT_EQ(column(SubItem::DisplayText), display);
    EXPECT_EQ(column(SubItem::FullPath), fullPaths);
    EXPECT_EQ(column(SubItem::KindLabel), kinds);
    EXPECT_EQ(column(SubItem::SerialNumber), (Texts{"1", "2", "3", "4"}));
    EXPECT_TRUE(marked().empty());
    EXPECT_EQ(RowView::colour(list, 1), 255);
    EXPECT_EQ(RowView::colour(list, 2), 16777215);
    EXPECT_FALSE(filePresent());
    EXPECT_EQ(background.height, 4 * 255);
    EXPECT_EQ(skin.texts["place.count"], "4 recordings, 0 marked");
}

TEST_F(RecordingListFileTest, takes_the_kind_labels_of_the_new_language) {
    add({"103045.MP4"});
    texts.languageBase = 20000;
    restart();
    EXPECT_EQ(column(SubItem::DisplayText), Texts{"2012/10/09  10:30:45       一般"});
}

TEST_F(RecordingListFileTest, leaves_a_file_without_rows_in_place) {
    for (const char* content :
         {"<?xml version='1.0'?>\n<mp4list>\n</mp4list>", "", "<mp4list><Data><x2>a</x2>",
          "<!DOCTYPE mp4list [<!ENTITY a SYSTEM \"/etc/passwd\">]><mp4list><Data><x2>a</x2>"
          "<x3>&a;</x3></Data></mp4list>",
          "\x01\x02\x03", "<mp4list><Data/></mp4list>"}) {
        put(content);
        load();
        EXPECT_EQ(list.count(), 0) << content;
        EXPECT_TRUE(filePresent()) << content;
    }
    EXPECT_TRUE(messageBox.shown.empty());
}

TEST_F(RecordingListFileTest, reads_any_white_space_and_strange_characters) {
    put("<?xml version=\"1.0\" encoding=\"UTF-8\"?><mp4list> <Data><x3>/a  b/行車 &amp; "
        "co/103045P.MP4</x3>\t<x2>2012/10/09  10:30:45</x2></Data><Data><x2></x2><x3>/b.MP4</x3>"
        "</Data><Data><x2>no path</x2></Data></mp4list>");
    load();
    EXPECT_EQ(column(SubItem::FullPath), (Texts{"/a  b/行車 & co/103045P.MP4", "/b.MP4"}));
    EXPECT_EQ(column(SubItem::DisplayText), (Texts{"2012/10/09  10:30:45    Lock", "    Normal"}));
    EXPECT_FALSE(filePresent());
}

TEST_F(RecordingListFileTest, loses_the_list_when_a_path_makes_the_text_ill_formed) {
    add({"103045 & 46.MP4"});
    file.SaveRecordingList(list);
    EXPECT_EQ(folder.read("flow.xml"), "");
    restart();
    EXPECT_EQ(list.count(), 0);
    EXPECT_TRUE(messageBox.shown.empty());
}

TEST_F(RecordingListFileTest, replaces_an_earlier_file) {
    put("<old/>");
    add({"103045.MP4"});
    file.SaveRecordingList(list);
    EXPECT_EQ(files.changes.back(), "deleteFile " + folder.file("flow.xml"));
    EXPECT_NE(folder.read("flow.xml").find("103045.MP4"), std::string::npos);
}

TEST_F(RecordingListFileTest, goes_on_when_the_earlier_file_cannot_be_deleted) {
    put("<old/>");
    files.broken.insert(folder.file("flow.xml"));
    add({"103045.MP4"});
    file.SaveRecordingList(list);
    EXPECT_NE(folder.read("flow.xml").find("103045.MP4"), std::string::npos);
    load();
    EXPECT_TRUE(filePresent());
}

TEST_F(RecordingListFileTest, makes_the_users_data_folder) {
    paths.writableFolder = "/home/data";
    files.folders.insert("/home");
    file.SaveRecordingList(list);
    EXPECT_TRUE(files.folderExists("/home/data"));
}

TEST_F(RecordingListFileTest, reads_100000_entries) {
    std::string content = "<mp4list>";
    for (int i = 0; i < 100000; ++i)
        content += "<Data><x2>2012/10/09  10:30:45</x2><x3>/card/" + std::to_string(i) +
                   ".MP4</x3></Data>";
    put(content + "</mp4list>");
    load();
    EXPECT_EQ(list.count(), 100000);
}

} // namespace
} // namespace velmorant

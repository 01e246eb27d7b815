#include "recordings/RowView.h"

#include "tests/fakes/FakeScreen.h"
#include "tests/fakes/FakeTexts.h"

#include <gtest/gtest.h>

namespace velmorant {
namespace {

class RowViewTest : public testing::Test {
  protected:
    RowViewTest() {
        texts.texts = {{"14151", "  Normal"},
                       {"14152", "  Lock"},
                       {"14121", "Normal"},
                       {"14122", "Lock"},
                       {"24152", "     \u4fdd\u8b77"}};
        row.serial = 7;
        row.path = "/card/20121009/103045_P.MP4";
        row.kind = RecordingKind::Locked;
        row.dateAndTime = "2012/10/09  10:30:45";
        row.shownKind = "  Lock";
    }
    std::string text(SubItem item) const { return view.text(row, item); }

    fakes::FakeTexts texts;
    fakes::FakeScreen screen;
    RecordingEntry row;
    RowView view{texts, screen};
};

TEST_F(RowViewTest, numbers_the_texts_of_a_row) {
    EXPECT_EQ(text(SubItem::Mark), "");
    EXPECT_EQ(text(SubItem::DisplayText), "2012/10/09  10:30:45    Lock");
    EXPECT_EQ(text(SubItem::FullPath), "/card/20121009/103045_P.MP4");
    EXPECT_EQ(text(SubItem::TrackExtracted), "0");
    EXPECT_EQ(text(SubItem::SerialNumber), "7");
    EXPECT_EQ(text(SubItem::ShownOnMap), "0");
    EXPECT_EQ(text(SubItem::KindLabel), "  Lock");
    EXPECT_EQ(text(SubItem::FileMissing), "0");
}

TEST_F(RowViewTest, raises_the_flags_by_1) {
    row.track = TrackState::Read;
    EXPECT_EQ(text(SubItem::TrackExtracted) + text(SubItem::ShownOnMap) +
                  text(SubItem::FileMissing),
              "100");
    row.map = MapState::Shown;
    row.file = FileState::Missing;
    EXPECT_EQ(text(SubItem::TrackExtracted) + text(SubItem::ShownOnMap) +
                  text(SubItem::FileMissing),
              "111");
}

TEST_F(RowViewTest, labels_a_kind_by_language_and_density) {
    row.kind = RecordingKind::Normal;
    EXPECT_EQ(text(SubItem::KindLabel), "  Normal");
    screen.twipsY = 12;
    EXPECT_EQ(text(SubItem::KindLabel), "Normal");
    screen.twipsY = 10;
    EXPECT_EQ(text(SubItem::KindLabel), "<14101>");
    screen.twipsY = 15;
    row.kind = RecordingKind::Locked;
    texts.languageBase = 20000;
    EXPECT_EQ(text(SubItem::KindLabel), "     \u4fdd\u8b77");
    EXPECT_EQ(text(SubItem::DisplayText), "2012/10/09  10:30:45    Lock") << "as it was added";
}

TEST_F(RowViewTest, colours_rows_by_kind_and_highlighting) {
    RecordingList list;
    list.append({RecordingEntry{}, row, RecordingEntry{}});
    list.highlight(3);
    EXPECT_EQ(RowView::colour(list, 1), 16777215);
    EXPECT_EQ(RowView::colour(list, 2), 255);
    EXPECT_EQ(RowView::colour(list, 3), 65535);
    EXPECT_EQ(RowView::weight(list, 2), RowWeight::Normal);
    EXPECT_EQ(RowView::weight(list, 3), RowWeight::Bold);
}

TEST_F(RowViewTest, writes_a_serial_number_as_track_key_and_as_map_number) {
    EXPECT_EQ(RowView::trackKey(7), "7No");
    EXPECT_EQ(RowView::mapNumber(7), "007");
    EXPECT_EQ(RowView::mapNumber(1234), "1234");
}

} // namespace
} // namespace velmorant

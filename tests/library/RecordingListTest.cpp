#include "library/RecordingList.h"

#include "common/StepError.h"
#include "tests/fakes/FakeListControl.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

using Calls = std::vector<std::string>;

class RecordingListTest : public testing::Test {
  protected:
    void fill(int count) {
        std::vector<RecordingEntry> rows(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            rows[static_cast<std::size_t>(i)].setText(SubItem::SerialNumber, std::to_string(i + 1));
        list.append(std::move(rows));
        control.calls.clear();
    }
    std::vector<std::string> serials() const {
        std::vector<std::string> texts;
        for (int i = 1; i <= list.count(); ++i)
            texts.push_back(list.text(i, SubItem::SerialNumber));
        return texts;
    }

    fakes::FakeListControl control;
    RecordingList list{control};
};

TEST_F(RecordingListTest, tells_the_control_each_change_by_its_row) {
    fill(3);
    list.setText(2, SubItem::ShownOnMap, "1");
    list.setMark(3, MarkState::Marked);
    list.setAppearance(1, 255, RowWeight::Bold);
    list.setNotice(1, "why");
    EXPECT_EQ(control.calls, (Calls{"changed 2 1", "changed 3 1", "changed 1 1", "changed 1 1"}));
}

TEST_F(RecordingListTest, tells_nothing_when_nothing_changes) {
    fill(1);
    list.setText(1, SubItem::ShownOnMap, "");
    list.setMark(1, MarkState::NotMarked);
    list.setAppearance(1, 16777215, RowWeight::Normal);
    { const RecordingList::Batch batch(list); }
    list.append({});
    list.remove(1, 0);
    EXPECT_TRUE(control.calls.empty());
}

TEST_F(RecordingListTest, tells_a_batch_by_one_range) {
    fill(9);
    {
        const RecordingList::Batch outer(list);
        list.setMark(7, MarkState::Marked);
        {
            const RecordingList::Batch inner(list);
            list.setMark(3, MarkState::Marked);
        }
        EXPECT_TRUE(control.calls.empty());
    }
    EXPECT_EQ(control.calls, Calls{"changed 3 5"});
}

TEST_F(RecordingListTest, covers_changed_rows_that_moved_up_within_a_batch) {
    fill(9);
    {
        const RecordingList::Batch batch(list);
        list.setMark(7, MarkState::Marked);
        list.remove(2, 3);
    }
    EXPECT_EQ(control.calls, (Calls{"removed 2 3", "changed 2 5"}));
}

TEST_F(RecordingListTest, removes_a_range_and_keeps_what_names_other_rows) {
    struct Case {
        int before;
        int after;
    };
    for (const Case each : {Case{1, 1}, {2, 0}, {4, 0}, {5, 2}, {6, 3}, {0, 0}}) {
        RecordingList rows(control);
        rows.append(std::vector<RecordingEntry>(6));
        rows.select(each.before);
        rows.setPlayingIndex(each.before);
        rows.remove(2, 3);
        EXPECT_EQ(rows.selected(), each.after);
        EXPECT_EQ(rows.playingIndex(), each.after);
    }
}

TEST_F(RecordingListTest, counts_marked_rows) {
    fill(4);
    list.setMark(1, MarkState::Marked);
    list.setMark(2, MarkState::Marked);
    list.setMark(4, MarkState::Marked);
    list.setMark(4, MarkState::NotMarked);
    EXPECT_EQ(list.markedCount(), 2);
    list.remove(2, 2);
    EXPECT_EQ(list.markedCount(), 1);
    EXPECT_EQ(serials(), (std::vector<std::string>{"1", "4"}));
}

TEST_F(RecordingListTest, refuses_a_row_that_is_not_there) {
    fill(2);
    for (const int index : {0, -1, 3}) {
        EXPECT_THROW(list.row(index), StepError);
        EXPECT_THROW(list.setMark(index, MarkState::Marked), StepError);
    }
    EXPECT_THROW(list.select(3), StepError);
    EXPECT_THROW(list.remove(2, 2), StepError);
    EXPECT_EQ(list.count(), 2);
}

} // namespace
} // namespace velmorant

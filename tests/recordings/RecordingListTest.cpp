#include "recordings/RecordingList.h"

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
    RecordingListTest() { list.addListener(control); }
    void fill(int count) {
        std::vector<RecordingEntry> rows(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            rows[static_cast<std::size_t>(i)].serial = i + 1;
        list.append(std::move(rows));
        control.calls.clear();
    }
    std::vector<int> serials() const {
        std::vector<int> numbers;
        for (int i = 1; i <= list.count(); ++i)
            numbers.push_back(list.row(i).serial);
        return numbers;
    }

    fakes::FakeListControl control;
    RecordingList list;
};

TEST_F(RecordingListTest, tells_the_control_each_change_by_its_row) {
    fill(3);
    list.set(2, &RecordingEntry::map, MapState::Shown);
    list.setMark(3, MarkState::Marked);
    list.highlight(1);
    list.set(1, &RecordingEntry::notice, "why");
    EXPECT_EQ(control.calls, (Calls{"changed 2 1", "changed 3 1", "changed 1 1", "changed 1 1"}));
}

TEST_F(RecordingListTest, tells_nothing_when_nothing_changes) {
    fill(1);
    list.set(1, &RecordingEntry::map, MapState::Hidden);
    list.setMark(1, MarkState::NotMarked);
    list.highlight(0);
    list.highlight(9);
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
        RecordingList rows;
        rows.append(std::vector<RecordingEntry>(6));
        rows.select(each.before);
        rows.setPlayingIndex(each.before);
        rows.highlight(each.before);
        rows.remove(2, 3);
        EXPECT_EQ(rows.selected(), each.after);
        EXPECT_EQ(rows.playingIndex(), each.after);
        EXPECT_EQ(rows.highlighted(), each.after);
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
    EXPECT_EQ(serials(), (std::vector<int>{1, 4}));
}

TEST_F(RecordingListTest, tells_every_listener_in_order_until_it_is_removed) {
    fakes::FakeListControl second;
    list.addListener(second);
    fill(2);
    list.setMark(1, MarkState::Marked);
    list.removeListener(control);
    list.select(2);
    EXPECT_EQ(control.calls, Calls{"changed 1 1"});
    EXPECT_TRUE(control.selections.empty());
    EXPECT_EQ(second.calls, (Calls{"added 1 2", "changed 1 1"}));
    EXPECT_EQ(second.selections, std::vector<int>{2});
}

TEST_F(RecordingListTest, tells_which_row_plays_when_that_changes) {
    class Playing : public RecordingListListener {
      public:
        void playingRowChanged(int index) override { rows.push_back(index); }
        std::vector<int> rows;
    } playing;
    list.addListener(playing);
    fill(3);
    for (const int index : {2, 2, 3, 0})
        list.setPlayingIndex(index);
    EXPECT_EQ(playing.rows, (std::vector<int>{2, 3, 0}));
}

TEST_F(RecordingListTest, moves_the_highlighting_from_row_to_row) {
    fill(9);
    list.highlight(3);
    list.highlight(7);
    list.highlight(0);
    EXPECT_EQ(control.calls, (Calls{"changed 3 1", "changed 3 5", "changed 7 1"}));
    EXPECT_EQ(list.highlighted(), 0);
}

TEST_F(RecordingListTest, finds_a_row_by_its_serial_number) {
    fill(3);
    list.remove(1, 1);
    EXPECT_EQ(list.indexOf(3), 2);
    EXPECT_EQ(list.indexOf(1), 0);
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

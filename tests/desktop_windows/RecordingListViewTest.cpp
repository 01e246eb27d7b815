#include "desktop/widgets/RecordingListView.h"

#include "desktop/gate/HandlerGate.h"
#include "desktop/system/QtScreen.h"
#include "desktop/widgets/DropTarget.h"
#include "tests/desktop_windows/WaitUntil.h"
#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QTextDocument>
#include <QUrl>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using testing::ElementsAre;

struct Row {
    std::string text;
    std::string kind = "  Normal";
    RowSource::Mark mark = RowSource::Mark::NotMarked;
    std::int32_t colour = 16777215;
    RowSource::Weight weight = RowSource::Weight::Normal;
};

class Rows : public RowSource {
  public:
    int rowCount() const override { return static_cast<int>(rows.size()); }
    std::string displayText(int row) const override { return at(row).text + "  " + at(row).kind; }
    std::string kindLabel(int row) const override { return at(row).kind; }
    std::string toolTip(int row) const override { return "/card/" + at(row).text; }
    Mark mark(int row) const override { return at(row).mark; }
    std::int32_t colour(int row) const override { return at(row).colour; }
    Weight weight(int row) const override { return at(row).weight; }

    const Row& at(int row) const { return rows.at(static_cast<std::size_t>(row - 1)); }
    std::vector<Row> rows;
};

/// What a tool tip with that text shows.
QString shownBy(const QString& toolTip) {
    if (!Qt::mightBeRichText(toolTip))
        return toolTip;
    QTextDocument document;
    document.setHtml(toolTip);
    return document.toPlainText();
}

class RecordingListViewTest : public testing::Test {
  protected:
    void SetUp() override {
        rows.rows = {{"2012/10/09  10:22:45"},
                     {"2012/10/09  10:26:45", "  Normal", RowSource::Mark::Marked},
                     {"2012/10/09  10:30:45", "  Lock", RowSource::Mark::Marked, 255},
                     {"2012/10/09  10:34:45"}};
        QPixmap empty(16, 16);
        QPixmap full(16, 16);
        empty.fill(QColor(1, 2, 3));
        full.fill(QColor(0, 255, 255));
        view.setPictures({empty, full, full});
        view.setWords({"marked", "not marked", "playing", "recording", "not playing"});
        RecordingListView::Listeners listeners;
        listeners.mouseDown = gate.listener([this](int x, int y) { downs.emplace_back(x, y); });
        listeners.mouseClick = gate.listener([this](int x, int y) { clicks.emplace_back(x, y); });
        listeners.doubleClick = gate.listener([this] { said.emplace_back("double click"); });
        listeners.select =
            gate.listener([this](int row) { said.push_back("select " + std::to_string(row)); });
        listeners.toggle = gate.listener([this] { said.emplace_back("toggle"); });
        listeners.activate = gate.listener([this] { said.emplace_back("activate"); });
        listeners.remove = gate.listener([this] { said.emplace_back("remove"); });
        listeners.type =
            gate.listener([this](const std::string& typed) { said.push_back("type " + typed); });
        listeners.contextMenu = gate.listener(
            [this](int row, const QPoint&) { said.push_back("menu " + std::to_string(row)); });
        view.setListeners(listeners);
        view.setSource(&rows);
        view.setFontSize(11);
        view.setColumnWidth(2, 300);
        view.setColumnWidth(3, 2740);
        view.resize(338, 200);
        view.show();
        view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    QPoint placeOf(int row, int column) {
        return view.visualRect(view.model()->index(row - 1, column)).center();
    }
    void key(Qt::Key key) { QTest::keyClick(&view, key); }

    HandlerGate gate;
    QtScreen screen;
    Rows rows;
    RecordingListView view{screen};
    std::vector<std::pair<int, int>> downs;
    std::vector<std::pair<int, int>> clicks;
    std::vector<std::string> said;
};

TEST_F(RecordingListViewTest, the_headers_lie_as_the_logic_set_them) {
    EXPECT_EQ(view.columnLeft(1), 0);
    EXPECT_EQ(view.columnLeft(3) - view.columnLeft(2), 300);
    EXPECT_EQ(view.rowHeight() % screen.twipsPerPixelY(), 0);
    EXPECT_GE(view.rowHeight(), 360);
}

TEST_F(RecordingListViewTest, the_hit_test_finds_the_row_anywhere_in_its_width) {
    EXPECT_EQ(view.hitTest(2, placeOf(2, 0).y()), 2);
    EXPECT_EQ(view.hitTest(300, placeOf(3, 2).y()), 3);
    EXPECT_EQ(view.hitTest(10, 190), 0);
    EXPECT_EQ(view.hitTest(-1, 5), 0);
    EXPECT_EQ(view.hitTest(10, 5000), 0);
}

TEST_F(RecordingListViewTest, a_press_selects_and_reports_and_a_release_on_the_row_is_a_click) {
    const QPoint mark = placeOf(2, 1);
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, mark);
    EXPECT_EQ(view.selectedRow(), 2);
    EXPECT_THAT(downs, ElementsAre(std::pair(mark.x(), mark.y())));
    EXPECT_TRUE(clicks.empty());
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, mark);
    EXPECT_THAT(clicks, ElementsAre(std::pair(mark.x(), mark.y())));
}

TEST_F(RecordingListViewTest, a_press_that_ends_on_another_row_is_no_click) {
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, placeOf(2, 1));
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, placeOf(3, 1));
    EXPECT_TRUE(clicks.empty());
}

TEST_F(RecordingListViewTest, every_mouse_button_selects_and_the_left_one_alone_clicks) {
    int row = 1;
    for (const auto button : {Qt::MiddleButton, Qt::RightButton, Qt::BackButton}) {
        QTest::mouseClick(view.viewport(), button, {}, placeOf(++row, 1));
        EXPECT_EQ(view.selectedRow(), row);
        EXPECT_EQ(downs.size(), static_cast<std::size_t>(row - 1));
    }
    EXPECT_TRUE(clicks.empty());
}

TEST_F(RecordingListViewTest, a_double_click_is_one_click_and_one_double_click) {
    const QPoint place = placeOf(3, 2);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(clicks.size(), 1u);
    EXPECT_THAT(said, ElementsAre("double click"));
}

TEST_F(RecordingListViewTest, keys_move_the_selection_and_report_it) {
    view.selectionChanged(1);
    said.clear();
    for (const auto pressed : {Qt::Key_Down, Qt::Key_End, Qt::Key_Up, Qt::Key_Home, Qt::Key_Home})
        key(pressed);
    EXPECT_THAT(said, ElementsAre("select 2", "select 4", "select 3", "select 1"));
}

TEST_F(RecordingListViewTest, keys_are_commands_on_the_selected_row) {
    view.selectionChanged(2);
    for (const auto pressed : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Delete})
        key(pressed);
    EXPECT_THAT(said, ElementsAre("toggle", "activate", "remove"));
}

TEST_F(RecordingListViewTest, typed_digits_gather_until_a_pause) {
    QTest::keyClicks(&view, "10:3");
    EXPECT_THAT(said, ElementsAre("type 1", "type 10", "type 10:", "type 10:3"));
    QTest::qWait(1100);
    QTest::keyClicks(&view, "4");
    EXPECT_EQ(said.back(), "type 4");
}

TEST_F(RecordingListViewTest, letters_go_on_to_the_window) {
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_K, Qt::NoModifier, "k");
    QApplication::sendEvent(&view, &letter);
    EXPECT_FALSE(letter.isAccepted());
    EXPECT_TRUE(said.empty());
}

TEST_F(RecordingListViewTest, the_context_menu_names_its_row) {
    const QPoint place = placeOf(3, 2);
    QContextMenuEvent mouse(QContextMenuEvent::Mouse, place, view.viewport()->mapToGlobal(place));
    QApplication::sendEvent(view.viewport(), &mouse);
    view.selectionChanged(2);
    QContextMenuEvent keyboard(QContextMenuEvent::Keyboard, {0, 0}, {0, 0});
    QApplication::sendEvent(view.viewport(), &keyboard);
    EXPECT_THAT(said, ElementsAre("menu 3", "menu 2"));
}

TEST_F(RecordingListViewTest, the_program_selecting_a_row_reports_nothing_and_scrolls_to_it) {
    for (int i = 0; i < 100; ++i)
        rows.rows.push_back({"2012/10/09  11:00:00"});
    view.rowsAdded(5, 100);
    view.selectionChanged(104);
    EXPECT_TRUE(said.empty());
    EXPECT_EQ(view.selectedRow(), 104);
    EXPECT_TRUE(view.viewport()->rect().intersects(view.visualRect(view.model()->index(103, 0))));
    view.selectionChanged(0);
    EXPECT_EQ(view.selectedRow(), 0);
}

TEST_F(RecordingListViewTest,
       the_row_that_begins_to_play_comes_into_sight_and_then_leaves_the_list_alone) {
    rows.rows.assign(300, Row{"2012/10/09  10:22:45"});
    view.setSource(&rows);
    const auto seen = [&](int row) {
        const QRect place = view.visualRect(view.model()->index(row - 1, RecordingListModel::Text));
        return view.viewport()->rect().contains(place.adjusted(0, 1, 0, -1));
    };
    ASSERT_FALSE(seen(200));
    QApplication::processEvents(); // lays the rows out
    view.setAttribute(Qt::WA_UnderMouse, false);
    rows.rows[199].weight = RowSource::Weight::Bold;
    view.rowsChanged(200, 1);
    EXPECT_TRUE(seen(200));
    view.scrollToTop();
    view.rowsChanged(200, 1);
    EXPECT_TRUE(seen(1)) << "it has been playing for long";
    rows.rows[199].weight = RowSource::Weight::Normal;
    rows.rows[249].weight = RowSource::Weight::Bold;
    view.rowsChanged(1, 300);
    EXPECT_TRUE(seen(250));
    view.setAttribute(Qt::WA_UnderMouse);
    rows.rows[249].weight = RowSource::Weight::Normal;
    rows.rows[0].weight = RowSource::Weight::Bold;
    view.rowsChanged(1, 300);
    EXPECT_TRUE(seen(250)) << "the mouse is on the list";
}

TEST_F(RecordingListViewTest, an_empty_list_says_how_recordings_come_into_it) {
    const QImage full = view.grab().toImage();
    view.setEmptyHint("Drop recordings here");
    EXPECT_EQ(view.grab().toImage(), full) << "only while it is empty";
    rows.rows.clear();
    view.setSource(&rows);
    const QImage hinted = view.grab().toImage();
    view.setEmptyHint("");
    EXPECT_NE(view.grab().toImage(), hinted);
    view.setEmptyHint("Drop recordings here");
    EXPECT_EQ(view.accessibleDescription(), "Drop recordings here");
}

TEST_F(RecordingListViewTest, rows_come_change_and_go) {
    rows.rows.push_back({"2012/10/09  10:38:45"});
    view.rowsAdded(5, 1);
    EXPECT_EQ(view.model()->rowCount(), 5);
    rows.rows.erase(rows.rows.begin(), rows.rows.begin() + 2);
    view.rowsRemoved(1, 2);
    EXPECT_EQ(view.model()->rowCount(), 3);
    EXPECT_EQ(view.model()->index(0, 2).data().toString(), "2012/10/09  10:30:45    Lock");
    rows.rows[0].text = "2012/10/09  10:30:46";
    view.rowsChanged(1, 1);
    EXPECT_EQ(view.model()->index(0, 2).data().toString(), "2012/10/09  10:30:46    Lock");
}

TEST_F(RecordingListViewTest, marks_colours_and_the_playing_row_are_painted) {
    rows.rows[1].weight = RowSource::Weight::Bold;
    rows.rows[1].colour = 65535;
    view.rowsChanged(1, 4);
    view.setBackColour(0x08 + 256 * 0x0B + 65536 * 0x10);
    const QImage picture = view.viewport()->grab().toImage();
    EXPECT_EQ(picture.pixelColor(placeOf(1, 1)), QColor(1, 2, 3));
    EXPECT_EQ(picture.pixelColor(placeOf(2, 1)), QColor(0, 255, 255));
    EXPECT_EQ(picture.pixelColor(330, 195), QColor(8, 11, 16));
    const auto count = [&](int row, const QColor& colour) {
        const QRect cell = view.visualRect(view.model()->index(row - 1, 2));
        int pixels = 0;
        for (int x = cell.left(); x < cell.right(); ++x)
            for (int y = cell.top(); y < cell.bottom(); ++y)
                pixels += picture.pixelColor(x, y) == colour;
        return pixels;
    };
    EXPECT_GT(count(1, Qt::white), 50);
    EXPECT_GT(count(2, QColor(255, 255, 0)), count(1, Qt::white));
    EXPECT_GT(count(3, QColor(255, 0, 0)), 50);
    EXPECT_EQ(picture.pixelColor(0, placeOf(2, 0).y()), QColor(255, 255, 0));
}

TEST_F(RecordingListViewTest, a_row_has_a_tool_tip_and_a_spoken_text) {
    rows.rows[1].weight = RowSource::Weight::Bold;
    EXPECT_EQ(view.model()->index(0, 2).data(Qt::ToolTipRole).toString(),
              "/card/2012/10/09  10:22:45");
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(list, nullptr);
    ASSERT_NE(list->tableInterface(), nullptr);
    EXPECT_EQ(list->tableInterface()->rowCount(), 4);
    EXPECT_EQ(list->tableInterface()->cellAt(0, 2)->text(QAccessible::Name),
              "2012/10/09 10:22:45 Normal, not marked");
    EXPECT_EQ(list->tableInterface()->cellAt(1, 2)->text(QAccessible::Name),
              "2012/10/09 10:26:45 Normal, marked, playing");
}

TEST_F(RecordingListViewTest, a_tool_tip_shows_a_name_that_looks_like_markup_as_it_is) {
    rows.rows[0].text = "<b>fast</b> &amp; <img src=x>.MP4";
    EXPECT_EQ(shownBy(view.model()->index(0, 2).data(Qt::ToolTipRole).toString()),
              "/card/<b>fast</b> &amp; <img src=x>.MP4");
}

TEST_F(RecordingListViewTest, the_tab_key_comes_to_a_cell_that_says_its_row) {
    view.clearFocus();
    view.selectionModel()->clear();
    view.setFocus(Qt::TabFocusReason);
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(list->focusChild(), nullptr);
    EXPECT_EQ(list->focusChild()->text(QAccessible::Name),
              "2012/10/09 10:22:45 Normal, not marked");
    EXPECT_EQ(view.selectedRow(), 0) << "to come by is not to choose";
    key(Qt::Key_Down);
    EXPECT_EQ(list->focusChild()->text(QAccessible::Name), "2012/10/09 10:26:45 Normal, marked");
}

TEST_F(RecordingListViewTest, every_cell_has_a_name) {
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&view);
    for (int column = 0; column < 3; ++column)
        EXPECT_NE(list->tableInterface()->cellAt(0, column)->text(QAccessible::Name), "") << column;
}

TEST_F(RecordingListViewTest, a_cell_tells_its_mark_as_a_state_too) {
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&view);
    QAccessibleInterface* cell = list->tableInterface()->cellAt(0, 2);
    EXPECT_TRUE(cell->state().checkable);
    EXPECT_FALSE(cell->state().checked);
    rows.rows[0].mark = RowSource::Mark::Marked;
    view.rowsChanged(1, 1);
    EXPECT_TRUE(cell->state().checked);
    EXPECT_EQ(cell->text(QAccessible::Name), "2012/10/09 10:22:45 Normal, marked");
}

TEST_F(RecordingListViewTest, twenty_thousand_rows_come_and_scroll) {
    rows.rows.assign(20000, {"2012/10/09  10:22:45"});
    view.rowsAdded(5, 19996);
    view.selectionChanged(20000);
    view.grab();
    view.rowsChanged(1, 20000);
    view.grab();
    EXPECT_EQ(view.hitTest(50, 190), 20000);
}

TEST(DropTarget, reports_dropped_files_and_folders_and_refuses_other_things) {
    HandlerGate gate;
    QWidget window;
    std::vector<std::string> dropped;
    auto* target = new DropTarget(window);
    target->onDrop(gate.listener([&](const std::vector<std::string>& paths) { dropped = paths; }));
    // The toolkit hands a drop to the widget that accepted the drag's entry.
    const auto drop = [&](const QMimeData& data) {
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window, &enter);
        QDropEvent release({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window, &release);
        return enter.isAccepted();
    };
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile("/card/20121009/103045.MP4"),
                   QUrl::fromLocalFile("/card/行車 1"), QUrl("https://example.org/x.mp4")});
    EXPECT_TRUE(drop(files));
    ASSERT_TRUE(waitUntil([&] { return !dropped.empty(); }));
    EXPECT_THAT(dropped, ElementsAre("/card/20121009/103045.MP4", "/card/行車 1"));
    QMimeData text;
    text.setText("words");
    EXPECT_FALSE(drop(text));
}

} // namespace
} // namespace velmorant

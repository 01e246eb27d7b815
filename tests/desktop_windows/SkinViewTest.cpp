// Long because all kinds of elements are tested in one sample skin.
#include "desktop/widgets/SkinView.h"

#include "desktop/gate/HandlerGate.h"
#include "desktop/widgets/SkinStatusLine.h"
#include "tests/desktop_windows/SkinSample.h"
#include "tests/desktop_windows/WaitUntil.h"
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QTextDocument>
#include <QWheelEvent>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

QString drawnAsToolTip(const QString& toolTip) {
    if (!Qt::mightBeRichText(toolTip))
        return toolTip;
    QTextDocument document;
    document.setHtml(toolTip);
    return document.toPlainText();
}

class SkinViewTest : public testing::Test {
  protected:
    void SetUp() override {
        view.onClick(
            gate.listener([this](const std::string& element) { clicks.push_back(element); }));
        view.onSlider(gate.listener([this](const std::string& element, double value) {
            changes.emplace_back(element, value);
        }));
        view.onSliderPreview(gate.listener([this](const std::string& element, double value) {
            previews.emplace_back(element, value);
        }));
        ASSERT_TRUE(view.load(writeSampleSkin(folder)));
        view.show();
        view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
        view.setFocus();
    }

    QWidget& element(const std::string& id) { return *view.elementWidget(id); }
    QColor pixel(int x, int y) { return view.grab().toImage().pixelColor(x, y); }

    TemporaryFolder folder;
    HandlerGate gate;
    SkinView view;
    std::vector<std::string> clicks;
    std::vector<std::pair<std::string, double>> changes;
    std::vector<std::pair<std::string, double>> previews;
};

TEST_F(SkinViewTest, takes_the_size_of_the_drawing_and_shows_its_ground) {
    EXPECT_EQ(view.size(), QSize(300, 120));
    EXPECT_EQ(pixel(150, 20), QColor(0x12, 0x34, 0x56));
    EXPECT_EQ(view.backColour(), 0x12 + 256 * 0x34 + 65536 * 0x56);
    EXPECT_EQ(view.placeRect("place.chart"), QRect(220, 50, 70, 60));
    EXPECT_TRUE(view.placeRect("place.unknown").isEmpty());
}

TEST_F(SkinViewTest, a_click_reports_the_name_as_drawn) {
    QTest::mouseClick(&element("play"), Qt::LeftButton);
    QTest::mouseClick(&element("stop"), Qt::LeftButton);
    QTest::mouseClick(&view, Qt::LeftButton, {}, {150, 20});
    EXPECT_THAT(clicks, ElementsAre("Play", "stop"));
}

TEST_F(SkinViewTest, shows_each_state_of_a_button) {
    EXPECT_EQ(pixel(20, 20), QColor(0x10, 0x10, 0x10));
    view.setOn("PLAY", true);
    EXPECT_TRUE(view.isOn("play"));
    EXPECT_EQ(pixel(20, 20), QColor(0x50, 0x50, 0x50));
    element("play").setFocus(Qt::TabFocusReason);
    EXPECT_EQ(pixel(20, 20), QColor(0x58, 0x58, 0x58));
    view.setOn("play", false);
    EXPECT_EQ(pixel(20, 20), QColor(0x40, 0x40, 0x40));
    view.setEnabled("play", false);
    EXPECT_EQ(pixel(20, 20), QColor(0x60, 0x60, 0x60));
    QTest::mousePress(&element("stop"), Qt::LeftButton);
    EXPECT_EQ(pixel(80, 20), QColor(0x80, 0x80, 0x80));
    QTest::mouseRelease(&element("stop"), Qt::LeftButton);
    EXPECT_EQ(pixel(80, 20), QColor(0x70, 0x70, 0x70));
}

TEST_F(SkinViewTest, the_program_switching_an_element_raises_no_event) {
    view.setOn("play", true);
    view.setValue("volume", 30);
    EXPECT_TRUE(clicks.empty());
    EXPECT_TRUE(changes.empty());
    EXPECT_EQ(view.value("Volume"), 30);
}

TEST_F(SkinViewTest, a_click_does_not_switch_an_element_by_itself) {
    QTest::mouseClick(&element("play"), Qt::LeftButton);
    EXPECT_FALSE(view.isOn("play"));
    EXPECT_EQ(pixel(20, 20), QColor(0x10, 0x10, 0x10));
}

TEST_F(SkinViewTest, disabled_elements_do_not_answer) {
    view.setEnabled("play", false);
    QTest::mouseClick(&element("play"), Qt::LeftButton);
    EXPECT_TRUE(clicks.empty());
}

TEST_F(SkinViewTest, the_tab_key_goes_through_the_elements_in_reading_order) {
    element("play").setFocus(Qt::TabFocusReason);
    std::vector<std::string> order;
    for (int i = 0; i < 4; ++i) {
        order.push_back(QApplication::focusWidget()->objectName().toStdString());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_THAT(order, ElementsAre("Play", "stop", "volume", "below"));
}

TEST_F(SkinViewTest, space_and_enter_press_the_focused_button_other_keys_go_on_to_the_window) {
    element("stop").setFocus(Qt::TabFocusReason);
    QTest::keyClick(&element("stop"), Qt::Key_Space);
    QTest::keyClick(&element("stop"), Qt::Key_Return);
    EXPECT_THAT(clicks, ElementsAre("stop", "stop"));
    QKeyEvent left(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
    QApplication::sendEvent(&element("stop"), &left);
    EXPECT_TRUE(element("stop").hasFocus());
    EXPECT_FALSE(left.isAccepted());
}

TEST_F(SkinViewTest, a_click_on_a_button_leaves_the_focus_off_it) {
    element("volume").setFocus(Qt::TabFocusReason);
    QTest::mouseClick(&element("stop"), Qt::LeftButton);
    EXPECT_FALSE(element("stop").hasFocus());
}

TEST_F(SkinViewTest, a_slider_reports_what_the_user_does) {
    QWidget& volume = element("volume");
    const QRect range = view.placeRect("volume.range").translated(-volume.pos());
    QTest::mouseClick(&volume, Qt::LeftButton, {}, {range.left() + 25, range.center().y()});
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].first, "volume");
    EXPECT_NEAR(changes[0].second, 25, 1);
    changes.clear();
    view.setValue("volume", 50);
    for (const auto key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_End, Qt::Key_Home})
        QTest::keyClick(&volume, key);
    EXPECT_THAT(changes, ElementsAre(Pair("volume", 51), Pair("volume", 50), Pair("volume", 60),
                                     Pair("volume", 100), Pair("volume", 0)));
    EXPECT_TRUE(previews.empty());
}

TEST_F(SkinViewTest, the_wheel_moves_a_slider_by_its_step) {
    view.setSliderOptions("volume", {5, 20, SliderDrag::Live});
    view.setValue("volume", 50);
    QWidget& volume = element("volume");
    QWheelEvent wheel(QPointF(5, 5), volume.mapToGlobal(QPointF(5, 5)), {}, {0, 240}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&volume, &wheel);
    EXPECT_THAT(changes, ElementsAre(Pair("volume", 60)));
}

TEST_F(SkinViewTest, a_drag_may_preview_and_change_at_release) {
    view.setSliderOptions("volume", {1, 10, SliderDrag::AtRelease});
    QWidget& volume = element("volume");
    const QRect range = view.placeRect("volume.range").translated(-volume.pos());
    const int y = range.center().y();
    QTest::mousePress(&volume, Qt::LeftButton, {}, {range.left() + 20, y});
    QTest::mouseMove(&volume, {range.left() + 60, y});
    view.setValue("volume", 3); // a tick of the program does not take the knob away
    EXPECT_TRUE(changes.empty());
    EXPECT_EQ(pixel(view.placeRect("volume.range").left() + 60, 60), QColor(255, 0, 0));
    QTest::mouseRelease(&volume, Qt::LeftButton, {}, {range.left() + 80, y});
    ASSERT_EQ(previews.size(), 2u);
    EXPECT_NEAR(previews[1].second, 60, 1);
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_NEAR(changes[0].second, 80, 1);
    EXPECT_NEAR(view.value("volume"), 80, 1);
}

TEST_F(SkinViewTest, the_program_may_put_a_knob_beyond_the_ends) {
    view.setValue("volume", -7);
    EXPECT_EQ(view.value("volume"), -7);
    EXPECT_EQ(pixel(103, 60), QColor(255, 0, 0));
    view.setValue("volume", 60);
    EXPECT_EQ(pixel(130, 60), QColor(0, 255, 0));
    EXPECT_EQ(pixel(190, 60), QColor(255, 255, 255));
}

TEST_F(SkinViewTest, a_digit_item_shows_a_cell_of_the_strip) {
    view.setDigit("a2", 3);
    EXPECT_EQ(pixel(262, 25), QColor(0, 0, 255));
    EXPECT_EQ(pixel(237, 25), QColor(0, 0, 0));
    view.setDigit("A2", 4);
    EXPECT_EQ(pixel(262, 25), QColor(0, 0, 0));
    view.setDigit("A1", 3);
    EXPECT_EQ(pixel(237, 25), QColor(0, 0, 255));
}

TEST_F(SkinViewTest, screen_readers_get_the_digits_as_one_number) {
    view.setDigit("a1", 4);
    view.setDigit("a2", 2);
    const QAccessibleInterface* whole = QAccessible::queryAccessibleInterface(&view);
    std::vector<std::string> found;
    for (int i = 0; i < whole->childCount(); ++i) {
        QAccessibleInterface* child = whole->child(i);
        if (child->text(QAccessible::Name) != "Speed" && child->object()->objectName() != "A1")
            continue;
        ASSERT_NE(child->valueInterface(), nullptr);
        found.push_back(child->text(QAccessible::Name).toStdString() + " " +
                        child->text(QAccessible::Value).toStdString());
        EXPECT_EQ(child->valueInterface()->currentValue().toInt(), 42);
        EXPECT_EQ(child->childCount(), 0);
    }
    EXPECT_THAT(found, ElementsAre("Speed 42"));
}

TEST_F(SkinViewTest, a_text_too_long_for_its_place_shows_whole_as_a_tool_tip) {
    SkinStatusLine line(view, "place.status");
    line.show("short");
    auto* label = qobject_cast<QLabel*>(&element("place.status"));
    ASSERT_NE(label, nullptr);
    view.grab();
    EXPECT_EQ(label->toolTip(), "");
    line.show("a text that is much longer than the hundred pixels of its place");
    view.grab();
    EXPECT_EQ(label->toolTip(), label->text());
}

TEST_F(SkinViewTest, a_name_that_looks_like_markup_is_shown_as_it_is) {
    const QString name = "<b>103045</b> &amp; a name longer than its place.MP4";
    for (const char* place : {"place.status", "place.notice"}) {
        view.setText(place, name.toStdString());
        view.grab();
        auto* label = qobject_cast<QLabel*>(&element(place));
        EXPECT_EQ(label->text(), name);
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_EQ(drawnAsToolTip(label->toolTip()), name);
    }
    view.setElementTexts({}, [](const std::string&) { return "<b>K</b>"; });
    EXPECT_EQ(drawnAsToolTip(element("play").toolTip()), "<b>K</b>");
}

TEST_F(SkinViewTest, of_a_text_of_megabytes_both_ends_are_shown) {
    for (const char* place : {"place.status", "place.notice"}) {
        view.setText(place, "begin " + std::string(5000000, 'x') + " end");
        const QString text = qobject_cast<QLabel*>(&element(place))->text();
        EXPECT_LE(text.size(), 2000);
        EXPECT_TRUE(text.startsWith("begin ") && text.endsWith(" end"));
        view.grab();
        EXPECT_LE(drawnAsToolTip(element(place).toolTip()).size(), 2000);
    }
}

TEST_F(SkinViewTest, a_place_of_two_lines_wraps_and_keeps_the_end_of_a_long_text) {
    const QSize lines(60, 2 * 15 + 2);
    const QString path(200, 'p');
    auto shown = [&](const QString& text) {
        view.setText("place.notice", text.toStdString());
        return element("place.notice").grab(QRect(QPoint(0, 0), lines)).toImage();
    };
    ASSERT_EQ(element("place.notice").size(), lines);
    const QImage why = shown(path + ": why");
    EXPECT_NE(why, shown(path + ": how")) << "the reason is cut off";
    const QImage one = shown("one" + path);
    EXPECT_NE(one, shown("two" + path)) << "the name is cut off";
    EXPECT_EQ(element("place.notice").toolTip(), "two" + path);
}

TEST_F(SkinViewTest, screen_readers_get_names_roles_and_values) {
    view.setValue("volume", 40);
    QAccessibleInterface* play = QAccessible::queryAccessibleInterface(&element("play"));
    EXPECT_EQ(play->text(QAccessible::Name), "Play it");
    QAccessibleInterface* slider = QAccessible::queryAccessibleInterface(&element("volume"));
    EXPECT_EQ(slider->role(), QAccessible::Slider);
    EXPECT_EQ(slider->text(QAccessible::Name), "Volume");
    ASSERT_NE(slider->valueInterface(), nullptr);
    EXPECT_EQ(slider->valueInterface()->currentValue().toDouble(), 40);
    slider->valueInterface()->setCurrentValue(45);
    EXPECT_THAT(changes, ElementsAre(Pair("volume", 45)));
    play->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(view.isOn("play"));
    QAccessibleInterface* stop = QAccessible::queryAccessibleInterface(&element("stop"));
    EXPECT_EQ(stop->role(), QAccessible::Button);
    stop->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_TRUE(waitUntil([&] { return clicks.size() == 2; }));
    EXPECT_THAT(clicks, ElementsAre("Play", "stop"));
}

TEST_F(SkinViewTest, a_slider_may_be_read_in_seconds) {
    double seconds = 300;
    view.setSliderOptions("volume", {1, 10, SliderDrag::Live, [&] { return seconds; }});
    view.setValue("volume", 40);
    QAccessibleInterface* slider = QAccessible::queryAccessibleInterface(&element("volume"));
    QAccessibleValueInterface* value = slider->valueInterface();
    EXPECT_EQ(value->currentValue().toDouble(), 120);
    EXPECT_EQ(value->maximumValue().toDouble(), 300);
    EXPECT_EQ(slider->text(QAccessible::Value), "2:00");
    EXPECT_EQ(slider->text(QAccessible::Description), "2:00 / 5:00");
    value->setCurrentValue(150);
    EXPECT_THAT(changes, ElementsAre(Pair("volume", 50)));
    seconds = 0; // nothing is open
    EXPECT_EQ(value->currentValue().toDouble(), 0);
    EXPECT_EQ(value->maximumValue().toDouble(), 0);
    value->setCurrentValue(1);
    EXPECT_EQ(changes.size(), 1u);
}

TEST_F(SkinViewTest, a_command_that_is_ready_is_no_check_box) {
    view.setReadyElements({"play"});
    ASSERT_TRUE(view.load(writeSampleSkin(folder)));
    view.setOn("play", true);
    const QAccessibleInterface* play = QAccessible::queryAccessibleInterface(&element("play"));
    EXPECT_EQ(play->role(), QAccessible::Button);
    EXPECT_FALSE(play->state().checkable);
    EXPECT_FALSE(play->state().checked);
    EXPECT_TRUE(view.isOn("play"));
    EXPECT_EQ(pixel(20, 20), QColor(0x50, 0x50, 0x50)) << "it looks switched on all the same";
}

TEST_F(SkinViewTest, names_and_tool_tips_may_come_from_the_program) {
    view.setElementTexts(
        [](const std::string& id) { return id == "Play" ? "Wiedergabe" : ""; },
        [](const std::string& id) { return id == "Play" ? "Wiedergabe (K)" : ""; });
    EXPECT_EQ(element("play").accessibleName(), "Wiedergabe");
    EXPECT_EQ(element("play").toolTip(), "Wiedergabe (K)");
    EXPECT_EQ(element("volume").toolTip(), "Volume");
}

TEST_F(SkinViewTest, states_outlive_the_loading_of_another_drawing) {
    view.setOn("play", true);
    view.setValue("volume", 70);
    ASSERT_TRUE(view.load(writeSampleSkin(folder)));
    EXPECT_EQ(pixel(20, 20), QColor(0x50, 0x50, 0x50));
    EXPECT_EQ(view.value("volume"), 70);
    QTest::mouseClick(&element("play"), Qt::LeftButton);
    EXPECT_THAT(clicks, ElementsAre("Play"));
}

TEST_F(SkinViewTest, clicks_during_a_handler_come_after_it) {
    gate.runWhenFree([&] {
        QTest::mouseClick(&element("stop"), Qt::LeftButton);
        EXPECT_TRUE(clicks.empty());
    });
    EXPECT_TRUE(waitUntil([&] { return clicks.size() == 1; }));
}

TEST(SkinView, a_click_that_waits_for_the_gate_is_dropped_with_its_view) {
    const TemporaryFolder folder;
    HandlerGate gate;
    auto view = std::make_unique<SkinView>();
    ASSERT_TRUE(view->load(writeSampleSkin(folder)));
    int clicks = 0;
    view->onClick(gate.listener([&](const std::string&) { ++clicks; }));
    gate.runWhenFree([&] {
        QTest::mouseClick(view->elementWidget("stop"), Qt::LeftButton);
        view.reset();
    });
    QTest::qWait(20);
    EXPECT_EQ(clicks, 0);
}

TEST_F(SkinViewTest, a_missing_element_is_named_once_and_does_nothing) {
    testing::internal::CaptureStderr();
    view.setOn("photo", true);
    view.setOn("photo", true);
    view.setDigit("A3", 4);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(view.isOn("photo"));
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 2);
    EXPECT_THAT(said, HasSubstr("\"photo\""));
    EXPECT_THAT(said, HasSubstr("sample skin.mp4"));
}

TEST_F(SkinViewTest, elements_that_a_window_counts_on_are_checked_on_load) {
    view.setExpectedElements({"play", "cmdclose"});
    testing::internal::CaptureStderr();
    EXPECT_TRUE(view.load(writeSampleSkin(folder)));
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_THAT(said, HasSubstr("\"cmdclose\""));
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1);
}

TEST(SkinView, what_is_no_drawing_is_refused) {
    const TemporaryFolder folder;
    const std::pair<const char*, QByteArray> files[] = {
        {"empty", ""},
        {"text", "no drawing at all"},
        {"cut off", QByteArray(sampleSkin).left(900)},
        {"html", "<html><body/></html>"},
        {"without size", "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"0\" height=\"0\"/>"},
        {"document type", "<!DOCTYPE svg [<!ENTITY a \"b\">]><svg xmlns=\"http://www.w3.org/2000/"
                          "svg\" width=\"9\" height=\"9\"><text>&a;</text></svg>"},
    };
    for (const auto& [name, bytes] : files) {
        SkinView view;
        EXPECT_FALSE(view.load(folder.write(name, bytes))) << name;
    }
    EXPECT_FALSE(SkinView().load(folder.path("missing")));
}

TEST(SkinView, pictures_from_outside_the_drawing_are_not_fetched) {
    const TemporaryFolder folder;
    QPixmap red(10, 10);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(QString::fromStdString(folder.path("red.png"))));
    const QByteArray drawing =
        "<svg xmlns=\"http://www.w3.org/2000/svg\" "
        "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"10\" height=\"10\">"
        "<rect width=\"10\" height=\"10\" fill=\"#00FF00\"/>"
        "<script>alert(1)</script><image width=\"10\" height=\"10\" xlink:href=\"" +
        QByteArray::fromStdString(folder.path("red.png")) + "\"/></svg>";
    SkinView view;
    ASSERT_TRUE(view.load(folder.write("skin", drawing)));
    EXPECT_EQ(view.grab().toImage().pixelColor(5, 5), QColor(0, 255, 0));
}

} // namespace
} // namespace velmorant

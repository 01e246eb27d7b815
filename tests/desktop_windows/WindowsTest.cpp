#include "common/StepError.h"
#include "desktop/system/QtScreen.h"
#include "desktop/windows/MainWindow.h"
#include "desktop/windows/SkinDialog.h"
#include "tests/desktop_windows/SkinSample.h"
#include "tests/desktop_windows/WaitUntil.h"
#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QTimer>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using testing::ElementsAre;

std::string skinFile(const std::string& name) {
    return VELMORANT_SKINS "/" + name;
}

class MainWindowTest : public testing::Test {
  protected:
    void load(const std::string& language) {
        ASSERT_TRUE(frame.skin().load(skinFile("main/" + language + ".mp4")));
    }
    void show() {
        frame.qtWindow().show();
        frame.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
    }

    HandlerGate gate;
    QtScreen screen;
    MainWindow frame{gate, screen};
};

TEST_F(MainWindowTest, is_1024_by_708_whatever_its_skin) {
    EXPECT_EQ(frame.size(), QSize(1024, 708));
    load("1");
    EXPECT_EQ(frame.skin().size(), QSize(1024, 708));
}

TEST_F(MainWindowTest, reports_the_four_commands_of_the_skin) {
    load("1");
    show();
    std::vector<std::string> commands;
    frame.onCommand(
        gate.listener([&](const std::string& element) { commands.push_back(element); }));
    for (const char* element : {"open", "delete", "setup", "info"}) {
        QWidget* button = frame.skin().elementWidget(element);
        ASSERT_NE(button, nullptr) << element;
        QTest::mouseClick(button, Qt::LeftButton);
    }
    EXPECT_THAT(commands, ElementsAre("open", "delete", "setup", "info"));
}

TEST_F(MainWindowTest, every_element_of_it_is_named_in_the_language_of_the_skin) {
    std::vector<QString> names[2];
    for (const int language : {1, 2}) {
        load(std::to_string(language));
        for (const char* element : {"open", "delete", "setup", "info", "minimise", "close"}) {
            QAccessibleInterface* readable =
                QAccessible::queryAccessibleInterface(frame.skin().elementWidget(element));
            ASSERT_NE(readable, nullptr);
            EXPECT_EQ(readable->role(), QAccessible::Button);
            names[language - 1].push_back(readable->text(QAccessible::Name));
        }
    }
    for (std::size_t i = 0; i < names[0].size(); ++i) {
        EXPECT_NE(names[0][i], "");
        EXPECT_NE(names[0][i], names[1][i]);
    }
}

TEST_F(MainWindowTest, the_panes_lie_in_the_places_of_the_frame) {
    load("1");
    QWidget picture;
    QWidget list;
    QWidget control;
    QWidget map;
    frame.host(MainWindow::Pane::Picture, picture);
    frame.host(MainWindow::Pane::List, list);
    frame.bands().addWindow("frmCurve", control);
    frame.bands().addWindow("frmMediaCtrl", map);
    frame.bands().setHeight("MediaControl", 209 * screen.twipsPerPixelY());
    frame.bands().setChild("mediacontrol", "frmCurve");
    frame.bands().setHeight("ControlBand", 248 * screen.twipsPerPixelY());
    frame.bands().setChild("ControlBand", "frmMediaCtrl");
    frame.bands().recalculateLayout();
    EXPECT_EQ(picture.geometry(), QRect(10, 120, 656, 369));
    EXPECT_EQ(control.geometry(), QRect(10, 489, 656, 209));
    EXPECT_EQ(map.geometry(), QRect(676, 120, 338, 248));
    EXPECT_EQ(list.geometry(), QRect(676, 378, 338, 320));
    for (QWidget* widget : {&picture, &list, &control, &map})
        widget->setParent(nullptr);
}

TEST_F(MainWindowTest, a_band_or_window_that_is_missing_is_an_error) {
    QWidget control;
    frame.bands().addWindow("frmCurve", control);
    EXPECT_THROW(frame.bands().setHeight("Nothing", 100), StepError);
    EXPECT_THROW(frame.bands().setChild("Nothing", "frmCurve"), StepError);
    EXPECT_THROW(frame.bands().setChild("MediaControl", "frmNothing"), StepError);
}

TEST_F(MainWindowTest, no_button_begins_with_the_focus) {
    load("1");
    show();
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    EXPECT_EQ(QApplication::focusWidget(), &frame.skin());
    EXPECT_EQ(frame.skin().accessibleName(), "Velmorant DVR Tools");
}

TEST_F(MainWindowTest, a_widget_of_a_pane_may_fill_the_window_and_return) {
    QWidget pane;
    pane.setFixedSize(338, 320);
    QWidget map(&pane);
    map.setGeometry(0, 10, 338, 216);
    frame.host(MainWindow::Pane::List, pane);
    frame.enlarge(&map);
    EXPECT_EQ(map.mapTo(&frame.skin(), QPoint(0, 0)), QPoint(1, 40));
    EXPECT_EQ(map.size(), QSize(1022, 667));
    frame.enlarge(nullptr);
    EXPECT_EQ(map.parentWidget(), &pane);
    EXPECT_EQ(map.geometry(), QRect(0, 10, 338, 216));
    pane.setParent(nullptr);
}

TEST_F(MainWindowTest, a_pane_that_grows_or_shrinks_keeps_the_keys) {
    load("1");
    auto* pane = new QWidget;
    auto* map = new QWidget(pane);
    auto* page = new QLineEdit(map);
    frame.host(MainWindow::Pane::List, *pane);
    show();
    page->setFocus();
    ASSERT_TRUE(page->hasFocus());
    frame.enlarge(map);
    EXPECT_TRUE(page->hasFocus());
    frame.enlarge(nullptr);
    EXPECT_TRUE(page->hasFocus());
    frame.skin().setFocus();
    frame.enlarge(map);
    EXPECT_TRUE(frame.skin().hasFocus()) << "who had the keys before keeps them";
}

TEST_F(MainWindowTest, closing_asks_first_and_the_programs_close_does_not) {
    load("1");
    show();
    int requests = 0;
    frame.qtWindow().onCloseRequest(gate.listener([&] { ++requests; }));
    QTest::mouseClick(frame.skin().elementWidget("close"), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return requests == 1; }));
    frame.close();
    EXPECT_EQ(requests, 2);
    EXPECT_TRUE(frame.isVisible());
    frame.qtWindow().close();
    EXPECT_EQ(requests, 2);
    EXPECT_FALSE(frame.isVisible());
}

TEST_F(MainWindowTest, closing_twice_while_a_handler_runs_asks_once) {
    show();
    int requests = 0;
    frame.qtWindow().onCloseRequest(gate.listener([&] { ++requests; }));
    gate.runWhenFree([&] {
        frame.close();
        frame.close();
        EXPECT_EQ(requests, 0);
    });
    ASSERT_TRUE(waitUntil([&] { return requests > 0; }));
    QTest::qWait(20);
    EXPECT_EQ(requests, 1);
}

TEST_F(MainWindowTest, sizes_and_places_are_in_twips_and_a_resize_is_told) {
    show();
    int resizes = 0;
    frame.qtWindow().onResize(gate.listener([&] { ++resizes; }));
    frame.qtWindow().resize(400 * 15, 300 * 15);
    EXPECT_EQ(frame.size(), QSize(400, 300));
    EXPECT_TRUE(waitUntil([&] { return resizes > 0; }));
    frame.qtWindow().move(30 * 15, 20 * 15);
    EXPECT_TRUE(waitUntil([&] { return frame.pos() == QPoint(30, 20); }));
    EXPECT_EQ(frame.qtWindow().left(), 450);
    EXPECT_EQ(frame.qtWindow().top(), 300);
    frame.qtWindow().setCaption("Velmorant DVR Tools");
    EXPECT_EQ(frame.windowTitle(), "Velmorant DVR Tools");
}

TEST_F(MainWindowTest, the_answer_to_the_size_question_is_the_largest_size) {
    const WindowProcedure saved = frame.nativeWindow().windowProcedure();
    frame.nativeWindow().setWindowProcedure([&](const WindowMessage& message) {
        const std::int32_t greatest[2] = {1024, 708};
        std::memcpy(message.record + 32, greatest, sizeof(greatest));
        return saved(message);
    });
    frame.resize(1500, 1200);
    EXPECT_EQ(frame.size(), QSize(1024, 708));
}

TEST_F(MainWindowTest, on_a_smaller_screen_it_takes_what_there_is_and_scrolls) {
    const QSize available = QApplication::primaryScreen()->availableSize();
    ASSERT_LT(available.width(), 1024) << "this test needs the small screen of the test platform";
    load("1");
    frame.qtWindow().resize(1024 * 15, 708 * 15);
    show();
    EXPECT_EQ(frame.width(), available.width());
    const auto bars = frame.findChildren<QScrollBar*>();
    EXPECT_TRUE(std::any_of(bars.begin(), bars.end(), [](const QScrollBar* bar) {
        return bar->orientation() == Qt::Horizontal && bar->maximum() > 0;
    }));
    frame.qtWindow().move(-112 * 15, -4 * 15);
    EXPECT_TRUE(waitUntil([&] { return frame.pos() == QPoint(0, 0); }));
    QWidget* info = frame.skin().elementWidget("info");
    int clicks = 0;
    frame.onCommand(gate.listener([&](const std::string&) { ++clicks; }));
    QTest::mouseClick(info, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
}

TEST_F(MainWindowTest, keys_that_no_pane_uses_come_to_the_window) {
    load("1");
    show();
    std::vector<std::string> keys;
    frame.onKey({"Left", "K", "Space", "Esc", ","}, gate.listener([&](const KeyPress& press) {
        keys.push_back(press.shift ? "Shift+" + press.key : press.key);
    }));
    QWidget* open = frame.skin().elementWidget("open");
    open->setFocus(Qt::TabFocusReason);
    for (const auto key :
         {Qt::Key_Left, Qt::Key_K, Qt::Key_Space, Qt::Key_L, Qt::Key_Escape, Qt::Key_Comma})
        QTest::keyClick(open, key);
    QTest::keyClick(open, Qt::Key_Left, Qt::ShiftModifier);
    QTest::keyClick(open, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_THAT(keys, ElementsAre("Left", "K", "Esc", ",", "Shift+Left"));
}

TEST_F(MainWindowTest, keys_during_a_handler_come_after_it_and_in_their_order) {
    load("1");
    show();
    std::vector<std::string> keys;
    frame.onKey({"N", "P"}, gate.listener([&](const KeyPress& press) {
        EXPECT_TRUE(gate.busy());
        keys.push_back(press.key);
    }));
    gate.runWhenFree([&] {
        QTest::keyClick(&frame, Qt::Key_N);
        QTest::keyClick(&frame, Qt::Key_P);
        EXPECT_THAT(keys, ElementsAre());
    });
    ASSERT_TRUE(waitUntil([&] { return keys.size() == 2; }));
    EXPECT_THAT(keys, ElementsAre("N", "P"));
}

TEST_F(MainWindowTest, a_menu_asked_for_during_a_handler_comes_after_it) {
    load("1");
    show();
    std::vector<QPoint> places;
    frame.onContextMenu(gate.listener([&](const QPoint& place) { places.push_back(place); }));
    gate.runWhenFree([&] {
        QTest::keyClick(&frame, Qt::Key_F10, Qt::ShiftModifier);
        EXPECT_THAT(places, ElementsAre());
    });
    EXPECT_TRUE(waitUntil([&] { return places.size() == 1; }));
}

class SkinDialogTest : public testing::Test {
  protected:
    HandlerGate gate;
    QtScreen screen;
};

TEST_F(SkinDialogTest, the_dialogs_have_their_sizes_and_the_sizes_of_their_skins) {
    SetupDialog setup(gate, screen);
    AboutDialog about(gate, screen);
    SplashWindow splash(gate, screen);
    ASSERT_TRUE(setup.skin().load(skinFile("setup/1.mp4")));
    ASSERT_TRUE(about.skin().load(skinFile("about.mp4")));
    ASSERT_TRUE(splash.skin().load(skinFile("load/load2.mp4")));
    EXPECT_EQ(setup.size(), QSize(800, 480));
    EXPECT_EQ(setup.skin().size(), setup.size());
    EXPECT_EQ(about.size(), QSize(600, 400));
    EXPECT_EQ(about.skin().size(), about.size());
    EXPECT_EQ(splash.size(), QSize(1024, 708));
    EXPECT_EQ(splash.skin().size(), splash.size());
}

TEST_F(SkinDialogTest, a_dialog_has_the_title_of_its_skin) {
    SetupDialog setup(gate, screen);
    ASSERT_TRUE(setup.skin().load(skinFile("setup/1.mp4")));
    EXPECT_EQ(setup.windowTitle(), "Settings");
    ASSERT_TRUE(setup.skin().load(skinFile("setup/2.mp4")));
    EXPECT_EQ(setup.windowTitle(), "設定");
    AboutDialog about(gate, screen);
    ASSERT_TRUE(about.skin().load(skinFile("about.mp4")));
    EXPECT_EQ(about.windowTitle(), "Velmorant DVR Tools");
}

TEST_F(SkinDialogTest, a_modal_dialog_returns_when_the_program_closes_it) {
    SetupDialog setup(gate, screen);
    ASSERT_TRUE(setup.skin().load(skinFile("setup/1.mp4")));
    std::vector<std::string> clicks;
    setup.skin().onClick(gate.listener([&](const std::string& element) {
        clicks.push_back(element);
        if (element == "cmdclose")
            setup.qtWindow().close();
    }));
    bool modal = false;
    QTimer::singleShot(20, [&] {
        modal = setup.isModal() && setup.isVisible();
        QTest::mouseClick(setup.skin().elementWidget("unit1002"), Qt::LeftButton);
        QTest::mouseClick(setup.skin().elementWidget("cmdclose"), Qt::LeftButton);
    });
    gate.runWhenFree([&] { setup.qtWindow().showModal(); });
    EXPECT_TRUE(modal);
    EXPECT_FALSE(setup.isVisible());
    EXPECT_THAT(clicks, ElementsAre("unit1002", "cmdclose"));
}

TEST_F(SkinDialogTest, a_skin_loaded_by_a_click_in_it_takes_over) {
    SetupDialog setup(gate, screen);
    ASSERT_TRUE(setup.skin().load(skinFile("setup/1.mp4")));
    setup.skin().onClick(gate.listener([&](const std::string& element) {
        if (element == "lang1002") {
            EXPECT_TRUE(setup.skin().load(skinFile("setup/2.mp4")));
            setup.skin().setOn("lang1002", true);
        }
    }));
    setup.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&setup));
    const QString before = setup.skin().elementWidget("cmdclose")->accessibleName();
    QTest::mouseClick(setup.skin().elementWidget("lang1002"), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_NE(setup.skin().elementWidget("cmdclose")->accessibleName(), before);
    EXPECT_TRUE(setup.skin().isOn("lang1002"));
}

TEST_F(SkinDialogTest, escape_is_a_close_request) {
    AboutDialog about(gate, screen);
    ASSERT_TRUE(about.skin().load(skinFile("about.mp4")));
    int requests = 0;
    about.qtWindow().onCloseRequest(gate.listener([&] { ++requests; }));
    about.show();
    about.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&about));
    QTest::keyClick(&about, Qt::Key_Escape);
    EXPECT_EQ(requests, 1);
    EXPECT_TRUE(about.isVisible());
}

TEST_F(SkinDialogTest, every_command_of_every_skin_can_be_reached_by_the_tab_key) {
    for (const char* file : {"setup/1.mp4", "setup/2.mp4", "about.mp4", "control/MediaControl1.mp4",
                             "media/ls1.MP4", "main/2.mp4"}) {
        SkinView view;
        ASSERT_TRUE(view.load(skinFile(file))) << file;
        view.show();
        view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
        QStringList wanted;
        for (QWidget* child : view.findChildren<QWidget*>())
            if (child->focusPolicy() & Qt::TabFocus) {
                EXPECT_NE(child->accessibleName(), "") << file;
                EXPECT_NE(child->accessibleName(), child->objectName()) << file;
                wanted << child->objectName();
            }
        QStringList reached;
        for (qsizetype i = 0; i < wanted.size(); ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached << QApplication::focusWidget()->objectName();
        }
        wanted.sort();
        reached.sort();
        EXPECT_EQ(reached, wanted) << file;
        EXPECT_GT(wanted.size(), 1) << file;
    }
}

} // namespace
} // namespace velmorant

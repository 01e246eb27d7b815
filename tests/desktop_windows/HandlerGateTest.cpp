#include "desktop/gate/HandlerGate.h"

#include "desktop/system/QtTimer.h"
#include "desktop/system/QtWaits.h"
#include "desktop/widgets/GatedMenu.h"
#include "tests/desktop_windows/WaitUntil.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace velmorant {
namespace {

using namespace std::chrono_literals;

TEST(HandlerGate, runs_a_handler_at_once_when_free) {
    HandlerGate gate;
    bool busyInside = false;
    gate.runWhenFree([&] { busyInside = gate.busy(); });
    EXPECT_TRUE(busyInside);
    EXPECT_FALSE(gate.busy());
}

TEST(HandlerGate, delivers_what_came_meanwhile_afterwards_and_in_order) {
    HandlerGate gate;
    std::vector<std::string> order;
    gate.runWhenFree([&] {
        gate.runWhenFree([&] { order.emplace_back("second"); });
        gate.runWhenFree([&] { order.emplace_back("third"); });
        order.emplace_back("first");
    });
    gate.runWhenFree([&] { order.emplace_back("fourth"); });
    ASSERT_TRUE(waitUntil([&] { return order.size() == 4; }));
    EXPECT_EQ(order, (std::vector<std::string>{"first", "second", "third", "fourth"}));
}

TEST(HandlerGate, is_free_again_after_a_handler_that_throws) {
    HandlerGate gate;
    EXPECT_THROW(gate.runWhenFree([] { throw std::runtime_error("broken"); }), std::runtime_error);
    EXPECT_FALSE(gate.busy());
}

TEST(HandlerGate, opens_while_a_handler_shows_a_modal_window) {
    HandlerGate gate;
    bool ran = false;
    gate.runWhenFree([&] {
        const HandlerGate::ModalScope modal(gate);
        gate.runWhenFree([&] { ran = true; });
    });
    EXPECT_TRUE(ran);
}

TEST(GatedListener, is_nobody_until_a_gate_makes_it) {
    const GatedListener<int> nobody;
    EXPECT_FALSE(nobody);
    nobody(1);
    nobody.latest(2);
    // Nothing but a gate makes one: a function around it would pass the gate by.
    const auto plain = [](int) {};
    static_assert(!std::is_constructible_v<GatedListener<int>, decltype(plain)>);
    static_assert(!std::is_convertible_v<std::function<void(int)>, GatedListener<int>>);
    static_assert(!std::is_assignable_v<GatedListener<int>&, std::function<void(int)>>);
}

TEST(GatedListener, calls_during_a_handler_come_after_it_one_by_one_with_their_own_arguments) {
    HandlerGate gate;
    std::vector<std::string> heard;
    const GatedListener<std::string> listener =
        gate.listener([&](const std::string& word) { heard.push_back(word); });
    listener("before");
    EXPECT_EQ(heard, (std::vector<std::string>{"before"}));
    gate.runWhenFree([&] {
        std::string word = "first";
        listener(word);
        word = "second";
        listener(word);
        EXPECT_EQ(heard.size(), 1U);
    });
    ASSERT_TRUE(waitUntil([&] { return heard.size() == 3; }));
    EXPECT_EQ(heard, (std::vector<std::string>{"before", "first", "second"}));
}

TEST(GatedListener, of_what_only_counts_in_its_last_form_one_call_is_held) {
    HandlerGate gate;
    std::vector<int> sizes;
    const auto listener = gate.listener([&](int size) { sizes.push_back(size); });
    listener.latest(1);
    gate.runWhenFree([&] {
        listener.latest(2);
        listener.latest(3);
        listener.latest(4);
    });
    bool later = false;
    gate.runWhenFree([&] { later = true; });
    ASSERT_TRUE(waitUntil([&] { return later; }));
    EXPECT_EQ(sizes, (std::vector<int>{1, 4}));
    listener.latest(5);
    EXPECT_EQ(sizes.back(), 5);
}

TEST(GatedListener, what_waits_is_dropped_with_the_listener) {
    HandlerGate gate;
    int calls = 0;
    auto listener = gate.listener([&] { ++calls; });
    gate.runWhenFree([&] {
        listener();
        listener.latest();
        listener = {};
    });
    bool later = false;
    gate.runWhenFree([&] { later = true; });
    ASSERT_TRUE(waitUntil([&] { return later; }));
    EXPECT_EQ(calls, 0);
}

TEST(GatedListener, may_be_replaced_by_its_own_handler) {
    HandlerGate gate;
    std::vector<std::string> heard;
    GatedListener<> listener;
    listener = gate.listener([&, large = std::string(100, 'x')] {
        listener = gate.listener([&] { heard.emplace_back("the other"); });
        heard.push_back(large);
    });
    listener();
    listener();
    EXPECT_EQ(heard, (std::vector<std::string>{std::string(100, 'x'), "the other"}));
}

TEST(GatedMenu, a_command_that_has_to_wait_outlives_its_menu) {
    HandlerGate gate;
    QWidget parent;
    parent.show();
    int commands = 0;
    bool earlier = false;
    gate.runWhenFree([&] {
        GatedMenu menu(gate, parent);
        menu.add("Play", [&] { ++commands; });
        QTimer::singleShot(0, [&] {
            // Something else has its turn first.
            gate.runWhenFree([&] { QtWaits().sleep(10ms); });
            auto* shown = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (shown == nullptr)
                return;
            shown->actions().constFirst()->trigger();
            shown->close();
        });
        gate.runWhenFree([&] { earlier = true; });
        menu.run(QPoint(10, 10));
    });
    EXPECT_TRUE(waitUntil([&] { return commands == 1; }));
    EXPECT_TRUE(earlier);
}

TEST(QtTimer, ticks_again_and_again_until_disabled) {
    HandlerGate gate;
    QtTimer timer(gate);
    int ticks = 0;
    timer.setInterval(10ms);
    timer.onTick([&] {
        if (++ticks == 3)
            timer.setEnabled(false);
    });
    timer.setEnabled(true);
    ASSERT_TRUE(waitUntil([&] { return ticks == 3; }));
    QTest::qWait(50);
    EXPECT_EQ(ticks, 3);
    EXPECT_FALSE(timer.enabled());
}

TEST(QtTimer, enabling_an_enabled_timer_does_not_start_its_interval_anew) {
    HandlerGate gate;
    QtTimer timer(gate);
    timer.setInterval(80ms);
    int ticks = 0;
    timer.onTick([&] { ++ticks; });
    QElapsedTimer clock;
    clock.start();
    timer.setEnabled(true);
    ASSERT_TRUE(waitUntil([&] {
        timer.setEnabled(true);
        return ticks > 0;
    }));
    EXPECT_GE(clock.elapsed(), 75);
}

TEST(QtWaits, a_wait_holds_ticks_back_and_one_comes_after_the_handler) {
    HandlerGate gate;
    QtTimer timer(gate);
    QtWaits waits;
    int ticks = 0;
    int ticksInside = -1;
    timer.setInterval(5ms);
    timer.onTick([&] {
        ++ticks;
        timer.setEnabled(false);
    });
    timer.setEnabled(true);
    gate.runWhenFree([&] {
        waits.sleep(60ms);
        waits.letEventsRun();
        ticksInside = ticks;
    });
    EXPECT_EQ(ticksInside, 0);
    ASSERT_TRUE(waitUntil([&] { return ticks == 1; }));
}

TEST(QtWaits, a_tick_held_back_is_dropped_when_the_handler_disables_the_timer) {
    HandlerGate gate;
    QtTimer timer(gate);
    QtWaits waits;
    int ticks = 0;
    timer.setInterval(5ms);
    timer.onTick([&] { ++ticks; });
    timer.setEnabled(true);
    gate.runWhenFree([&] {
        waits.sleep(30ms);
        timer.setEnabled(false);
    });
    QTest::qWait(30);
    EXPECT_EQ(ticks, 0);
}

TEST(QtWaits, sleeps_as_long_as_asked) {
    QtWaits waits;
    QElapsedTimer clock;
    clock.start();
    waits.sleep(50ms);
    EXPECT_GE(clock.elapsed(), 49);
    EXPECT_LT(clock.elapsed(), 1000);
}

TEST(QtWaits, a_sleep_ends_as_soon_as_what_it_waits_for_has_happened) {
    QtWaits waits;
    bool over = false;
    QTimer::singleShot(10, [&] { over = true; });
    waits.sleepUntil(1h, [&] { return over; });
    EXPECT_TRUE(over);
    waits.sleepUntil(1h, [] { return true; });
    int questions = 0;
    waits.sleepUntil(30ms, [&] { return ++questions < 0; });
    EXPECT_GT(questions, 1);
}

class PaintCounter : public QWidget {
  public:
    int paints = 0;

  protected:
    void paintEvent(QPaintEvent*) override { ++paints; }
};

TEST(QtWaits, windows_go_on_painting_during_a_wait) {
    HandlerGate gate;
    QtWaits waits;
    PaintCounter window;
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    const int before = window.paints;
    gate.runWhenFree([&] {
        window.update();
        waits.sleep(40ms);
        EXPECT_GT(window.paints, before);
    });
}

TEST(QtWaits, only_the_answering_window_gets_the_users_input) {
    QtWaits waits;
    QPushButton other("other");
    QPushButton cancel("Cancel");
    int otherClicks = 0;
    int cancelClicks = 0;
    QObject::connect(&other, &QPushButton::clicked, [&] { ++otherClicks; });
    QObject::connect(&cancel, &QPushButton::clicked, [&] { ++cancelClicks; });
    other.show();
    cancel.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&cancel));
    waits.setAnsweringWindow(&cancel);
    QTimer::singleShot(10, [&] {
        QTest::mouseClick(&other, Qt::LeftButton);
        QTest::mouseClick(&cancel, Qt::LeftButton);
    });
    waits.sleep(80ms);
    EXPECT_EQ(otherClicks, 0);
    EXPECT_EQ(cancelClicks, 1);
}

} // namespace
} // namespace velmorant

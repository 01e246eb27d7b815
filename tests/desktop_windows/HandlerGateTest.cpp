#include "desktop/system/HandlerGate.h"

#include "desktop/system/QtTimer.h"
#include "desktop/system/QtWaits.h"
#include "tests/desktop_windows/WaitUntil.h"
#include <QElapsedTimer>
#include <QPushButton>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
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

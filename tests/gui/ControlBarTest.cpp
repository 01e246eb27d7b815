#include "tests/gui/ProgramTest.h"

#include "desktop/player/MpvHandle.h"
#include "desktop/system/QtTimer.h"
#include "desktop/widgets/SkinSlider.h"

#include <QTest>
#include <cmath>

namespace velmorant {

class ControlBarTest : public ProgramTest {
  protected:
    void showCard() { showOnMap({recording(1), recording(2), recording(3)}); }
    void press(const std::string& element) { driver().clickControl(element); }

    SkinSlider& slider(const std::string& element) {
        return dynamic_cast<SkinSlider&>(*panes().control.skin->elementWidget(element));
    }
    /// Clicks where the slider stands for that value.
    void slideTo(const std::string& element, double value) {
        SkinSlider& target = slider(element);
        int x = 0;
        while (x < target.width() - 1 && target.valueAt(x) < value)
            ++x;
        QTest::mouseClick(&target, Qt::LeftButton, {}, QPoint(x, target.height() / 2));
    }
    double property(const char* name) {
        double value = -1;
        mpv_get_property(player().handle()->get(), name, MPV_FORMAT_DOUBLE, &value);
        return value;
    }
    bool muted() {
        int value = -1;
        mpv_get_property(player().handle()->get(), "mute", MPV_FORMAT_FLAG, &value);
        return value == 1;
    }
    bool hasState(PlayState state) {
        return waitUntil([&] { return player().playState() == state; });
    }
};

TEST_F(ControlBarTest, play_pause_resume_and_stop) {
    showCard();
    press("cmdplay");
    ASSERT_TRUE(waitUntil([&] { return driver().playing(1); })) << "the first marked row";
    waitForPosition(2.0, 8.0);
    press("pause");
    ASSERT_TRUE(hasState(PlayState::Paused));
    const double paused = driver().position();
    press("cmdplay");
    ASSERT_TRUE(hasState(PlayState::Playing));
    EXPECT_GE(driver().position(), paused - 1.5);
    waitForPosition(paused + 0.5, 8.0);
    press("stop");
    ASSERT_TRUE(hasState(PlayState::Stopped));
    EXPECT_EQ(slider("playprogress").value(), 0);
    EXPECT_EQ(panes().control.chart.label(0), "");
}

TEST_F(ControlBarTest, head_and_end_start_the_marked_neighbours) {
    showCard();
    driver().clickMark(2);
    ASSERT_TRUE(waitUntil([&] { return !rooms().rows->marked(2); }));
    play(1);
    press("end");
    EXPECT_TRUE(waitUntil([&] { return driver().playing(3); })) << "row 2 is not marked";
    press("head");
    EXPECT_TRUE(waitUntil([&] { return driver().playing(1); }));
}

TEST_F(ControlBarTest, fast_forward_pauses_near_the_end) {
    showOnMap({std::string(VELMORANT_TEST_DATA) + "/recordings/hero7.mp4"});
    play(1);
    press("fast");
    ASSERT_TRUE(hasState(PlayState::Paused));
    EXPECT_GT(driver().position(), 10.0);
}

TEST_F(ControlBarTest, rewind_pauses_near_the_start) {
    showCard();
    play(1);
    waitForPosition(3.0, 5.0);
    press("back");
    ASSERT_TRUE(hasState(PlayState::Paused));
    EXPECT_LT(driver().position(), 1.0);
    EXPECT_EQ(player().url(), driver().path(1));
}

TEST_F(ControlBarTest, speaker_and_volume_reach_the_player) {
    showCard();
    play(1);
    slideTo("volume", 40);
    ASSERT_TRUE(waitUntil([&] { return std::abs(property("volume") - 40) < 4; }));
    const double kept = property("volume");
    press("speaker");
    ASSERT_TRUE(waitUntil([&] { return muted(); }));
    EXPECT_EQ(slider("volume").value(), 0);
    press("speaker");
    ASSERT_TRUE(waitUntil([&] { return !muted(); }));
    EXPECT_EQ(property("volume"), kept);
    EXPECT_EQ(slider("volume").value(), kept);
}

TEST_F(ControlBarTest, rate_slider_snaps_and_the_rate_survives_a_change_of_recording) {
    struct Step {
        double clicked;
        double rate;
        double snapped;
    };
    const Step steps[] = {{5, 0.2, -7}, {20, 0.5, 20}, {50, 1.0, 43}, {90, 2.0, 85}, {70, 1.5, 65}};
    showCard();
    play(1);
    for (const Step& step : steps) {
        SCOPED_TRACE(step.clicked);
        slideTo("playspeed", step.clicked);
        EXPECT_TRUE(waitUntil([&] { return std::abs(property("speed") - step.rate) < 1e-6; }))
            << property("speed");
        EXPECT_EQ(slider("playspeed").value(), step.snapped);
    }
    press("end");
    ASSERT_TRUE(waitUntil([&] { return driver().playing(2); }));
    EXPECT_TRUE(waitUntil([&] { return std::abs(property("speed") - 1.5) < 1e-6; }));
}

TEST_F(ControlBarTest, progress_slider_seeks) {
    showCard();
    play(1);
    waitForPosition(1.2, 8.0);
    press("pause");
    ASSERT_TRUE(hasState(PlayState::Paused));
    slideTo("playprogress", 75);
    waitForPosition(5.9, 6.1);
    slideTo("playprogress", 25);
    waitForPosition(1.9, 2.1);
    EXPECT_TRUE(waitUntil([&] { return std::abs(property("time-pos") - 2) < 0.1; }))
        << property("time-pos");
}

TEST_F(ControlBarTest, the_next_marked_row_follows_at_the_end) {
    showCard();
    driver().clickMark(2);
    ASSERT_TRUE(waitUntil([&] { return !rooms().rows->marked(2); }));
    play(1);
    waitForPosition(1.2, 8.0);
    slideTo("playprogress", 90);
    EXPECT_TRUE(waitUntil([&] { return driver().playing(3); })) << "row 2 is not marked";
    EXPECT_EQ(rooms().rows->playingIndex(), 3);
}

TEST_F(ControlBarTest, no_timer_ticks_inside_a_command_given_by_key) {
    showCard();
    play(1);
    QtTimer timer(host().gate);
    int ticks = 0;
    timer.setInterval(std::chrono::milliseconds(5));
    timer.onTick([&] { ++ticks; });
    timer.setEnabled(true);
    ASSERT_TRUE(waitUntil([&] { return ticks > 0; }));
    const int before = ticks;
    QTest::keyClick(&panes().frame, Qt::Key_N);
    EXPECT_EQ(ticks - before, 0);
    EXPECT_TRUE(waitUntil([&] { return driver().playing(2); }));
}

TEST_F(ControlBarTest, play_while_a_recording_still_opens_stays_with_it) {
    struct Way {
        const char* name;
        std::function<void()> play;
        PlayState result;
    };
    const Way ways[] = {
        {"button", [&] { press("cmdplay"); }, PlayState::Playing},
        {"K", [&] { QTest::keyClick(&panes().frame, Qt::Key_K); }, PlayState::Paused},
        {"space twice",
         [&] {
             QTest::keyClick(&panes().frame, Qt::Key_Space);
             QTest::keyClick(&panes().frame, Qt::Key_Space);
         },
         PlayState::Playing},
    };
    showCard();
    for (const Way& way : ways) {
        SCOPED_TRACE(way.name);
        driver().doubleClickRow(2);
        ASSERT_TRUE(waitUntil([&] { return player().url() == driver().path(2); }));
        ASSERT_NE(player().playState(), PlayState::Playing) << "it is open already";
        way.play();
        EXPECT_TRUE(hasState(way.result));
        EXPECT_EQ(player().url(), driver().path(2));
        EXPECT_EQ(rooms().rows->playingIndex(), 2);
        ASSERT_NO_FATAL_FAILURE(play(3));
    }
}

} // namespace velmorant

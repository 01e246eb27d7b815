#include "tests/gui/ProgramTest.h"

#include "desktop/player/MpvHandle.h"
#include "desktop/widgets/SkinSlider.h"

#include <QTest>
#include <cmath>

namespace velmorant {

/// Every way to seek, against the time of the frame that the player shows.
class SeekTest : public ProgramTest {
  protected:
    double property(const char* name) {
        double value = -1;
        mpv_get_property(player().handle()->get(), name, MPV_FORMAT_DOUBLE, &value);
        return value;
    }
    /// The frame shown is the one of the asked second.
    void expectFrameOf(double second, const char* way) {
        const double frame = 1.0 / property("container-fps");
        ASSERT_GT(frame, 0);
        EXPECT_TRUE(waitUntil([&] { return std::abs(property("time-pos") - second) <= frame; }))
            << way << ": asked for " << second << ", shown " << property("time-pos");
    }
    void pauseOn(const std::string& recording) {
        ASSERT_NO_FATAL_FAILURE(showOnMap({recording}));
        ASSERT_NO_FATAL_FAILURE(play(1));
        player().pause();
        ASSERT_TRUE(waitUntil([&] { return player().playState() == PlayState::Paused; }));
    }

    void seekBySlider() {
        auto& slider =
            dynamic_cast<SkinSlider&>(*panes().control.skin->elementWidget("playprogress"));
        QTest::mouseClick(&slider, Qt::LeftButton, {},
                          QPoint(slider.width() / 2, slider.height() / 2));
        const double length = std::nearbyint(player().duration().value_or(0));
        ASSERT_NO_FATAL_FAILURE(expectFrameOf(length * slider.value() / 100, "slider"));
    }
    void seekByChart() {
        const QPoint place = panes().control.chart.placeOf(4, 1).toPoint();
        QTest::mouseClick(&panes().control.chart.widget(), Qt::LeftButton, {}, place);
        ASSERT_NO_FATAL_FAILURE(expectFrameOf(driver().track(1)->dot(5).second, "chart"));
    }
    void seekByRoute() {
        const auto place = driver().map().routePlace(driver().number(1), 0.3);
        ASSERT_TRUE(place.has_value());
        driver().map().click(place->pixel);
        ASSERT_NO_FATAL_FAILURE(
            expectFrameOf(driver().track(1)->dot(place->index).second, "route"));
    }
    void seekByKey() {
        player().setCurrentPosition(1);
        ASSERT_NO_FATAL_FAILURE(expectFrameOf(1, "start"));
        QTest::keyClick(panes().picture.widget, Qt::Key_Right);
        ASSERT_NO_FATAL_FAILURE(expectFrameOf(6, "right"));
        QTest::keyClick(panes().picture.widget, Qt::Key_Left, Qt::ShiftModifier);
        ASSERT_NO_FATAL_FAILURE(expectFrameOf(5, "shift and left"));
    }
    void seekEachWay() {
        ASSERT_NO_FATAL_FAILURE(seekBySlider());
        ASSERT_NO_FATAL_FAILURE(seekByChart());
        ASSERT_NO_FATAL_FAILURE(seekByRoute());
        ASSERT_NO_FATAL_FAILURE(seekByKey());
    }
};

TEST_F(SeekTest, each_way_shows_the_frame_of_the_asked_second_of_a_card_recording) {
    ASSERT_NO_FATAL_FAILURE(pauseOn(recording(2)));
    ASSERT_NO_FATAL_FAILURE(seekEachWay());
}

TEST_F(SeekTest, each_way_shows_the_frame_of_the_asked_second_of_a_real_recording) {
    ASSERT_NO_FATAL_FAILURE(pauseOn(std::string(VELMORANT_TEST_DATA) + "/recordings/hero7.mp4"));
    ASSERT_NO_FATAL_FAILURE(seekEachWay());
}

} // namespace velmorant

#include "tests/gui/ProgramTest.h"

#include <QTest>
#include <cmath>
#include <qcustomplot.h>

namespace velmorant {

class ChartTest : public ProgramTest {
  protected:
    QCustomPlot& plot() { return dynamic_cast<QCustomPlot&>(panes().control.chart.widget()); }
    int points(int series) { return plot().graph(series)->data()->size(); }
    double value(int series, int point) { return plot().graph(series)->data()->at(point)->value; }
    void playPaused() {
        showOnMap({recording(2)});
        play(1);
        ASSERT_TRUE(waitUntil([&] { return driver().position() > 0.5; }));
        player().pause();
        ASSERT_TRUE(waitUntil([&] { return player().playState() == PlayState::Paused; }));
    }
};

TEST_F(ChartTest, shows_the_speeds_and_the_three_accelerations_of_the_track) {
    ASSERT_NO_FATAL_FAILURE(playPaused());
    const clsDot& track = *driver().track(1);
    ASSERT_EQ(points(1), track.count());
    for (int i = 0; i < track.count(); ++i)
        EXPECT_EQ(value(1, i), track.dot(i + 1).speed);
    driver().clickControl("gs");
    ASSERT_TRUE(waitUntil([&] { return points(3) == track.count(); }));
    for (int i = 0; i < track.count(); ++i) {
        EXPECT_EQ(value(1, i), track.dot(i + 1).gX);
        EXPECT_EQ(value(2, i), track.dot(i + 1).gY);
        EXPECT_EQ(value(3, i), track.dot(i + 1).gZ);
    }
}

TEST_F(ChartTest, click_seeks_and_moves_the_car) {
    ASSERT_NO_FATAL_FAILURE(playPaused());
    const QPoint place = panes().control.chart.placeOf(5, 10).toPoint();
    QTest::mouseClick(&plot(), Qt::LeftButton, {}, place);
    const double second = driver().track(1)->dot(6).second;
    waitForPosition(second - 0.05, second + 0.05);
    EXPECT_TRUE(waitUntil([&] { return driver().map().carIndex() == 6; }));
}

TEST_F(ChartTest, a_change_of_the_speed_unit_redraws_it) {
    ASSERT_NO_FATAL_FAILURE(playPaused());
    const double before = value(1, 3);
    ASSERT_GT(before, 0);
    SkinDialog& dialog = panes().setup;
    // The click on the button returns when the dialog is closed, so a timer works in the dialog.
    bool clicked = false;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (clicked || !dialog.isVisible())
            return;
        clicked = true;
        driver().click(dialog.skin(), "unit1002");
        driver().click(dialog.skin(), "cmdclose");
    });
    user.start(50);
    driver().click(panes().frame.skin(), "setup");
    ASSERT_TRUE(waitUntil([&] { return clicked && !dialog.isVisible(); }));
    const double factor = rooms().state.settings.speedFactor;
    EXPECT_NEAR(factor, 0.6214, 0.001);
    EXPECT_TRUE(waitUntil([&] { return std::abs(value(1, 3) - before * factor) < 1e-9; }))
        << value(1, 3);
}

} // namespace velmorant

#include "playback/CurveChart.h"

#include "tests/playback/PlayerFixture.h"

#include <gmock/gmock.h>

namespace velmorant {
namespace {

using fakes::ChartPoint;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CurveChartTest : public PlayerFixture {
  protected:
    CurveChartTest() {
        state.settings.setUnit(1001);
        open(PlayState::Playing, 0, 100);
        chart.Load();
        control.redraws = 0;
    }

    std::shared_ptr<clsDot> addTrack(int dots) {
        auto track = std::make_shared<clsDot>();
        for (int i = 0; i < dots; ++i)
            track->SetDot("", "00:0" + std::to_string(i % 10), static_cast<std::int16_t>(10 * i),
                          i * 2, "121.5", "25", 1, 90, 0.1 * i, -0.5, 1.5);
        state.currentTrack = track;
        return track;
    }

    /// What the pointer is told of a second in the G mode, with a strongest reading in it.
    std::string accelerationOf(std::int32_t point) {
        TrackDetails details;
        details.samples.resize(static_cast<std::size_t>(state.currentTrack->count()));
        details.samples[static_cast<std::size_t>(point)].strongestG = 2.5;
        state.currentTrack->setDetails(details);
        chart.setMode(ChartMode::Acceleration);
        std::string text = chart.PointText(point);
        chart.setMode(ChartMode::Speed);
        return text;
    }

    CurveChart chart{
        {.chart = control, .texts = texts, .player = player, .follow = follow, .state = state}};
};

TEST_F(CurveChartTest, begins_in_the_speed_mode) {
    EXPECT_EQ(chart.tag(), "SPEED");
    chart.setMode(ChartMode::Acceleration);
    EXPECT_EQ(chart.tag(), "GS");
}

TEST_F(CurveChartTest, the_speed_curve_has_one_point_per_dot_in_the_display_unit) {
    state.settings.setUnit(1002);
    addTrack(3);
    chart.Draw();
    EXPECT_THAT(control.series[1], ElementsAre(ChartPoint{0, 0, "00:00", 536870912},
                                               ChartPoint{1, 10 * 0.6213712, "00:01", 536870912},
                                               ChartPoint{2, 20 * 0.6213712, "00:02", 536870912}));
    EXPECT_THAT(control.series[0], IsEmpty());
    EXPECT_THAT(control.series[2], IsEmpty());
    EXPECT_THAT(control.series[3], IsEmpty());
    EXPECT_EQ(control.axes[ChartAxis::Left].minimum, 0.0);
    EXPECT_EQ(control.axes[ChartAxis::Left].maximum, 20 * 0.6213712 + 5.0);
    EXPECT_EQ(control.redraws, 1);
}

TEST_F(CurveChartTest, the_maximum_of_the_speed_axis_is_never_below_5) {
    addTrack(1);
    chart.Draw();
    EXPECT_EQ(control.axes[ChartAxis::Left].maximum, 5.0);
}

TEST_F(CurveChartTest, the_g_mode_draws_three_curves) {
    addTrack(2);
    chart.setMode(ChartMode::Acceleration);
    chart.Draw();
    EXPECT_THAT(control.series[1], ElementsAre(ChartPoint{0, 0, "00:00", automaticColour},
                                               ChartPoint{1, 0.1, "00:01", automaticColour}));
    EXPECT_THAT(control.series[2], ElementsAre(ChartPoint{0, -0.5, "00:00", automaticColour},
                                               ChartPoint{1, -0.5, "00:01", automaticColour}));
    EXPECT_THAT(control.series[3], ElementsAre(ChartPoint{0, 1.5, "00:00", automaticColour},
                                               ChartPoint{1, 1.5, "00:01", automaticColour}));
    EXPECT_EQ(control.axes[ChartAxis::Left].minimum, -0.5 - 0.2);
    EXPECT_EQ(control.axes[ChartAxis::Left].maximum, 1.5 + 0.2);
    EXPECT_EQ(control.legend[1], "G x");
    EXPECT_EQ(control.legend[2], "G y");
    EXPECT_EQ(control.legend[3], "G z");
}

TEST_F(CurveChartTest, in_the_g_mode_0_lies_within_the_axis) {
    state.currentTrack = std::make_shared<clsDot>();
    state.currentTrack->SetDot("", "", 0, 0, "0", "0", 0, 0, 2, 3, 4);
    chart.setMode(ChartMode::Acceleration);
    chart.Draw();
    EXPECT_LT(*control.axes[ChartAxis::Left].minimum, 0);
    EXPECT_GT(*control.axes[ChartAxis::Left].maximum, 0);
}

TEST_F(CurveChartTest, all_four_series_are_cleared_before_drawing) {
    addTrack(2);
    for (int i = 0; i < 4; ++i)
        control.addXY(i, 9, 9, "", 0);
    chart.Draw();
    EXPECT_THAT(control.series[0], IsEmpty());
    EXPECT_EQ(control.series[1].size(), 2u);
    EXPECT_THAT(control.series[2], IsEmpty());
    EXPECT_THAT(control.series[3], IsEmpty());
}

TEST_F(CurveChartTest, the_bottom_axis_spans_at_least_80_points) {
    const std::pair<int, double> rows[] = {{1, 79}, {80, 79}, {81, 80}, {500, 499}};
    for (const auto& [dots, maximum] : rows) {
        addTrack(dots);
        chart.Draw();
        EXPECT_EQ(control.axes[ChartAxis::Bottom].minimum, 0.0);
        EXPECT_EQ(control.axes[ChartAxis::Bottom].maximum, maximum) << dots;
    }
}

TEST_F(CurveChartTest, the_axes_are_named_with_their_units) {
    struct Title {
        std::int32_t unit;
        const char* left;
    };
    const Title titles[] = {
        {1001, "<13022> (km/h)"}, {1002, "<13022> (mph)"}, {1003, "<13022> (kn)"}};
    for (const Title& title : titles) {
        state.settings.setUnit(title.unit);
        addTrack(1);
        chart.Draw();
        EXPECT_EQ(control.titles[ChartAxis::Left], title.left);
        EXPECT_EQ(control.titles[ChartAxis::Bottom], "<13023> (s)");
    }
    chart.setMode(ChartMode::Acceleration);
    EXPECT_EQ(control.titles[ChartAxis::Left], "<13022> (kn)") << "the speed curve is still shown";
    chart.Draw();
    EXPECT_EQ(control.titles[ChartAxis::Left], "G");
    chart.setMode(ChartMode::Speed);
    chart.Draw();
    EXPECT_EQ(control.legend[1], "");
}

TEST_F(CurveChartTest, texts_once_shown_stay_when_the_language_changes) {
    addTrack(3);
    chart.Draw();
    const std::string strongest = accelerationOf(1);
    texts.languageBase = 20000;
    texts.texts["chart.strongest"] = "in the new language";
    state.settings.setUnit(1002);
    chart.Draw();
    EXPECT_EQ(control.titles[ChartAxis::Left], "<13022> (mph)");
    EXPECT_EQ(control.titles[ChartAxis::Bottom], "<13023> (s)");
    EXPECT_EQ(accelerationOf(1), strongest);
    // A window that is built anew gets the new texts.
    chart.Load();
    EXPECT_EQ(control.titles[ChartAxis::Left], "<23022> (mph)");
    EXPECT_EQ(control.titles[ChartAxis::Bottom], "<23023> (s)");
    EXPECT_NE(accelerationOf(1), strongest);
}

TEST_F(CurveChartTest, without_a_track_the_axes_are_those_of_a_track_that_stands) {
    EXPECT_EQ(control.axes[ChartAxis::Left].maximum, 5.0);
    addTrack(200);
    chart.Draw();
    state.currentTrack = nullptr;
    chart.Draw();
    EXPECT_EQ(control.axes[ChartAxis::Left].minimum, 0.0);
    EXPECT_EQ(control.axes[ChartAxis::Left].maximum, 5.0);
    EXPECT_EQ(control.axes[ChartAxis::Bottom].minimum, 0.0);
    EXPECT_EQ(control.axes[ChartAxis::Bottom].maximum, 79.0);
    chart.setMode(ChartMode::Acceleration);
    EXPECT_EQ(control.titles[ChartAxis::Left], "G");
    EXPECT_EQ(control.axes[ChartAxis::Left].minimum, -0.2);
    EXPECT_EQ(control.axes[ChartAxis::Left].maximum, 0.2);
}

TEST_F(CurveChartTest, without_a_track_the_chart_is_emptied) {
    control.addXY(1, 9, 9, "", 0);
    chart.Draw();
    EXPECT_THAT(control.series[1], IsEmpty());
    EXPECT_EQ(control.redraws, 1);
}

TEST_F(CurveChartTest, drawing_leaves_the_cursor_of_the_track) {
    const auto track = addTrack(9);
    track->lPlayLocal(4);
    chart.Draw();
    EXPECT_EQ(track->lPlayLocal(), 4);
    EXPECT_EQ(control.cursor, 3.0);
}

TEST_F(CurveChartTest, clearing_empties_the_series_and_takes_the_cursor_away) {
    addTrack(9)->lPlayLocal(4);
    chart.Draw();
    chart.Clear();
    EXPECT_EQ(control.axes[ChartAxis::Left].maximum, 5.0);
    for (const auto& series : control.series)
        EXPECT_THAT(series, IsEmpty());
    EXPECT_EQ(control.cursor, std::nullopt);
}

TEST_F(CurveChartTest, a_click_seeks_moves_the_car_once_and_marks_the_second) {
    const auto track = addTrack(9);
    chart.Draw();
    chart.Click(4);
    EXPECT_EQ(track->lPlayLocal(), 5);
    EXPECT_THAT(controls.seeks, ElementsAre(8.0)) << "the dot's second";
    EXPECT_EQ(player.tag(), "8");
    EXPECT_THAT(page.cars, ElementsAre("121.5|25|5|90"));
    EXPECT_THAT(control.series[3], ElementsAre(ChartPoint{4, 200, "", 255}));
    EXPECT_EQ(control.series[1].size(), 9u);
    chart.Click(6);
    EXPECT_THAT(control.series[3], ElementsAre(ChartPoint{6, 200, "", 255}));
}

TEST_F(CurveChartTest, in_the_g_mode_the_marker_replaces_the_g_z_curve) {
    addTrack(9);
    chart.setMode(ChartMode::Acceleration);
    chart.Draw();
    chart.Click(0);
    EXPECT_THAT(control.series[3], ElementsAre(ChartPoint{0, 200, "", 255}));
    EXPECT_EQ(control.series[2].size(), 9u);
}

TEST_F(CurveChartTest, a_click_that_hits_no_point_changes_nothing) {
    const auto track = addTrack(9);
    chart.Draw();
    track->lPlayLocal(3);
    for (const int point : {-1, 9, 1000})
        chart.Click(point);
    EXPECT_EQ(track->lPlayLocal(), 3);
    EXPECT_THAT(controls.seeks, IsEmpty());
    EXPECT_THAT(page.cars, IsEmpty());
    EXPECT_THAT(control.series[3], IsEmpty());
}

TEST_F(CurveChartTest, a_click_before_a_track_is_loaded_does_nothing) {
    chart.Click(0);
    EXPECT_THAT(controls.seeks, IsEmpty());
}

TEST_F(CurveChartTest, the_cursor_follows_the_current_dot) {
    const auto track = addTrack(9);
    track->lPlayLocal(7);
    follow.moveMarker();
    EXPECT_EQ(control.cursor, 6.0);
    EXPECT_EQ(control.redraws, 0) << "the cursor has a layer of its own";
}

TEST_F(CurveChartTest, the_pointer_shows_time_and_values) {
    const auto track = addTrack(3);
    TrackDetails details;
    details.samples.resize(2);
    details.samples[1].strongestG = 2.345;
    track->setDetails(details);
    EXPECT_EQ(chart.PointText(2), "Time:00:02\rSpeed:20.00 km/h");
    EXPECT_EQ(chart.PointText(-1), "");
    EXPECT_EQ(chart.PointText(3), "");
    chart.setMode(ChartMode::Acceleration);
    EXPECT_EQ(chart.PointText(1),
              "Time:00:01\rG x:0.10 G y:-0.50 G z:1.50\r<chart.strongest> 2.35");
    EXPECT_EQ(chart.PointText(0), "Time:00:00\rG x:0.00 G y:-0.50 G z:1.50");
    EXPECT_EQ(chart.PointText(2), "Time:00:02\rG x:0.20 G y:-0.50 G z:1.50");
}

} // namespace
} // namespace velmorant

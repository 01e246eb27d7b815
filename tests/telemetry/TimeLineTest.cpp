#include "telemetry/TimeLine.h"

#include <gtest/gtest.h>

namespace velmorant::telemetry {

namespace {

using Readings = std::vector<ClockedReading>;

Readings clocks(const std::vector<int>& seconds) {
    Readings readings;
    for (std::size_t i = 0; i < seconds.size(); ++i) {
        ClockedReading reading;
        reading.clock = seconds[i] * 1000;
        reading.repeats = false;
        readings.push_back(reading);
    }
    return readings;
}

Readings steady(int count) {
    std::vector<int> seconds;
    for (int i = 0; i < count; ++i) {
        seconds.push_back(1000 + i);
    }
    return clocks(seconds);
}

void expectLine(const Readings& readings, std::size_t seconds, const std::vector<double>& wanted) {
    EXPECT_EQ(timeLine(readings, seconds), wanted);
}

std::vector<double> counted(int first, int count) {
    std::vector<double> line;
    for (int i = 0; i < count; ++i) {
        line.push_back(first + i);
    }
    return line;
}

void inContainer(Readings& readings, double first, double writtenAfter) {
    for (std::size_t i = 0; i < readings.size(); ++i) {
        readings[i].container = first + static_cast<double>(i) + writtenAfter;
    }
}

} // namespace

TEST(TimeLine, counts_readings_whose_clock_goes_on) {
    EXPECT_TRUE(clockTellsAll(steady(60), 60));
    expectLine(steady(60), 60, counted(0, 60));
    expectLine(steady(60), 0, counted(0, 60));
}

TEST(TimeLine, puts_the_tail_of_the_recording_before_in_front_of_the_start) {
    expectLine(steady(61), 60, counted(-1, 61));
}

TEST(TimeLine, moves_nothing_for_a_reading_that_is_written_again) {
    Readings readings = steady(60);
    ClockedReading again = readings[20];
    again.repeats = true;
    readings.insert(readings.begin() + 21, again);
    const auto line = timeLine(readings, 60);
    EXPECT_EQ(line.front(), 0);
    EXPECT_EQ(line[20], 20);
    EXPECT_EQ(line[22], 21);
    EXPECT_EQ(line.back(), 59);
}

TEST(TimeLine, leaves_a_second_free_in_whose_place_another_is_written_again) {
    Readings readings = steady(60);
    for (std::size_t i = 3; i < 60; i += 4) {
        readings[i].clock = readings[i - 1].clock;
        readings[i].repeats = true;
    }
    EXPECT_TRUE(clockTellsAll(readings, 60));
    expectLine(readings, 60, counted(0, 60));
}

TEST(TimeLine, tells_readings_written_again_in_addition_from_those_in_a_place_of_another) {
    Readings readings = steady(60);
    readings[30].clock = readings[29].clock;
    readings[30].repeats = true;
    ClockedReading again = readings[10];
    again.repeats = true;
    readings.insert(readings.begin() + 11, again);
    const auto line = timeLine(readings, 60);
    EXPECT_EQ(line[0], 0);
    EXPECT_EQ(line[12], 11);
    EXPECT_EQ(line[31], 30);
    EXPECT_EQ(line[32], 31);
    EXPECT_EQ(line.back(), 59);
}

TEST(TimeLine, follows_the_clock_over_lost_readings) {
    Readings readings = steady(60);
    readings.erase(readings.begin() + 20, readings.begin() + 25);
    const auto line = timeLine(readings, 60);
    EXPECT_EQ(line[19], 19);
    EXPECT_EQ(line[20], 25);
    EXPECT_EQ(line.back(), 59);
}

TEST(TimeLine, takes_no_leap_of_the_clock_for_lost_readings) {
    for (const int leap : {2, 90, 3600, -1, -2, -90, -3600}) {
        SCOPED_TRACE(leap);
        Readings readings = steady(60);
        for (std::size_t i = 30; i < 60; ++i) {
            readings[i].clock += leap * 1000;
        }
        expectLine(readings, 60, counted(0, 60));
        inContainer(readings, 0, 0.3);
        expectLine(readings, 60, counted(0, 60));
    }
}

TEST(TimeLine, tells_a_leap_from_lost_readings_by_the_container) {
    Readings readings = steady(60);
    readings.erase(readings.begin() + 20, readings.begin() + 25);
    inContainer(readings, 0, 0);
    for (std::size_t i = 20; i < readings.size(); ++i) {
        readings[i].container += 5;
    }
    for (std::size_t i = 40; i < readings.size(); ++i) {
        readings[i].clock += 3000;
    }
    const auto line = timeLine(readings, 60);
    EXPECT_EQ(line[20], 25);
    EXPECT_EQ(line[40], 45);
    EXPECT_EQ(line.back(), 59);
}

TEST(TimeLine, gives_every_reading_of_a_stumbling_clock_its_second) {
    std::vector<int> seconds;
    for (int i = 0; i < 63; ++i) {
        constexpr int stumbling[] = {31, 33, 34, 35, 35, 37, 38};
        seconds.push_back(stumbling[i % 7] + i / 7 * 7);
    }
    Readings readings = clocks(seconds);
    expectLine(readings, 63, counted(0, 63));
    inContainer(readings, 0, 0.8);
    expectLine(readings, 63, counted(0, 63));
}

TEST(TimeLine, keeps_a_run_together_whose_blocks_come_late_now_and_then) {
    Readings readings = steady(60);
    readings.erase(readings.begin() + 30);
    for (std::size_t i = 0; i < readings.size(); ++i) {
        readings[i].container = static_cast<double>(i + (i < 30 ? 0 : 1)) + (i % 3 == 1 ? 0.6 : 0);
    }
    const auto line = timeLine(readings, 60);
    EXPECT_EQ(line[29], 29);
    EXPECT_EQ(line[30], 31);
    EXPECT_EQ(line[31], 32);
    EXPECT_EQ(line.back(), 59);
}

TEST(TimeLine, starts_where_the_container_has_the_first_of_several_lost) {
    Readings readings = steady(50);
    inContainer(readings, 10, 0);
    expectLine(readings, 60, counted(10, 50));
}

TEST(TimeLine, asks_no_container_that_has_all_readings_in_one_place) {
    Readings readings = steady(60);
    for (std::size_t i = 30; i < 60; ++i) {
        readings[i].clock += 2000;
    }
    for (ClockedReading& reading : readings) {
        reading.container = 60;
    }
    expectLine(readings, 60, counted(0, 60));
}

TEST(TimeLine, puts_readings_without_a_clock_between_the_others) {
    Readings readings = steady(60);
    for (std::size_t i = 0; i < 12; ++i) {
        readings[i].clock = noTime;
    }
    for (std::size_t i = 40; i < 50; ++i) {
        readings[i].clock = noTime;
    }
    expectLine(readings, 60, counted(0, 60));
    for (ClockedReading& reading : readings) {
        reading.clock = noTime;
    }
    expectLine(readings, 60, counted(0, 60));
}

TEST(TimeLine, spreads_readings_that_come_several_a_second) {
    Readings readings;
    for (int i = 0; i < 600; ++i) {
        readings.push_back({1000000 + i / 10 * 1000, unknown, false});
    }
    auto line = timeLine(readings, 60);
    EXPECT_EQ(line[0], 0);
    EXPECT_EQ(line[590], 59);
    for (int i = 0; i < 600; ++i) {
        readings[static_cast<std::size_t>(i)].clock = 1000000 + i * 100;
    }
    line = timeLine(readings, 60);
    EXPECT_NEAR(line[599], 59.9, 1e-9);
}

} // namespace velmorant::telemetry

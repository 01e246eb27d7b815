#include "telemetry/UtcTime.h"

#include <gtest/gtest.h>

namespace velmorant::telemetry {

TEST(UtcTime, counts_the_same_in_both_directions) {
    for (std::int64_t day = -200000; day < 200000; day += 13) {
        const CivilTime date = civilFromDays(day);
        EXPECT_EQ(daysFromCivil(date.year, date.month, date.day), day);
    }
}

TEST(UtcTime, knows_named_moments) {
    EXPECT_EQ(toMilliseconds({2024, 6, 12, 10, 30, 45.25}), 1718188245250);
    EXPECT_EQ(toMilliseconds({2000, 2, 29, 23, 59, 59}), 951868799000);
    EXPECT_EQ(civilFromMilliseconds(951868799000).day, 29);
    EXPECT_EQ(civilFromMilliseconds(-1).year, 1969);
}

TEST(UtcTime, refuses_what_no_calendar_has) {
    const CivilTime impossible[] = {{2024, 0, 12, 0, 0, 0},  {2024, 13, 1, 0, 0, 0},
                                    {2023, 2, 29, 0, 0, 0},  {2024, 4, 31, 0, 0, 0},
                                    {2024, 6, 0, 0, 0, 0},   {2024, 6, 12, 24, 0, 0},
                                    {2024, 6, 12, 0, 60, 0}, {2024, 6, 12, 0, 0, 61},
                                    {1979, 6, 12, 0, 0, 0},  {2100, 1, 1, 0, 0, 0}};
    for (const CivilTime& time : impossible) {
        EXPECT_FALSE(toMilliseconds(time)) << time.year << '-' << time.month << '-' << time.day;
    }
}

} // namespace velmorant::telemetry

#include "common/SpeedUnit.h"

#include "common/SettingsState.h"

#include <gtest/gtest.h>

namespace velmorant {
namespace {

TEST(SpeedUnit, a_code_stands_for_the_unit_of_its_last_digit) {
    ASSERT_NE(speedUnitOf(1001), nullptr);
    EXPECT_EQ(speedUnitOf(1001)->factor, 1.0);
    EXPECT_EQ(speedUnitOf(2)->factor, 0.6213712);
    EXPECT_EQ(speedUnitOf(1003)->factor, 0.5399568);
    for (const int code : {1000, 1004, 0, -1001, -9})
        EXPECT_EQ(speedUnitOf(code), nullptr) << code;
}

TEST(SpeedUnit, has_the_sign_that_stands_behind_a_number) {
    EXPECT_EQ(speedSign(1001), "km/h");
    EXPECT_EQ(speedSign(1002), "mph");
    EXPECT_EQ(speedSign(1003), "kn");
    EXPECT_EQ(speedSign(1004), "km/h");
}

TEST(SettingsState, a_code_without_a_unit_leaves_the_factor) {
    SettingsState settings;
    settings.setUnit(1004);
    EXPECT_EQ(settings.speedFactor, 0.0);
    settings.setUnit(1002);
    settings.setUnit(1005);
    EXPECT_EQ(settings.unitCode, 1005);
    EXPECT_EQ(settings.speedFactor, 0.6213712);
}

} // namespace
} // namespace velmorant

#include "common/textRules.h"
#include "common/SettingsState.h"
#include "common/StepError.h"

#include <gtest/gtest.h>

#include <limits>

namespace velmorant {
namespace {

TEST(textRules, integers_round_to_nearest_and_halves_to_even) {
    EXPECT_EQ(toInt16(0.5), 0);
    EXPECT_EQ(toInt16(1.5), 2);
    EXPECT_EQ(toInt16(2.5), 2);
    EXPECT_EQ(toInt16(-0.5), 0);
    EXPECT_EQ(toInt16(-1.5), -2);
    EXPECT_EQ(toInt32("1215000000.4"), 1215000000);
    EXPECT_EQ(toInt16(" 60 "), 60);
}

TEST(textRules, integers_outside_their_range_are_errors) {
    EXPECT_EQ(toInt16(32767.4), 32767);
    EXPECT_EQ(toInt16(-32768.5), -32768);
    EXPECT_THROW(toInt16(32767.6), StepError);
    EXPECT_THROW(toInt32(2147483648.0), StepError);
    EXPECT_THROW(toInt32("99999999999999999999"), StepError);
    EXPECT_THROW(toInt32(std::numeric_limits<double>::quiet_NaN()), StepError);
}

TEST(textRules, a_text_that_is_no_number_is_an_error) {
    for (const char* text :
         {"", " ", "abc", "12a", "1,5", "nan", "inf", "+-1", "--1", "0x10", "1 2"})
        EXPECT_THROW(toDouble(text), StepError) << text;
    EXPECT_DOUBLE_EQ(toDouble("+121.5"), 121.5);
    EXPECT_DOUBLE_EQ(toDouble("-.5"), -0.5);
    EXPECT_DOUBLE_EQ(toDouble("1e3"), 1000.0);
}

TEST(textRules, number_text_is_the_shortest_that_reads_back) {
    EXPECT_EQ(numberText(121.5), "121.5");
    EXPECT_EQ(numberText(60.0), "60");
    EXPECT_EQ(numberText(-0.0), "0");
    EXPECT_EQ(numberText(0.1), "0.1");
}

TEST(textRules, zero_padded_keeps_long_numbers_and_signs) {
    EXPECT_EQ(zeroPadded(7, 3), "007");
    EXPECT_EQ(zeroPadded(1000, 3), "1000");
    EXPECT_EQ(zeroPadded(-5, 2), "-05");
    EXPECT_EQ(zeroPadded(std::numeric_limits<std::int64_t>::min(), 2), "-9223372036854775808");
}

TEST(textRules, two_decimals_are_always_shown) {
    EXPECT_EQ(twoDecimals(60.0), "60.00");
    EXPECT_EQ(twoDecimals(37.282272), "37.28");
    EXPECT_EQ(twoDecimals(0.125), "0.13");
    EXPECT_EQ(twoDecimals(-0.001), "0.00");
}

TEST(textRules, digit_patterns_fill_from_the_right) {
    EXPECT_EQ(digitPattern("20121009", "####/##/##"), "2012/10/09");
    EXPECT_EQ(digitPattern("103045", "00:00:00"), "10:30:45");
    EXPECT_EQ(digitPattern("10304", "00:00:00"), "01:03:04");
    EXPECT_EQ(digitPattern("0", "00:00:00"), "00:00:00");
    EXPECT_EQ(digitPattern("1234567", "00:00:00"), "123:45:67");
    EXPECT_EQ(digitPattern("1009", "####/##/##"), "/10/09");
}

TEST(textRules, a_text_that_is_no_number_passes_digit_patterns_unchanged) {
    EXPECT_EQ(digitPattern("holiday", "####/##/##"), "holiday");
    EXPECT_EQ(digitPattern("", "00:00:00"), "");
    EXPECT_EQ(digitPattern("103045_", "00:00:00"), "103045_");
}

TEST(textRules, fixed_width_pads_and_cuts_characters_not_bytes) {
    EXPECT_EQ(fixedWidth("ab", 4), "ab  ");
    EXPECT_EQ(fixedWidth("abcdef", 4), "abcd");
    EXPECT_EQ(fixedWidth("台北", 4), "台北  ");
    EXPECT_EQ(fixedWidth("台北市", 2), "台北");
    EXPECT_EQ(withoutLastCharacters("台北.MP4", 4), "台北");
    EXPECT_EQ(withoutLastCharacters("MP4", 4), "");
    EXPECT_EQ(characterCount("\xff\xe5\x8f"), 3u);
}

TEST(textRules, comparison_disregards_ascii_case_only) {
    EXPECT_TRUE(equalsIgnoringCase("CmdPlay", "CMDPLAY"));
    EXPECT_FALSE(equalsIgnoringCase("CMDPLAY", "CMDPLAY "));
    EXPECT_EQ(upperCase("lang1001"), "LANG1001");
    EXPECT_EQ(lowerCase("OPEN"), "open");
}

TEST(textRules, split_keeps_empty_parts) {
    EXPECT_EQ(split("a|b||", '|'), (std::vector<std::string>{"a", "b", "", ""}));
    EXPECT_EQ(split("", '|'), (std::vector<std::string>{""}));
}

TEST(SettingsState, unit_index_four_leaves_the_speed_factor) {
    SettingsState settings;
    settings.setUnit(1004);
    EXPECT_EQ(settings.speedFactor, 0.0);
    settings.setUnit(1002);
    EXPECT_EQ(settings.speedFactor, 0.6213712);
    settings.setUnit(1003);
    EXPECT_EQ(settings.speedFactor, 0.5399568);
}

TEST(SettingsState, language_code_gives_index_and_base) {
    SettingsState settings;
    settings.setLanguage(1002);
    EXPECT_EQ(settings.languageIndex, 2);
    EXPECT_EQ(settings.languageBase, 20000);
}

} // namespace
} // namespace velmorant

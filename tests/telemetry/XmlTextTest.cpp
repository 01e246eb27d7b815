#include "telemetry/XmlText.h"

#include <gtest/gtest.h>

namespace velmorant::telemetry {

namespace {

std::string escaped(std::string_view text) {
    std::string out;
    appendXmlText(out, text);
    return out;
}

std::string fixedText(double value, int decimals) {
    std::string out;
    appendFixed(out, value, decimals);
    return out;
}

} // namespace

TEST(XmlText, escapes_markup_and_white_space_that_attributes_would_lose) {
    EXPECT_EQ(escaped("a&b<c>\"'\t\n\r"), "a&amp;b&lt;c&gt;&quot;&apos;&#9;&#10;&#13;");
    EXPECT_EQ(escaped("\xe5\x8f\xb0\xe5\x8c\x97"), "\xe5\x8f\xb0\xe5\x8c\x97");
}

TEST(XmlText, replaces_what_xml_cannot_carry) {
    for (const std::string_view bad : {"\x01", "\x1b", "\xff", "\xc0\xaf", "\xed\xa0\x80",
                                       "\xef\xbf\xbf", "\xe5\x8f", "\xf5\x80\x80\x80"}) {
        EXPECT_FALSE(isXmlText(bad));
        EXPECT_TRUE(isXmlText(escaped(bad)));
        EXPECT_TRUE(isXmlText(percentEncoded(bad)));
    }
}

TEST(XmlText, percent_encoding_can_be_taken_back) {
    EXPECT_EQ(percentEncoded("100%\x01\xff/\xe5\x8f\xb0"), "100%25%01%FF/\xe5\x8f\xb0");
}

TEST(XmlText, writes_numbers_with_a_fixed_count_of_decimals) {
    EXPECT_EQ(fixedText(121.51234567, 7), "121.5123457");
    EXPECT_EQ(fixedText(-0.1, 7), "-0.1000000");
    EXPECT_EQ(fixedText(0.0000049, 5), "0.00000");
    EXPECT_EQ(fixedText(-0.004, 2), "0.00");
    EXPECT_EQ(fixedText(59.999, 2), "60.00");
    EXPECT_EQ(fixedText(7, 0), "7");
    EXPECT_EQ(fixedText(1e30, 2), "0.00");
    EXPECT_EQ(fixedText(std::numeric_limits<double>::quiet_NaN(), 2), "0.00");
}

} // namespace velmorant::telemetry

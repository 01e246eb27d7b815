#include "common/iniGrammar.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

TEST(IniGrammar, lines_keep_their_endings) {
    std::string_view rest = "a\r\n\nb\rc\n\r";
    const std::vector<std::pair<std::string, std::string>> lines = {
        {"a", "\r\n"}, {"", "\n"}, {"b\rc", "\n"}, {"", "\r"}};
    for (const auto& [content, ending] : lines) {
        ASSERT_FALSE(rest.empty());
        const IniLine line = takeIniLine(rest);
        EXPECT_EQ(line.content, content);
        EXPECT_EQ(line.ending, ending);
    }
    EXPECT_TRUE(rest.empty());
    rest = "last";
    EXPECT_EQ(takeIniLine(rest).content, "last");
    EXPECT_TRUE(rest.empty());
}

TEST(IniGrammar, a_section_stands_between_brackets) {
    EXPECT_EQ(iniSection(" \t[ NO0 ] ; first"), "NO0");
    EXPECT_EQ(iniSection("[]"), "");
    for (const char* line : {"", "NO0", "[NO0", "x[NO0]", "; [NO0]"})
        EXPECT_EQ(iniSection(line), std::nullopt) << line;
}

TEST(IniGrammar, a_key_ends_at_the_first_equals_sign) {
    struct Case {
        const char* line;
        const char* name;
        const char* value;
    };
    for (const Case& each :
         {Case{" a\t= b ", "a", " b "}, Case{"a=b=c", "a", "b=c"}, Case{"a=\" b \"", "a", " b "},
          Case{"a='b'", "a", "b"}, Case{"a='b\"", "a", "'b\""}, Case{"a=\"", "a", "\""},
          Case{"=b", "", "b"}, Case{"a=", "a", ""}}) {
        const auto key = iniKey(each.line);
        ASSERT_TRUE(key.has_value()) << each.line;
        EXPECT_EQ(key->name, each.name) << each.line;
        EXPECT_EQ(key->value, each.value) << each.line;
    }
    for (const char* line : {"", "a", ";a=b", " ; a=b"})
        EXPECT_FALSE(iniKey(line).has_value()) << line;
}

} // namespace
} // namespace velmorant

#include "common/Language.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace velmorant {
namespace {

TEST(Language, the_table_holds_the_codes_that_configurations_carry) {
    EXPECT_EQ(languageOf(1).code(), 1001);
    EXPECT_EQ(languageOf(1).tag, "en");
    EXPECT_EQ(languageOf(2).code(), 1002);
    EXPECT_EQ(languageOf(2).tag, "zh-TW");
}

TEST(Language, every_index_is_one_digit_taken_once_and_none_is_the_one_not_chosen) {
    std::set<int> taken;
    for (const Language& language : languages) {
        EXPECT_TRUE(taken.insert(language.index).second) << language.tag;
        EXPECT_GE(language.index, 1);
        EXPECT_LE(language.index, 9);
        EXPECT_NE(language.code(), 1003);
    }
}

TEST(Language, an_index_without_a_language_gets_the_first) {
    for (const int index : {3, 0, -1, 11})
        EXPECT_EQ(languageOf(index).tag, "en") << index;
}

TEST(Language, a_locale_gets_its_language_and_english_otherwise) {
    for (const std::string locale : {"zh_tw.utf-8", "zh", "zh_cn"})
        EXPECT_EQ(languageOfLocale(locale).tag, "zh-TW") << locale;
    for (const std::string locale : {"en_gb", "c", "", "de_de.utf-8", "z"})
        EXPECT_EQ(languageOfLocale(locale).tag, "en") << locale;
}

TEST(Language, columns_follow_the_table) {
    for (std::size_t i = 0; i < languages.size(); ++i)
        EXPECT_EQ(columnOf(languages[i]), i);
}

} // namespace
} // namespace velmorant

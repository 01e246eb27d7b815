#include "app/LanguageTable.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "resources/strings/StringTable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

struct Expected {
    int id;
    const char* text;
};

SettingsState inLanguage(std::int32_t code) {
    SettingsState settings;
    settings.setLanguage(code);
    return settings;
}

TEST(LanguageTable, adds_the_language_base_to_an_offset) {
    SettingsState settings = inLanguage(1001);
    const LanguageTable table(settings);
    EXPECT_EQ(table.byOffset(3024), "Really want to exit the system?");
    settings.setLanguage(1002);
    EXPECT_EQ(table.byOffset(3024), "是否真的要退出系統？");
    EXPECT_EQ(table.byOffset(3024), table.byId(23024));
}

TEST(LanguageTable, keeps_every_text_exactly_as_it_is_shown) {
    const std::vector<Expected> rows = {
        {1000, "2"},
        {1001, "English"},
        {1002, "繁體中文"},
        {11003, "Nautical miles/hour"},
        {11100, "Velmorant DVR Tools"},
        {21100, "Velmorant DVR Tools"},
        {13005, "MP4 file|*.MP4"},
        {23005, "媒體文件|*.MP4"},
        {13011, "The system warning information "},
        {13034, "Detection of abnormal playback, it may be virtual memory insufficient l!"},
        {13042, "System is upgrading the main program, please be patient.\nWhether upgrade the "
                "system automaticly?"},
        {23042, "系統要升級主程序，請耐心等待。\n是否運行系統自動升級？"},
        {23022, "\xe7\xa1\x89\xee\x82\x94"},
        {23023, "\xee\x86\xa0\xe4\xb8\x81"},
        {14121, "Normal"},
        {14122, "Lock"},
        {14151, "  Normal"},
        {14152, "  Lock"},
        {24121, "   一般"},
        {24122, "   保護"},
        {24151, "     一般"},
        {24152, "     保護"},
        {12021, "UTC+08(Beijing,Taipei)|8:00"},
        {22016, "UTC+03((巴格達)|3:00"},
        {22025, "UTC+12(斐濟,諾魯)|12:00"},
    };
    const SettingsState settings;
    const LanguageTable table(settings);
    for (const Expected& row : rows)
        EXPECT_EQ(table.byId(row.id), row.text) << row.id;
}

TEST(LanguageTable, counts_the_rows_that_follow_a_count_row) {
    for (const int base : {10000, 20000}) {
        for (const int first : {1000, 2000}) {
            const int count = toInt32(*stringTableText(base + first));
            for (int i = 1; i <= count; ++i)
                EXPECT_TRUE(stringTableText(base + first + i)) << base + first + i;
            EXPECT_FALSE(stringTableText(base + first + count + 1));
        }
    }
}

TEST(LanguageTable, has_the_same_offsets_in_both_languages) {
    int rows = 0;
    for (int offset = 0; offset < 10000; ++offset) {
        const bool english = stringTableText(10000 + offset).has_value();
        EXPECT_EQ(english, stringTableText(20000 + offset).has_value()) << offset;
        rows += english ? 1 : 0;
    }
    EXPECT_EQ(rows, 75);
}

TEST(LanguageTable, has_the_zone_offsets_in_order_in_both_languages) {
    const std::vector<std::string> offsets = {
        "-12:00", "-11:00", "-10:00", "-9:00", "-8:00", "-7:00", "-6:00", "-5:00", "-4:00",
        "-3:00",  "-2:00",  "-1:00",  "0:00",  "1:00",  "2:00",  "3:00",  "4:00",  "5:00",
        "6:00",   "7:00",   "8:00",   "9:00",  "10:00", "11:00", "12:00"};
    for (const int base : {12000, 22000}) {
        for (std::size_t i = 0; i < offsets.size(); ++i) {
            const std::string text(*stringTableText(base + 1 + static_cast<int>(i)));
            EXPECT_EQ(text.substr(text.find('|') + 1), offsets[i]) << text;
        }
    }
}

TEST(LanguageTable, has_no_row_in_a_third_language) {
    const SettingsState settings = inLanguage(1003);
    const LanguageTable table(settings);
    EXPECT_THROW(table.byOffset(3012), StepError);
    EXPECT_THROW(table.byId(24153), StepError);
    EXPECT_THROW(table.byId(0), StepError);
    EXPECT_THROW(table.byId(-1), StepError);
}

TEST(LanguageTable, refuses_an_offset_that_would_overflow_the_id) {
    SettingsState settings = inLanguage(1001);
    const LanguageTable table(settings);
    EXPECT_THROW(table.byOffset(2147483647), StepError);
}

TEST(LanguageTable, takes_another_server_address_from_the_operator) {
    const SettingsState settings;
    EXPECT_TRUE(LanguageTable(settings).byId(1).ends_with('/'));
    EXPECT_EQ(LanguageTable(settings, "http://example.test:8080/dvr/").byId(1),
              "http://example.test:8080/dvr/");
    EXPECT_EQ(LanguageTable(settings, "http://example.test").byId(1), "http://example.test/");
}

TEST(LanguageTable, has_additions_in_both_languages_and_english_otherwise) {
    SettingsState settings = inLanguage(1002);
    const LanguageTable table(settings);
    EXPECT_EQ(table.addition("about.version"), "版本");
    settings.setLanguage(1001);
    EXPECT_EQ(table.addition("about.version"), "Version");
    settings.setLanguage(1003);
    EXPECT_EQ(table.addition("about.version"), "Version");
    EXPECT_THROW(table.addition("no such name"), StepError);
}

} // namespace
} // namespace velmorant

#include "app/ProfileText.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace velmorant {
namespace {

TEST(ProfileText, reads_values_by_the_grammar) {
    struct Case {
        const char* text;
        const char* section;
        const char* key;
        std::optional<std::string> value;
    };
    const std::vector<Case> cases = {
        {"[config]\nmainv=1001\n", "config", "mainv", "1001"},
        {"[config]\nmainv=1001", "config", "mainv", "1001"},
        {"[config]\r\nmainv=1001\r\n", "config", "mainv", "1001"},
        {"\xef\xbb\xbf[config]\nmainv=1001\n", "config", "mainv", "1001"},
        {"[CONFIG]\nMainV=1001\n", "config", "mainv", "1001"},
        {"  [ config ] text behind\n mainv =1001\n", "config", "mainv", "1001"},
        {"[config]\nmainv= 1001 \n", "config", "mainv", " 1001 "},
        {"[config]\nmainv=\n", "config", "mainv", ""},
        {"[config]\nmainv=a=b\n", "config", "mainv", "a=b"},
        {"[config]\nmainv=1\nmainv=2\n", "config", "mainv", "1"},
        {"[config]\nmainv=1\n[config]\nmainv=2\nArea=3\n", "config", "mainv", "1"},
        {"[config]\nmainv=1\n[config]\nmainv=2\nArea=3\n", "config", "Area", std::nullopt},
        {"[config]\n;mainv=1\n ; mainv=2\n", "config", "mainv", std::nullopt},
        {"[config]\nmainv\n", "config", "mainv", std::nullopt},
        {"[other]\nmainv=1\n[config]\n", "config", "mainv", std::nullopt},
        {"mainv=1\n", "config", "mainv", std::nullopt},
        {"[config]\nmainv=\"1001\"\n", "config", "mainv", "1001"},
        {"[config]\nmainv='1001'\n", "config", "mainv", "1001"},
        {"[config]\nmainv=\"1001'\n", "config", "mainv", "\"1001'"},
        {"[config]\nmainv=\"\n", "config", "mainv", "\""},
        {"[config\nmainv=1\n", "config", "mainv", std::nullopt},
        {"", "config", "mainv", std::nullopt},
    };
    for (const Case& each : cases)
        EXPECT_EQ(ProfileText(each.text).value(each.section, each.key), each.value) << each.text;
}

TEST(ProfileText, keeps_other_lines_comments_endings_and_order) {
    const std::string before =
        "; first\r\n\r\n[config]\r\n; of mainv\r\nmainv =1003\r\nArea=2021\r\n"
        "\r\n[NO1]\r\nname=a\r\n";
    ProfileText profile(before);
    EXPECT_EQ(profile.text(), before);
    EXPECT_TRUE(profile.setValue("config", "MAINV", "1001"));
    EXPECT_TRUE(profile.setValue("config", "Unit", "1002"));
    EXPECT_TRUE(profile.setValue("NO2", "name", "b"));
    EXPECT_EQ(profile.text(),
              "; first\r\n\r\n[config]\r\n; of mainv\r\nmainv =1001\r\nArea=2021\r\n"
              "Unit=1002\r\n\r\n[NO1]\r\nname=a\r\n[NO2]\r\nname=b\r\n");
}

TEST(ProfileText, ends_a_last_line_without_an_end_before_adding_one) {
    ProfileText profile("[config]\nmainv=1001");
    profile.setValue("config", "Unit", "1002");
    EXPECT_EQ(profile.text(), "[config]\nmainv=1001\nUnit=1002\n");
}

TEST(ProfileText, completes_a_last_line_that_ends_in_a_carriage_return) {
    ProfileText profile("[config]\nmainv=1001\r");
    EXPECT_EQ(profile.value("config", "mainv"), "1001");
    profile.setValue("config", "Unit", "1002");
    EXPECT_EQ(profile.text(), "[config]\nmainv=1001\r\nUnit=1002\n");
}

TEST(ProfileText, changes_the_first_of_equal_keys) {
    ProfileText profile("[config]\nmainv=1\nmainv=2\n");
    profile.setValue("config", "mainv", "3");
    EXPECT_EQ(profile.text(), "[config]\nmainv=3\nmainv=2\n");
}

TEST(ProfileText, keeps_the_section_after_its_last_key_was_removed) {
    ProfileText profile("[config]\nmainv=1\n[NO1]\n");
    profile.removeKey("config", "mainv");
    profile.removeKey("config", "Area");
    EXPECT_EQ(profile.text(), "[config]\n[NO1]\n");
}

TEST(ProfileText, removes_the_first_section_of_a_name_alone) {
    ProfileText profile("[a]\nx=1\n[b]\nx=2\n[a]\nx=3\n");
    profile.removeSection("A");
    EXPECT_EQ(profile.text(), "[b]\nx=2\n[a]\nx=3\n");
    profile.removeSection("c");
    EXPECT_EQ(profile.text(), "[b]\nx=2\n[a]\nx=3\n");
}

TEST(ProfileText, lists_keys_in_order) {
    const ProfileText profile("[a]\nx=1\n;c=2\nno key\ny = 2\n=3\n[b]\nz=1\n");
    EXPECT_EQ(profile.keys("a"), (std::vector<std::string>{"x", "y"}));
    EXPECT_TRUE(profile.keys("c").empty());
}

TEST(ProfileText, reads_back_what_it_has_written) {
    for (const std::string value : {"", "plain", " blanks ", "a=b", "[x]", ";c", "\"quoted\"", "''",
                                    "\"", "繁體中文", "x;y", "\t"}) {
        ProfileText profile("");
        ASSERT_TRUE(profile.setValue("config", "key", value)) << value;
        EXPECT_EQ(ProfileText(profile.text()).value("config", "key"), value);
    }
}

TEST(ProfileText, refuses_what_the_grammar_cannot_hold) {
    struct Case {
        std::string section;
        std::string key;
        std::string value;
    };
    const std::vector<Case> cases = {{"config", "key", "two\nlines"},
                                     {"config", "key", "carriage\rreturn"},
                                     {"config", "key", std::string("nul\0", 4)},
                                     {"config", "a=b", "value"},
                                     {"config", "", "value"},
                                     {"config", ";key", "value"},
                                     {"config", "[key", "value"},
                                     {"con]fig", "key", "value"},
                                     {"con\nfig", "key", "value"}};
    for (const Case& each : cases) {
        ProfileText profile("[a]\n");
        EXPECT_FALSE(profile.setValue(each.section, each.key, each.value)) << each.key;
        EXPECT_EQ(profile.text(), "[a]\n");
    }
}

TEST(ProfileText, tells_ini_files_from_others) {
    for (const char* text : {"", "\n\n", "; only a comment", "# a comment\n[config]\n",
                             "[config]\ntext\n", "\xef\xbb\xbf[config]\n"})
        EXPECT_TRUE(ProfileText(text).isProfile()) << text;
    for (const std::string& text :
         {std::string("\0\0\0\x18"
                      "ftypmp42",
                      12),
          std::string("[config]\nmainv=1\0", 17), std::string("<!DOCTYPE html>\n<html>\n"),
          std::string("some text\n[config]\n"), std::string("key=value\n")})
        EXPECT_FALSE(ProfileText(text).isProfile()) << text;
}

} // namespace
} // namespace velmorant

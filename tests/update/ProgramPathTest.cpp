#include "update/ProgramPath.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

namespace velmorant {
namespace {

bool taken(const std::string& local) {
    return std::holds_alternative<ProgramPath>(ProgramPath::fromCatalogue(local));
}

TEST(ProgramPath, takes_names_of_program_files_with_either_slash) {
    const auto path = ProgramPath::fromCatalogue("skin\\main/1.mp4");
    ASSERT_TRUE(std::holds_alternative<ProgramPath>(path));
    EXPECT_EQ(std::get<ProgramPath>(path).text(), "skin/main/1.mp4");
    for (const char* local : {"a",
                              "Velmorant DVR Tools",
                              "movsupport/Parse",
                              "skin/load/load1.mp4",
                              "system/bk.MP4",
                              "map/data/land.json",
                              "map/icon.png",
                              "README.md",
                              "doc/picture.png",
                              "velmupdate",
                              "config2.mp4x",
                              "console",
                              "com",
                              "com10.txt",
                              "coma",
                              "com/1",
                              "lpt",
                              "xcom1",
                              "nulls.txt",
                              "sub/config.txt",
                              "\xe8\xaa\xaa\xe6\x98\x8e.txt",
                              "a..b",
                              "updates/x",
                              "x~",
                              "a..b/c"})
        EXPECT_TRUE(taken(local)) << local;
}

TEST(ProgramPath, refuses_names_that_lead_out_of_the_program_folder) {
    for (const char* local : {"",
                              ".",
                              "..",
                              "/",
                              "\\",
                              "/etc/passwd",
                              "\\windows\\x",
                              "../x",
                              "..\\x",
                              "a/../x",
                              "a\\..\\..\\x",
                              "a/..",
                              "a//b",
                              "a/./b",
                              "a/",
                              "C:x",
                              "C:\\x",
                              "c:/x",
                              "\\\\host\\share",
                              "//host/share",
                              "file:///x",
                              "x:stream",
                              "a/b:c",
                              "a /b",
                              " a",
                              "a.",
                              "a./b",
                              "../",
                              "..\\..\\..\\..\\etc\\passwd",
                              "skin/../../x"})
        EXPECT_FALSE(taken(local)) << local;
}

TEST(ProgramPath, refuses_device_names_with_any_ending_and_in_any_place) {
    for (const char* local : {"CON", "con", "Con.txt", "PRN", "aux.mp4", "NUL", "nul.tar.gz",
                              "COM1", "com9.dll", "LPT1", "lpt0", "COM\u00b9", "a/NUL/b",
                              "sub\\con.txt", "CONIN$", "conout$", "CLOCK$", "nul .txt"})
        EXPECT_FALSE(taken(local)) << local;
}

TEST(ProgramPath, refuses_what_is_no_text) {
    EXPECT_FALSE(taken(std::string("a\0b", 3)));
    for (const char* local :
         {"a\nb", "a\tb", "\x1b[0m", "\x7f", "\xff", "\xc0\xae\xc0\xae/x", "\xe0\x80\xaf",
          "\xed\xa0\x80", "\xf5\x80\x80\x80", "\xe7\xb9", "a?", "a*", "a|b", "<a>", "\"a\""})
        EXPECT_FALSE(taken(local)) << local;
    EXPECT_FALSE(taken(std::string(300, 'a')));
    std::string deep;
    for (int i = 0; i < 40; ++i)
        deep += "d/";
    EXPECT_FALSE(taken(deep + "x"));
}

TEST(ProgramPath, takes_the_first_and_last_sign_of_every_length_of_utf_8) {
    for (const char* local :
         {"\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80", "\xed\x9f\xbf", "\xee\x80\x80", "\xef\xbf\xbf",
          "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf"})
        EXPECT_TRUE(taken(local)) << local;
    for (const char* local :
         {"\x80", "\xbf", "\xc1\xbf", "\xc2", "\xc2\x41", "\xe0\x9f\xbf", "\xe0\xa0",
          "\xed\xbf\xbf", "\xf0\x8f\xbf\xbf", "\xf0\x90\x80", "\xf4\x90\x80\x80", "a\xc2\xc2"})
        EXPECT_FALSE(taken(local)) << local;
}

TEST(ProgramPath, takes_200_bytes_in_a_component_and_16_components_and_no_more) {
    EXPECT_TRUE(taken(std::string(200, 'a')));
    EXPECT_FALSE(taken(std::string(201, 'a')));
    std::string deep;
    for (int i = 0; i < 15; ++i)
        deep += "d/";
    EXPECT_TRUE(taken(deep + "x"));
    EXPECT_FALSE(taken(deep + "d/x"));
}

TEST(ProgramPath, refuses_control_signs_up_to_the_blank_alone) {
    EXPECT_FALSE(taken("a\x1f"));
    EXPECT_FALSE(taken("a\x01z"));
    EXPECT_TRUE(taken("a z"));
    EXPECT_TRUE(taken("a\x7e"));
}

TEST(ProgramPath, refuses_what_belongs_to_the_user_or_to_the_update) {
    for (const char* local : {"config.mp4",
                              "CONFIG.MP4",
                              "flow.xml",
                              "Flow.XML",
                              "update/remote.mp4",
                              "UPDATE\\x",
                              "update",
                              "system32/qvconfig.mp4",
                              "REC0001.MP4",
                              "2026/REC0001P.mp4",
                              "picture.bmp",
                              "Pictures/still.BMP",
                              "tracks/drive.gpx",
                              "list.xml",
                              "drive.kml",
                              ".hidden",
                              "a/.b/c",
                              "skin/.x",
                              "a.txt.part~",
                              "Velmorant DVR Tools.old",
                              "Velmorant DVR Tools.next",
                              "skin/x.OLD",
                              ".mp4",
                              "skin.mp4"})
        EXPECT_FALSE(taken(local)) << local;
}

TEST(ProgramPath, tells_why_it_refuses) {
    const auto path = ProgramPath::fromCatalogue("../x");
    ASSERT_TRUE(std::holds_alternative<PathRefusal>(path));
    EXPECT_EQ(std::get<PathRefusal>(path).reason,
              "\"../x\" is no file of the program: it has a component \"..\"");
}

TEST(isRemotePath, takes_places_below_the_server_base_alone) {
    for (const char* remote : {"a", "update/files/a%20b.txt", "get?file=a&v=2"})
        EXPECT_TRUE(isRemotePath(remote)) << remote;
    for (const char* remote : {"", "../a", "a/..\\b", "a/%2e%2E/b", "a#b", "a\r\nHost: x", "\xff"})
        EXPECT_FALSE(isRemotePath(remote)) << remote;
}

} // namespace
} // namespace velmorant

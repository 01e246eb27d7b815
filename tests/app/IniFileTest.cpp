#include "app/IniFile.h"

#include "app/PrivateProfile.h"
#include "tests/builders/TemporaryFolder.h"
#include "tests/fakes/FakeProfileFunctions.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace velmorant {
namespace {

TEST(IniFile, reads_and_writes_the_current_section) {
    fakes::FakeProfileFunctions profile;
    IniFile file(profile);
    file.open("/a.mp4", "config");
    EXPECT_EQ(file.writeKey("mainv", "1001"), IniFileWrite::Kept);
    EXPECT_EQ(file.readKey("mainv"), "1001");
    file.setSection("NO1");
    EXPECT_EQ(file.readKey("mainv"), "");
    file.writeKey("mainv", "7");
    file.setSection("config");
    EXPECT_EQ(file.readKey("mainv"), "1001");
}

TEST(IniFile, keeps_blanks_around_a_value) {
    fakes::FakeProfileFunctions profile;
    IniFile file(profile);
    file.open("/a.mp4", "config");
    file.writeKey("name", "  two words ");
    EXPECT_EQ(file.readKey("name"), "  two words ");
}

TEST(IniFile, trims_a_buffer_without_a_nul) {
    fakes::FakeProfileFunctions profile;
    profile.withTerminator = false;
    IniFile file(profile);
    file.open("/a.mp4", "config");
    file.writeKey("name", "  two words ");
    EXPECT_EQ(file.readKey("name"), "two words");
    file.writeKey("name", "   ");
    EXPECT_EQ(file.readKey("name"), "");
}

TEST(IniFile, cuts_a_value_at_254_characters) {
    fakes::FakeProfileFunctions profile;
    IniFile file(profile);
    file.open("/a.mp4", "config");
    file.writeKey("long", std::string(255, 'x'));
    EXPECT_EQ(file.readKey("long"), std::string(254, 'x'));
}

TEST(IniFile, lists_no_keys_after_the_section_was_deleted) {
    const builders::TemporaryFolder folder;
    PrivateProfile profile;
    IniFile file(profile);
    file.open(folder.file("a.mp4"), "config");
    file.writeKey("mainv", "1001");
    file.writeKey("Area", "2021");
    EXPECT_EQ(file.listKeys(), (std::vector<std::string>{"mainv", "Area"}));
    EXPECT_EQ(file.deleteKey("mainv"), IniFileWrite::Kept);
    EXPECT_EQ(file.listKeys(), std::vector<std::string>{"Area"});
    EXPECT_EQ(file.deleteSection(), IniFileWrite::Kept);
    EXPECT_TRUE(file.listKeys().empty());
}

TEST(IniFile, stamps_the_version_in_the_named_section_and_stays_in_its_own) {
    const builders::TemporaryFolder folder;
    PrivateProfile profile;
    IniFile file(profile);
    file.open(folder.file("a.mp4"), "config");
    file.stampVersion("NO1");
    file.writeKey("mainv", "1001");
    EXPECT_EQ(folder.read("a.mp4"), "[NO1]\nversion=1.0\n[config]\nmainv=1001\n");
}

TEST(IniFile, reads_nothing_from_a_missing_file_and_creates_nothing) {
    const builders::TemporaryFolder folder;
    PrivateProfile profile;
    IniFile file(profile);
    file.open(folder.file("none.mp4"), "config");
    EXPECT_EQ(file.readKey("mainv"), "");
    EXPECT_TRUE(file.listKeys().empty());
    EXPECT_FALSE(std::filesystem::exists(folder.file("none.mp4")));
}

TEST(IniFile, tells_a_write_that_was_not_kept_and_goes_on) {
    fakes::FakeProfileFunctions profile;
    profile.refused.insert("/a.mp4");
    IniFile file(profile);
    file.open("/a.mp4", "config");
    EXPECT_EQ(file.writeKey("mainv", "1001"), IniFileWrite::NotKept);
    EXPECT_EQ(file.readKey("mainv"), "");
}

} // namespace
} // namespace velmorant

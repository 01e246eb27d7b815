#include "app/PrivateProfile.h"

#include "tests/builders/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace velmorant {
namespace {

using builders::TemporaryFolder;

std::string withNul(std::string text) {
    return text + '\0';
}

TEST(PrivateProfile, reads_a_value_with_its_terminating_nul) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.mp4", "[config]\nmainv= 1001 \n");
    const PrivateProfile profile;
    EXPECT_EQ(profile.read(file, "config", "mainv", "", 255), withNul(" 1001 "));
    EXPECT_EQ(profile.read(file, "config", "Area", "2021", 255), withNul("2021"));
}

TEST(PrivateProfile, cuts_a_value_to_the_buffer) {
    const TemporaryFolder folder;
    const std::string file =
        folder.write("a.mp4", "[config]\nlong=" + std::string(300, 'x') + "\nzone=臺北\n");
    const PrivateProfile profile;
    EXPECT_EQ(profile.read(file, "config", "long", "", 255), withNul(std::string(254, 'x')));
    EXPECT_EQ(profile.read(file, "config", "long", "", 1), withNul(""));
    EXPECT_EQ(profile.read(file, "config", "long", "", 0), "");
    EXPECT_EQ(profile.read(file, "config", "zone", "", 2), withNul("臺"));
}

TEST(PrivateProfile, reads_the_default_from_a_missing_file_and_creates_nothing) {
    const TemporaryFolder folder;
    const PrivateProfile profile;
    EXPECT_EQ(profile.read(folder.file("none.mp4"), "config", "mainv", "", 255), withNul(""));
    EXPECT_FALSE(std::filesystem::exists(folder.file("none.mp4")));
    EXPECT_EQ(profile.read(folder.path(), "config", "mainv", "d", 255), withNul("d"));
}

TEST(PrivateProfile, lists_key_names_ended_by_two_nuls) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.mp4", "[config]\nab=1\ncd=2\n");
    const PrivateProfile profile;
    EXPECT_EQ(profile.read(file, "config", std::nullopt, "", 255), std::string("ab\0cd\0\0", 7));
    EXPECT_EQ(profile.read(file, "config", std::nullopt, "", 7), std::string("ab\0cd\0\0", 7));
    EXPECT_EQ(profile.read(file, "config", std::nullopt, "", 6), std::string("ab\0c\0\0", 6));
    EXPECT_EQ(profile.read(file, "none", std::nullopt, "", 255), withNul(""));
}

TEST(PrivateProfile, creates_file_section_and_key_on_the_first_write) {
    const TemporaryFolder folder;
    PrivateProfile profile;
    EXPECT_TRUE(profile.write(folder.file("a.mp4"), "config", "mainv", "1001"));
    EXPECT_EQ(folder.read("a.mp4"), "[config]\nmainv=1001\n");
}

TEST(PrivateProfile, removes_keys_and_sections) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.mp4", "[a]\nx=1\ny=2\n[b]\nz=3\n");
    PrivateProfile profile;
    EXPECT_TRUE(profile.write(file, "a", "x", std::nullopt));
    EXPECT_EQ(folder.read("a.mp4"), "[a]\ny=2\n[b]\nz=3\n");
    EXPECT_TRUE(profile.write(file, "a", std::nullopt, std::nullopt));
    EXPECT_EQ(folder.read("a.mp4"), "[b]\nz=3\n");
    EXPECT_TRUE(profile.write(file, "none", "x", std::nullopt));
}

TEST(PrivateProfile, never_overwrites_a_file_that_is_no_ini_file) {
    const TemporaryFolder folder;
    PrivateProfile profile;
    for (const std::string& content : {std::string("\0\0\0\x18mp42", 8), std::string("<html>\n")}) {
        const std::string file = folder.write("a.mp4", content);
        EXPECT_FALSE(profile.write(file, "config", "mainv", "1001"));
        EXPECT_EQ(folder.read("a.mp4"), content);
    }
    const std::string large = folder.write("large.mp4", "[a]\n" + std::string(2 << 20, 'x'));
    EXPECT_FALSE(profile.write(large, "config", "mainv", "1001"));
    EXPECT_FALSE(profile.write(folder.path(), "config", "mainv", "1001"));
}

TEST(PrivateProfile, fails_in_a_missing_folder) {
    const TemporaryFolder folder;
    PrivateProfile profile;
    EXPECT_FALSE(profile.write(folder.file("none/a.mp4"), "config", "mainv", "1001"));
}

TEST(PrivateProfile, leaves_nothing_beside_the_file) {
    const TemporaryFolder folder;
    PrivateProfile profile;
    profile.write(folder.file("a.mp4"), "config", "mainv", "1001");
    profile.write(folder.file("a.mp4"), "config", "mainv", "1002");
    int entries = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        EXPECT_EQ(entry.path().filename(), "a.mp4");
        ++entries;
    }
    EXPECT_EQ(entries, 1);
}

TEST(PrivateProfile, keeps_permissions_and_a_link_to_the_file) {
    const TemporaryFolder folder;
    const std::string target = folder.write("target.mp4", "[config]\nmainv=1001\n");
    ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
    std::filesystem::create_symlink(target, folder.file("link.mp4"));
    PrivateProfile profile;
    EXPECT_TRUE(profile.write(folder.file("link.mp4"), "config", "mainv", "1002"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link.mp4")));
    EXPECT_EQ(folder.read("target.mp4"), "[config]\nmainv=1002\n");
    struct stat status {};
    ASSERT_EQ(::stat(target.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST(PrivateProfile, leaves_the_file_whole_when_the_program_is_killed) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.mp4", "[config]\nmainv=1001\nUnit=1\n");
    const std::string otherValue(4000, 'x');
    for (int round = 0; round < 20; ++round) {
        const pid_t writer = ::fork();
        ASSERT_GE(writer, 0);
        if (writer == 0) {
            PrivateProfile profile;
            for (;;) {
                profile.write(file, "config", "mainv", otherValue);
                profile.write(file, "config", "mainv", "1001");
            }
        }
        // Any moment will do: the answer must be the same at each.
        std::this_thread::sleep_for(std::chrono::milliseconds(3 + 2 * round));
        ::kill(writer, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(writer, &status, 0), writer);
        const std::string content = folder.read("a.mp4");
        EXPECT_TRUE(content == "[config]\nmainv=1001\nUnit=1\n" ||
                    content == "[config]\nmainv=" + otherValue + "\nUnit=1\n")
            << content.size();
    }
}

TEST(PrivateProfile, fails_without_a_trace_when_the_disk_takes_no_more) {
    const TemporaryFolder folder;
    const std::string before = "[config]\nmainv=1001\n";
    const std::string file = folder.write("a.mp4", before);
    const pid_t writer = ::fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
        // A limit on the size of files fails a write half way, as a full disk does.
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{100, 100};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        PrivateProfile profile;
        ::_exit(profile.write(file, "config", "long", std::string(300, 'x')) ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(writer, &status, 0), writer);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(folder.read("a.mp4"), before);
    const std::filesystem::directory_iterator entries(folder.path());
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST(PrivateProfile, does_not_touch_the_file_when_nothing_changes) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.mp4", "[config]\nmainv=1001\n");
    struct stat before {};
    ASSERT_EQ(::stat(file.c_str(), &before), 0);
    PrivateProfile profile;
    EXPECT_TRUE(profile.write(file, "config", "mainv", "1001"));
    struct stat after {};
    ASSERT_EQ(::stat(file.c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

} // namespace
} // namespace velmorant

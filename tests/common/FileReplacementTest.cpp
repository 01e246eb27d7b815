#include "common/FileReplacement.h"

#include "common/StepError.h"
#include "tests/builders/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <vector>

namespace {

/// What the system was asked to bring to the disk, in order, with what the destination held then.
std::vector<std::string> synced;
std::function<std::string(bool folder)> noteOf;

} // namespace

// Takes the place of the system's function in this program, so that the tests see it called.
extern "C" int fsync(int descriptor) {
    struct stat status {};
    if (noteOf && ::fstat(descriptor, &status) == 0)
        synced.push_back(noteOf(S_ISDIR(status.st_mode)));
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

namespace velmorant {
namespace {

namespace fs = std::filesystem;
using builders::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;

std::string messageOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const StepError& error) {
        return error.what();
    }
    return "no error";
}

std::vector<std::string> namesIn(const TemporaryFolder& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder.path()))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 0777U;
}

TEST(FileReplacement, takes_the_name_when_it_is_whole) {
    const TemporaryFolder folder;
    folder.write("a", "old");
    FileReplacement file(folder.file("a"));
    file.write("new ");
    file.write("text");
    EXPECT_EQ(folder.read("a"), "old");
    file.commit();
    EXPECT_EQ(folder.read("a"), "new text");
    EXPECT_THAT(namesIn(folder), ElementsAre("a"));
}

TEST(FileReplacement, is_on_the_disk_before_it_takes_the_name_and_the_name_after_it) {
    const TemporaryFolder folder;
    folder.write("a", "old");
    synced.clear();
    noteOf = [&](bool isFolder) {
        return std::string(isFolder ? "folder, " : "file, ") + folder.read("a");
    };
    replaceFile(folder.file("a"), "new");
    noteOf = nullptr;
    EXPECT_THAT(synced, ElementsAre("file, old", "folder, new"));
}

TEST(FileReplacement, leaves_nothing_without_a_commit) {
    const TemporaryFolder folder;
    folder.write("a", "old");
    {
        FileReplacement file(folder.file("a"));
        file.write("half");
        EXPECT_EQ(namesIn(folder).size(), 2U);
    }
    EXPECT_THAT(namesIn(folder), ElementsAre("a"));
    EXPECT_EQ(folder.read("a"), "old");
}

TEST(FileReplacement, keeps_the_rights_of_what_it_replaces_and_a_link_to_it) {
    const TemporaryFolder folder;
    const std::string target = folder.write("target", "old");
    ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
    fs::create_symlink(target, folder.file("link"));
    replaceFile(folder.file("link"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.file("link")));
    EXPECT_EQ(folder.read("target"), "new");
    EXPECT_EQ(modeOf(target), 0640U);
}

TEST(FileReplacement, a_new_file_has_the_rights_that_were_wished) {
    const TemporaryFolder folder;
    const mode_t mask = ::umask(022);
    replaceFile(folder.file("usual"), "x");
    FileReplacement own(folder.file("own"), FileReplacement::Access::OwnerAlone);
    own.commit();
    FileReplacement program(folder.file("program"));
    program.setMode(0755);
    program.commit();
    ::umask(mask);
    EXPECT_EQ(modeOf(folder.file("usual")), 0644U);
    EXPECT_EQ(modeOf(folder.file("own")), 0600U);
    EXPECT_EQ(modeOf(folder.file("program")), 0755U);
}

TEST(FileReplacement, replaces_files_with_the_longest_of_names) {
    const TemporaryFolder folder;
    const std::string name(255, 'n');
    replaceFile(folder.file(name), "x");
    EXPECT_THAT(namesIn(folder), ElementsAre(name));
}

TEST(FileReplacement, refuses_what_is_no_regular_file) {
    const TemporaryFolder folder;
    fs::create_directory(folder.file("folder"));
    ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
    for (const char* name : {"folder", "pipe"})
        EXPECT_EQ(messageOf([&] { replaceFile(folder.file(name), "x"); }),
                  folder.file(name) + ": cannot be written: this is no regular file");
    EXPECT_THAT(namesIn(folder), ElementsAre("folder", "pipe"));
}

TEST(FileReplacement, names_path_and_reason_of_a_failure) {
    const TemporaryFolder folder;
    EXPECT_EQ(messageOf([&] { replaceFile(folder.file("none/a"), "x"); }),
              folder.file("none/a") + ": cannot be written: No such file or directory");
    folder.write("file", "x");
    EXPECT_THAT(messageOf([&] { replaceFile(folder.file("file/a"), "x"); }),
                HasSubstr("file/a: cannot be written: Not a directory"));
}

TEST(FileReplacement, leaves_nothing_beside_when_the_name_was_taken_meanwhile) {
    const TemporaryFolder folder;
    {
        FileReplacement file(folder.file("a"));
        fs::create_directory(folder.file("a"));
        EXPECT_THAT(messageOf([&] { file.commit(); }), HasSubstr("Is a directory"));
    }
    EXPECT_THAT(namesIn(folder), ElementsAre("a"));
}

TEST(FileReplacement, a_relative_path_counts_from_the_working_folder) {
    const TemporaryFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    replaceFile("a", "x");
    fs::current_path(before);
    EXPECT_EQ(folder.read("a"), "x");
}

} // namespace
} // namespace velmorant

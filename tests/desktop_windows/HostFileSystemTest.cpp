#include "desktop/system/HostFileSystem.h"

#include "common/StepError.h"
#include "tests/desktop_windows/TemporaryFolder.h"
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using testing::HasSubstr;

std::string messageOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const StepError& error) {
        return error.what();
    }
    return "no error";
}

TEST(HostFileSystem, tells_files_from_folders) {
    const TemporaryFolder folder;
    const HostFileSystem files;
    const std::string file = folder.write("行車 1 & 2.MP4", "x");
    EXPECT_TRUE(files.fileExists(file));
    EXPECT_FALSE(files.folderExists(file));
    EXPECT_FALSE(files.fileExists(folder.path()));
    EXPECT_TRUE(files.folderExists(folder.path()));
    EXPECT_FALSE(files.fileExists(folder.path("missing")));
}

TEST(HostFileSystem, copies_a_file_as_a_whole_and_leaves_nothing_beside_it) {
    const TemporaryFolder folder;
    HostFileSystem files;
    const QByteArray bytes(3'000'000, 'v');
    const std::string source = folder.write("source", bytes);
    folder.write("target", "old");
    files.copyFile(source, folder.path("target"));
    EXPECT_EQ(folder.read("target"), bytes);
    EXPECT_EQ(folder.names(), (QStringList{"source", "target"}));
}

TEST(HostFileSystem, a_failed_copy_leaves_the_destination_as_it_was) {
    const TemporaryFolder folder;
    HostFileSystem files;
    folder.write("target", "old");
    EXPECT_THAT(messageOf([&] { files.copyFile(folder.path("gone"), folder.path("target")); }),
                HasSubstr(folder.path("gone")));
    EXPECT_EQ(folder.read("target"), "old");
}

TEST(HostFileSystem, creates_and_deletes_files_and_folders) {
    const TemporaryFolder folder;
    HostFileSystem files;
    files.createFolder(folder.path("a"));
    folder.write("a/file", "text");
    files.createEmptyFile(folder.path("a/file"));
    EXPECT_EQ(folder.read("a/file"), "");
    files.deleteFile(folder.path("a/file"));
    EXPECT_FALSE(files.fileExists(folder.path("a/file")));
    folder.write("a/other", "text");
    files.deleteFolder(folder.path("a"));
    EXPECT_FALSE(files.folderExists(folder.path("a")));
}

TEST(HostFileSystem, closes_a_folder_to_everybody_but_its_owner) {
    const TemporaryFolder folder;
    HostFileSystem files;
    const std::string path = folder.path("tracks");
    files.createFolder(path);
    std::filesystem::permissions(path, std::filesystem::perms(0755));
    files.keepPrivate(path);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0700));
    EXPECT_THROW(files.keepPrivate(folder.path("none")), StepError);
}

TEST(HostFileSystem, every_failing_change_names_the_path) {
    const TemporaryFolder folder;
    HostFileSystem files;
    const std::string missing = folder.path("no/such");
    const std::function<void()> steps[] = {
        [&] { files.createFolder(missing); },      [&] { files.createEmptyFile(missing); },
        [&] { files.deleteFile(missing); },        [&] { files.deleteFolder(missing); },
        [&] { files.copyFile(missing, missing); },
    };
    for (const auto& step : steps)
        EXPECT_THAT(messageOf(step), HasSubstr(missing));
    EXPECT_THAT(messageOf([&] { files.createFolder(folder.path()); }), HasSubstr(folder.path()));
    EXPECT_THAT(messageOf([&] { files.deleteFile(folder.path()); }), HasSubstr("folder"));
}

} // namespace
} // namespace velmorant

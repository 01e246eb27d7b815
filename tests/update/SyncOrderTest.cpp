#include "update/ProgramTree.h"

#include "common/StepError.h"
#include "tests/builders/ScratchFolder.h"
#include "tests/update/DiskCalls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace velmorant {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A power loss at any moment must find whole files under the names that say so.
class SyncOrderTest : public testing::Test {
  protected:
    void add(const std::string& path) {
        auto file = tree.beginFile(ProgramPath::own(path));
        const std::string text = "new";
        file->write(std::as_bytes(std::span(text.data(), text.size())));
        tree.add(std::move(file));
    }
    std::string errorOfPublish() {
        try {
            tree.publish();
        } catch (const StepError& error) {
            return error.what();
        }
        return {};
    }
    std::string root() const { return std::filesystem::path(folder.path()).filename().string(); }

    builders::ScratchFolder folder;
    ProgramTree tree{folder.path()};
    DiskCalls disk;
};

TEST_F(SyncOrderTest, contents_are_synced_before_the_names_and_the_folder_after_them) {
    add("a");
    add("b");
    EXPECT_THAT(disk.calls, IsEmpty());
    tree.publish();
    EXPECT_THAT(disk.calls, ElementsAre("sync a.part~", "sync b.part~", "rename a", "rename b",
                                        "sync " + root()));
}

TEST_F(SyncOrderTest, a_folder_that_was_made_is_synced_with_the_one_that_holds_it) {
    add("sub/a");
    tree.publish();
    EXPECT_THAT(disk.calls, testing::UnorderedElementsAre("sync a.part~", "rename a",
                                                          "sync " + root(), "sync sub"));
}

TEST_F(SyncOrderTest, three_files_are_synced_one_by_one_and_four_by_one_sync_of_the_disk) {
    for (const char* name : {"a", "b", "c"})
        add(name);
    tree.publish();
    EXPECT_THAT(disk.calls, Not(testing::Contains("sync disk")));
    disk.calls.clear();
    for (const char* name : {"a", "b", "c", "d"})
        add(name);
    tree.publish();
    EXPECT_THAT(disk.calls, ElementsAre("sync disk", "rename a", "rename b", "rename c", "rename d",
                                        "sync " + root()));
}

TEST_F(SyncOrderTest, so_are_folders) {
    for (const char* name : {"x", "y", "z"})
        std::filesystem::create_directory(folder.path(name));
    add("x/a");
    add("y/b");
    add("z/c");
    tree.publish();
    EXPECT_EQ(disk.calls.size(), 9U);
    disk.calls.clear();
    add("x/a");
    add("y/b");
    add("z/c");
    add("d");
    tree.publish();
    EXPECT_THAT(disk.calls, ElementsAre("sync disk", "rename a", "rename b", "rename c", "rename d",
                                        "sync disk"));
}

TEST_F(SyncOrderTest, nothing_takes_its_name_when_the_content_cannot_be_kept) {
    disk.fails = "sync a.part~";
    add("a");
    EXPECT_THAT(errorOfPublish(), HasSubstr("a: "));
    disk.fails = "sync disk";
    for (const char* name : {"a", "b", "c", "d"})
        add(name);
    EXPECT_THAT(errorOfPublish(), HasSubstr(folder.path() + ": "));
    EXPECT_TRUE(folder.contents().empty());
}

TEST_F(SyncOrderTest, a_name_that_cannot_be_kept_is_a_failure) {
    disk.fails = "sync " + root();
    add("a");
    EXPECT_THAT(errorOfPublish(), HasSubstr(folder.path() + ": "));
    disk.fails = "rename a";
    add("a");
    EXPECT_THAT(errorOfPublish(), HasSubstr("a: "));
    EXPECT_FALSE(folder.has("a.part~"));
}

TEST_F(SyncOrderTest, a_program_is_kept_and_renamed_with_its_folder_synced) {
    folder.write("program", "old");
    folder.write("next", "new");
    tree.keepBeside(ProgramPath::own("program"), ProgramPath::own("program.old"));
    EXPECT_THAT(disk.calls, ElementsAre("sync " + root()));
    disk.calls.clear();
    tree.copyRights(ProgramPath::own("program"), ProgramPath::own("next"));
    EXPECT_THAT(disk.calls, ElementsAre("sync next"));
    disk.calls.clear();
    tree.renameFile(ProgramPath::own("next"), ProgramPath::own("program"));
    EXPECT_THAT(disk.calls, ElementsAre("rename program", "sync " + root()));
    disk.fails = "sync " + root();
    EXPECT_THROW(tree.keepBeside(ProgramPath::own("program"), ProgramPath::own("program.old")),
                 StepError);
    EXPECT_THROW(tree.renameFile(ProgramPath::own("program"), ProgramPath::own("next")), StepError);
    disk.fails = "sync next";
    EXPECT_THROW(tree.copyRights(ProgramPath::own("program.old"), ProgramPath::own("next")),
                 StepError);
}

} // namespace
} // namespace velmorant

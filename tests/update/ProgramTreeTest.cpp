#include "update/ProgramTree.h"

#include "common/StepError.h"
#include "tests/builders/ScratchFolder.h"
#include "update/Sha256.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <string>
#include <sys/stat.h>

namespace velmorant {
namespace {

using testing::HasSubstr;

class ProgramTreeTest : public testing::Test {
  protected:
    static std::span<const std::byte> bytes(const std::string& text) {
        return std::as_bytes(std::span(text.data(), text.size()));
    }
    void put(const std::string& path, const std::string& text) {
        tree.replaceFile(ProgramPath::own(path), bytes(text));
    }
    static std::string errorOf(const std::function<void()>& step) {
        try {
            step();
        } catch (const StepError& error) {
            return error.what();
        }
        return "no error";
    }

    builders::ScratchFolder outside;
    builders::ScratchFolder folder;
    ProgramTree tree{folder.path()};
};

TEST_F(ProgramTreeTest, makes_the_folders_of_a_file) {
    put("a/b/c.txt", "text");
    EXPECT_EQ(folder.read("a/b/c.txt"), "text");
    EXPECT_EQ(folder.contents().size(), 1U);
}

TEST_F(ProgramTreeTest, leaves_the_old_file_until_the_group_is_published) {
    folder.write("a", "old");
    auto file = tree.beginFile(ProgramPath::own("a"));
    file->write(bytes("new"));
    EXPECT_EQ(folder.read("a"), "old");
    tree.add(std::move(file));
    EXPECT_EQ(folder.read("a"), "old");
    tree.publish();
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_FALSE(folder.has("a.part~"));
}

TEST_F(ProgramTreeTest, removes_a_file_that_was_not_finished) {
    folder.write("a", "old");
    tree.beginFile(ProgramPath::own("a"))->write(bytes("ne"));
    EXPECT_EQ(folder.contents(), (std::map<std::string, std::string>{{"a", "old"}}));
}

TEST_F(ProgramTreeTest, publishes_a_long_group_by_itself) {
    const auto add = [this](int number) {
        tree.add(tree.beginFile(ProgramPath::own("f" + std::to_string(number))));
    };
    for (int i = 0; i < 999; ++i)
        add(i);
    EXPECT_FALSE(folder.has("f0"));
    add(999);
    EXPECT_TRUE(folder.has("f0"));
    EXPECT_TRUE(folder.has("f999"));
    add(1000);
    EXPECT_FALSE(folder.has("f1000"));
}

TEST_F(ProgramTreeTest, publishes_a_large_group_by_itself) {
    const std::string half(std::size_t{32} << 20, 'x');
    const auto add = [this](const char* name, std::string_view text) {
        auto file = tree.beginFile(ProgramPath::own(name));
        file->write(std::as_bytes(std::span(text)));
        tree.add(std::move(file));
    };
    add("first", half);
    add("second", std::string_view(half).substr(1));
    EXPECT_FALSE(folder.has("first"));
    add("third", "x");
    EXPECT_TRUE(folder.has("first"));
    EXPECT_TRUE(folder.has("third"));
}

TEST_F(ProgramTreeTest, publishes_a_group_of_many_folders_by_itself) {
    const auto add = [this](int number) {
        tree.add(tree.beginFile(ProgramPath::own("d" + std::to_string(number) + "/f")));
    };
    for (int i = 0; i < 198; ++i)
        add(i);
    EXPECT_FALSE(folder.has("d0/f"));
    add(198);
    EXPECT_TRUE(folder.has("d0/f"));
    EXPECT_TRUE(folder.has("d198/f"));
}

TEST_F(ProgramTreeTest, writes_a_file_twice_in_one_group) {
    for (const char* text : {"first", "second"}) {
        auto file = tree.beginFile(ProgramPath::own("a"));
        file->write(bytes(text));
        tree.add(std::move(file));
    }
    tree.publish();
    EXPECT_EQ(folder.contents(), (std::map<std::string, std::string>{{"a", "second"}}));
}

TEST_F(ProgramTreeTest, overwrites_what_a_killed_run_has_left_beside) {
    folder.write("a.part~", "half");
    put("a", "new");
    EXPECT_EQ(folder.contents(), (std::map<std::string, std::string>{{"a", "new"}}));
}

TEST_F(ProgramTreeTest, follows_no_link_of_a_folder_or_a_file) {
    outside.write("target", "kept");
    std::filesystem::create_directory_symlink(outside.path(), folder.path("link"));
    std::filesystem::create_symlink(outside.path("target"), folder.path("file"));
    std::filesystem::create_symlink(outside.path("target"), folder.path("x.part~"));
    EXPECT_THAT(errorOf([&] { put("link/x", "bad"); }), HasSubstr("link"));
    EXPECT_THAT(errorOf([&] { put("file", "bad"); }), HasSubstr("link"));
    EXPECT_THAT(errorOf([&] { (void)tree.readFile(ProgramPath::own("file"), 100); }),
                HasSubstr("link"));
    put("x", "new");
    EXPECT_EQ(outside.contents(), (std::map<std::string, std::string>{{"target", "kept"}}));
    EXPECT_EQ(folder.read("x"), "new");
}

TEST_F(ProgramTreeTest, writes_no_second_name_of_a_file) {
    outside.write("target", "kept");
    std::filesystem::create_hard_link(outside.path("target"), folder.path("a"));
    std::filesystem::create_hard_link(outside.path("target"), folder.path("b.part~"));
    put("a", "new");
    put("b", "new");
    EXPECT_EQ(outside.read("target"), "kept");
}

TEST_F(ProgramTreeTest, replaces_neither_a_folder_nor_a_pipe) {
    folder.write("sub/x", "kept");
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_THAT(errorOf([&] { put("sub", "bad"); }), HasSubstr("no regular file"));
    EXPECT_THAT(errorOf([&] { put("pipe", "bad"); }), HasSubstr("no regular file"));
    EXPECT_THAT(errorOf([&] { (void)tree.readFile(ProgramPath::own("pipe"), 100); }),
                HasSubstr("no regular file"));
    EXPECT_THAT(errorOf([&] { put("sub/x/y", "bad"); }), HasSubstr("no folder"));
    EXPECT_EQ(folder.read("sub/x"), "kept");
}

TEST_F(ProgramTreeTest, replaces_no_link_that_was_made_meanwhile) {
    outside.write("target", "kept");
    auto file = tree.beginFile(ProgramPath::own("a"));
    file->write(bytes("bad"));
    std::filesystem::create_symlink(outside.path("target"), folder.path("a"));
    tree.add(std::move(file));
    EXPECT_THAT(errorOf([&] { tree.publish(); }), HasSubstr("link"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("a")));
    EXPECT_EQ(outside.read("target"), "kept");
}

TEST_F(ProgramTreeTest, drops_the_rest_of_a_group_after_a_failure) {
    auto first = tree.beginFile(ProgramPath::own("first"));
    auto second = tree.beginFile(ProgramPath::own("second"));
    std::filesystem::create_directory(folder.path("second"));
    tree.add(std::move(first));
    tree.add(std::move(second));
    EXPECT_THAT(errorOf([&] { tree.publish(); }), HasSubstr("second: "));
    EXPECT_TRUE(folder.has("first"));
    EXPECT_FALSE(folder.has("second.part~"));
    tree.publish();
}

TEST_F(ProgramTreeTest, keeps_the_rights_of_a_file_that_is_protected) {
    folder.write("a", "old");
    std::filesystem::permissions(folder.path("a"), std::filesystem::perms{0440});
    put("a", "new");
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_EQ(std::filesystem::status(folder.path("a")).permissions(),
              std::filesystem::perms{0440});
}

TEST_F(ProgramTreeTest, reads_files_up_to_a_size) {
    EXPECT_EQ(tree.readFile(ProgramPath::own("none"), 10), std::nullopt);
    EXPECT_EQ(tree.readFile(ProgramPath::own("no/folder/x"), 10), std::nullopt);
    folder.write("a", "0123456789");
    EXPECT_EQ(tree.readFile(ProgramPath::own("a"), 10), "0123456789");
    EXPECT_THAT(errorOf([&] { (void)tree.readFile(ProgramPath::own("a"), 9); }),
                HasSubstr("larger"));
}

TEST_F(ProgramTreeTest, tells_the_digest_of_a_file) {
    folder.write("abc", "abc");
    EXPECT_EQ(tree.digestOf(ProgramPath::own("abc")),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(Sha256::of(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(tree.digestOf(ProgramPath::own("none")), std::nullopt);
}

TEST_F(ProgramTreeTest, keeps_an_old_version_beside_and_puts_it_back) {
    folder.write("program", "one");
    folder.write("program.old", "zero");
    tree.keepBeside(ProgramPath::own("program"), ProgramPath::own("program.old"));
    put("program", "two");
    EXPECT_EQ(folder.read("program"), "two");
    EXPECT_EQ(folder.read("program.old"), "one");
    tree.renameFile(ProgramPath::own("program.old"), ProgramPath::own("program"));
    EXPECT_EQ(folder.read("program"), "one");
    EXPECT_FALSE(folder.has("program.old"));
}

TEST_F(ProgramTreeTest, leaves_no_file_or_folder_open) {
    const auto open = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    folder.write("a/program", "one");
    const auto before = open();
    put("a/b", "text");
    put("new/folder/c", "text");
    (void)tree.readFile(ProgramPath::own("a/b"), 10);
    (void)tree.readFile(ProgramPath::own("a/none"), 10);
    (void)tree.digestOf(ProgramPath::own("a/b"));
    tree.keepBeside(ProgramPath::own("a/program"), ProgramPath::own("a/program.old"));
    tree.copyRights(ProgramPath::own("a/program"), ProgramPath::own("a/b"));
    tree.renameFile(ProgramPath::own("a/program.old"), ProgramPath::own("a/program"));
    EXPECT_EQ(tree.lock(), TreeLock::Taken);
    tree.unlock();
    tree.publish();
    EXPECT_EQ(open(), before);
}

TEST_F(ProgramTreeTest, tells_the_systems_reason_where_it_is_no_link) {
    EXPECT_THAT(errorOf([&] { put(std::string(300, 'x') + "/y", "text"); }), HasSubstr("too long"));
    EXPECT_THAT(errorOf([&] { put(std::string(300, 'x'), "text"); }), HasSubstr("too long"));
}

TEST_F(ProgramTreeTest, copies_the_rights_of_a_file) {
    folder.write("from", "one");
    folder.write("to", "two");
    std::filesystem::permissions(folder.path("from"), std::filesystem::perms{0754});
    tree.copyRights(ProgramPath::own("from"), ProgramPath::own("to"));
    EXPECT_EQ(std::filesystem::status(folder.path("to")).permissions(),
              std::filesystem::perms{0754});
    EXPECT_THAT(errorOf([&] { tree.copyRights(ProgramPath::own("none"), ProgramPath::own("to")); }),
                HasSubstr("none: there is no such file"));
}

TEST_F(ProgramTreeTest, is_locked_by_one_update_at_a_time) {
    ProgramTree other(folder.path());
    EXPECT_EQ(tree.lock(), TreeLock::Taken);
    EXPECT_EQ(tree.lock(), TreeLock::Taken);
    EXPECT_EQ(other.lock(), TreeLock::HeldByAnother);
    tree.unlock();
    EXPECT_EQ(other.lock(), TreeLock::Taken);
}

TEST_F(ProgramTreeTest, names_a_program_folder_that_is_not_there) {
    ProgramTree none(folder.path("none"));
    EXPECT_THAT(errorOf([&] { (void)none.lock(); }), HasSubstr("none: "));
}

} // namespace
} // namespace velmorant

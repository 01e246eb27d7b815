#include "app/PosixHostPaths.h"

#include "ports/ensureFolder.h"
#include "tests/builders/TemporaryFolder.h"
#include "tests/fakes/FakeFileSystem.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace velmorant {
namespace {

EnvironmentLookup environment(std::map<std::string, std::string> variables) {
    return [variables](const std::string& name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        if (found == variables.end())
            return std::nullopt;
        return found->second;
    };
}

const std::map<std::string, std::string> home = {{"HOME", "/home/user"}};

TEST(PosixHostPaths, finds_the_machine_wide_configuration) {
    struct Case {
        std::map<std::string, std::string> variables;
        std::string file;
    };
    const std::vector<Case> cases = {
        {home, "/home/user/.config/velmorant-dvr-tools/system32/qvconfig.mp4"},
        {{{"HOME", "/home/user"}, {"XDG_CONFIG_HOME", "/cfg"}},
         "/cfg/velmorant-dvr-tools/system32/qvconfig.mp4"},
        {{{"HOME", "/home/user"}, {"XDG_CONFIG_HOME", "relative"}},
         "/home/user/.config/velmorant-dvr-tools/system32/qvconfig.mp4"},
        {{{"HOME", "/home/user"}, {"XDG_CONFIG_HOME", ""}},
         "/home/user/.config/velmorant-dvr-tools/system32/qvconfig.mp4"},
        {{{"HOME", "/home/user"}, {"windir", "/win dows"}}, "/win dows/system32/qvconfig.mp4"},
        {{{"HOME", "/home/user"}, {"windir", ""}},
         "/home/user/.config/velmorant-dvr-tools/system32/qvconfig.mp4"}};
    for (const Case& each : cases)
        EXPECT_EQ(PosixHostPaths(environment(each.variables), "/p").globalConfigurationFile(),
                  each.file);
}

TEST(PosixHostPaths, puts_the_temporary_folder_into_the_cache) {
    EXPECT_EQ(PosixHostPaths(environment(home), "/p").temporaryFolder(),
              "/home/user/.cache/velmorant-dvr-tools/VelmorantDVRtempFile");
    EXPECT_EQ(PosixHostPaths(environment({{"XDG_CACHE_HOME", "/c"}}), "/p").temporaryFolder(),
              "/c/velmorant-dvr-tools/VelmorantDVRtempFile");
}

TEST(PosixHostPaths, writes_into_the_program_folder_where_it_may) {
    const builders::TemporaryFolder program;
    const PosixHostPaths paths(environment(home), program.path());
    EXPECT_TRUE(paths.programFolderIsWritable());
    EXPECT_EQ(paths.writableProgramFile("flow.xml"), program.file("flow.xml"));
}

TEST(PosixHostPaths, writes_into_the_users_data_folder_elsewhere) {
    const PosixHostPaths paths(environment(home), "/no/such/folder");
    EXPECT_FALSE(paths.programFolderIsWritable());
    EXPECT_EQ(paths.writableProgramFile("flow.xml"),
              "/home/user/.local/share/velmorant-dvr-tools/flow.xml");
    EXPECT_EQ(PosixHostPaths(environment({{"XDG_DATA_HOME", "/d"}}), "/no/such/folder")
                  .writableProgramFile("flow.xml"),
              "/d/velmorant-dvr-tools/flow.xml");
}

TEST(PosixHostPaths, names_program_files_and_executables_without_an_ending) {
    const PosixHostPaths paths(environment(home), "/opt/velmorant");
    EXPECT_EQ(paths.programFile("skin/main/1.mp4"), "/opt/velmorant/skin/main/1.mp4");
    EXPECT_EQ(paths.executable("movsupport/Parse"), "/opt/velmorant/movsupport/Parse");
    EXPECT_EQ(paths.shortcutEnding(), ".desktop");
}

TEST(PosixHostPaths, takes_paths_apart_and_joins_them_again) {
    struct Case {
        std::string path;
        std::vector<std::string> components;
        std::string joined;
    };
    const std::vector<Case> cases = {
        {"/card/20121009/103045.MP4",
         {"/", "card", "20121009", "103045.MP4"},
         "/card/20121009/103045.MP4"},
        {"card/a", {"card", "a"}, "card/a"},
        {"/", {"/"}, "/"},
        {"//a//b/", {"/", "a", "b"}, "/a/b"},
        {"/with  blanks/行車", {"/", "with  blanks", "行車"}, "/with  blanks/行車"},
        {"/back\\slash", {"/", "back\\slash"}, "/back\\slash"},
        {"", {}, ""}};
    const PosixHostPaths paths(environment(home), "/p");
    for (const Case& each : cases) {
        EXPECT_EQ(paths.components(each.path), each.components);
        std::string joined;
        for (const std::string& component : paths.components(each.path))
            joined = joined.empty() ? component : paths.join(joined, component);
        EXPECT_EQ(joined, each.joined);
    }
    EXPECT_EQ(folderOf(paths, "/card/a.MP4"), "/card");
    EXPECT_EQ(fileNameOf(paths, "/card/a.MP4"), "a.MP4");
    EXPECT_EQ(folderOf(paths, "/a.MP4"), "/");
}

TEST(PosixHostPaths, makes_a_folder_with_all_that_are_missing_above_it) {
    const PosixHostPaths paths(environment(home), "/p");
    fakes::FakeFileSystem files;
    files.folders = {"/", "/home"};
    ensureFolder(files, paths, "/home/user/.cache");
    EXPECT_EQ(files.changes, (std::vector<std::string>{"createFolder /home/user",
                                                       "createFolder /home/user/.cache"}));
    ensureFolder(files, paths, "/home/user/.cache");
    EXPECT_EQ(files.changes.size(), 2U);
}

} // namespace
} // namespace velmorant

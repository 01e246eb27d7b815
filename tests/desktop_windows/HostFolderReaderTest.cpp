#include "desktop/system/HostFolderReader.h"

#include "common/StepError.h"
#include "tests/desktop_windows/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace velmorant {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;
namespace fs = std::filesystem;

TEST(HostFolderReaderTest, tells_files_folders_and_links_to_folders_apart) {
    const TemporaryFolder folder;
    const fs::path root(folder.path());
    fs::create_directory(root / "20121009");
    std::ofstream(root / "a.MP4") << "x";
    fs::create_symlink(root / "a.MP4", root / "linked.MP4");
    fs::create_directory_symlink(root, root / "round");
    fs::create_symlink(root / "nowhere", root / "broken");
    const FolderContent content = HostFolderReader().read(root.string());
    EXPECT_THAT(content.files, UnorderedElementsAre("a.MP4", "linked.MP4"));
    EXPECT_THAT(content.folders, ElementsAre("20121009"));
    EXPECT_THAT(content.linksToFolders, ElementsAre("round"));
}

TEST(HostFolderReaderTest, a_folder_that_cannot_be_read_is_named_with_the_reason) {
    const TemporaryFolder folder;
    const std::string missing = folder.path() + "/missing";
    try {
        HostFolderReader().read(missing);
        FAIL() << "read a folder that is not there";
    } catch (const StepError& error) {
        EXPECT_THAT(error.what(), HasSubstr(missing + ": "));
    }
}

} // namespace
} // namespace velmorant

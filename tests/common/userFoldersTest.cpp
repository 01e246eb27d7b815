#include "common/userFolders.h"

#include <gtest/gtest.h>

#include <map>
#include <pwd.h>
#include <unistd.h>

namespace velmorant {
namespace {

using Variables = std::map<std::string, std::string>;

EnvironmentLookup lookupIn(const Variables& variables) {
    return [variables](const std::string& name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    };
}

TEST(WorkingFolder, follows_the_users_cache_folder) {
    const std::string ending = "/velmorant-dvr-tools/VelmorantDVRtempFile";
    EXPECT_EQ(workingFolder(lookupIn({{"XDG_CACHE_HOME", "/c"}, {"HOME", "/h"}})), "/c" + ending);
    EXPECT_EQ(workingFolder(lookupIn({{"XDG_CACHE_HOME", "/c/"}})), "/c" + ending);
    for (const char* cache : {"", "relative", "./c"})
        EXPECT_EQ(workingFolder(lookupIn({{"XDG_CACHE_HOME", cache}, {"HOME", "/h"}})),
                  "/h/.cache" + ending)
            << cache;
}

TEST(WorkingFolder, lies_in_the_home_that_the_system_knows_where_no_variable_names_one) {
    const passwd* user = ::getpwuid(::getuid());
    ASSERT_NE(user, nullptr);
    const std::string home = user->pw_dir;
    const std::string expected = (home.ends_with('/') ? home : home + "/") +
                                 ".cache/velmorant-dvr-tools/VelmorantDVRtempFile";
    EXPECT_EQ(workingFolder(lookupIn({})), expected);
    EXPECT_EQ(workingFolder(lookupIn({{"HOME", "relative"}})), expected);
}

} // namespace
} // namespace velmorant

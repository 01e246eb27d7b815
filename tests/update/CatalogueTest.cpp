#include "update/Catalogue.h"

#include "app/IniFile.h"
#include "app/PrivateProfile.h"
#include "tests/builders/CatalogueBuilder.h"
#include "tests/builders/ScratchFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

TEST(Catalogue, reads_what_the_layout_names) {
    const Catalogue catalogue(
        builders::catalogueText("R5", {{"a.txt", "files/a", "1", "abc"}, {"sub\\b", "b", "2"}}));
    EXPECT_EQ(catalogue.mainVersion(), "R5");
    EXPECT_EQ(catalogue.entryCount(), 2);
    EXPECT_EQ(catalogue.entry(0).local, "a.txt");
    EXPECT_EQ(catalogue.entry(0).remote, "files/a");
    EXPECT_EQ(catalogue.entry(0).version, "1");
    EXPECT_EQ(catalogue.entry(0).sha256, "abc");
    EXPECT_EQ(catalogue.entry(1).local, "sub\\b");
    EXPECT_EQ(catalogue.entry(1).sha256, "");
    EXPECT_EQ(catalogue.entry(2).local, "");
}

TEST(Catalogue, counts_only_in_16_bits) {
    const auto count = [](const std::string& text) {
        return Catalogue("[config]\nmainall=" + text).entryCount();
    };
    EXPECT_EQ(count("0"), 0);
    EXPECT_EQ(count(" 7 "), 7);
    EXPECT_EQ(count("32767"), 32767);
    EXPECT_EQ(count("32768"), std::nullopt);
    EXPECT_EQ(count(""), std::nullopt);
    EXPECT_EQ(count("7 files"), std::nullopt);
    EXPECT_EQ(Catalogue("no catalogue at all").entryCount(), std::nullopt);
}

TEST(Catalogue, takes_nothing_from_a_file_that_is_too_large) {
    EXPECT_EQ(
        Catalogue("[config]\nmainv=1\n" + std::string(Catalogue::largestFile, ' ')).mainVersion(),
        "");
}

TEST(Catalogue, reads_every_text_as_the_profile_functions_do) {
    const std::vector<std::string> texts{
        "[config]\nmainv=1\n[CONFIG]\nmainv=2\n",
        "[config]\nMAINV=1\nmainv=2\n",
        "[config]\n[config]\nmainv=2\n",
        "\xef\xbb\xbf[config]\r\nmainv=1\r\n",
        "  [ config ] tail\n\tmainv \t= one \n",
        "[config]\n;mainv=1\nmainv=2",
        "[config]\nmainv=\"quoted \"\n",
        "[config]\nmainv='\n",
        "[config]\nmainv=\"a'\n",
        "[config\nmainv=1\n",
        "[config]\nmainv\nmainv=3=4\n",
        "mainv=0\n[config]\nmainv=1\n",
        "[config]\nmainv=" + std::string(300, 'x') + "\n",
        "[config]\nmainv=\xe7\xb9\x81\xe9\xab\x94\n",
        "[config]\rmainv=1\r[config]\nmainv=2\n",
        "[config]\n=1\nmainv==\n",
        "[[config]]\nmainv=1\n[]\nmainv=2\n",
        "",
        "\n\n\n",
    };
    const builders::ScratchFolder folder;
    PrivateProfile profile;
    IniFile file(profile);
    for (const std::string& text : texts) {
        SCOPED_TRACE(text);
        folder.write("catalogue", text);
        file.open(folder.path("catalogue"), "config");
        EXPECT_EQ(Catalogue(text).value("config", "mainv"), file.readKey("mainv"));
        EXPECT_EQ(Catalogue(text).value("Config", "MainV"), file.readKey("MainV"));
        EXPECT_EQ(Catalogue(text).value("config", "mainall"), file.readKey("mainall"));
    }
}

} // namespace
} // namespace velmorant

#include "tests/settings/UpdateRun.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace velmorant {
namespace {

using builders::BuiltEntry;
using builders::catalogueText;

/// Names that lead out of the program folder, or to what is not the program's.
std::vector<std::string> hostileNames(const std::string& outside) {
    std::vector<std::string> names{
        "",
        ".",
        "..",
        "...",
        "/",
        "~/x.",
        "~\\x ",
        "/~",
        "./~",
        "NUL:",
        "\\\\.\\pipe\\x",
        outside + "/kept",
        outside + "/made",
        "//" + outside + "/made",
        "/dev/null",
        "/dev/full",
        "/proc/self/mem",
        "C:kept",
        "C:\\kept",
        "c:/kept",
        "Z:",
        "\\\\?\\C:\\kept",
        "\\\\.\\PhysicalDrive0",
        "\\\\host\\share\\x",
        "file:///kept",
        "file:kept",
        "x::$DATA",
        "x:stream",
        "CON",
        "nul",
        "Aux.txt",
        "COM1",
        "com\u00b2",
        "lpt9.log",
        "skin/NUL/x",
        "PRN .txt",
        "CONIN$",
        "a/../../made",
        "skin/../../made",
        "skin/./x",
        "skin//x",
        "skin/",
        "x/",
        "x.",
        "x ",
        " x",
        "skin /x",
        "x\x01y",
        "x\x1b[2J",
        "x\xffy",
        "\xc0\xae\xc0\xae/made",
        "\xc0\xafmade",
        "x*y",
        "x?y",
        "x|y",
        "x<y",
        "link/made",
        "link/kept",
        "link",
        "deep/link2/made",
        "filelink",
        "dangling",
        "skin",
        "config.mp4",
        "CONFIG.mp4",
        "flow.xml",
        "update/remote.mp4",
        "update",
        "update/.lock",
        "system32/qvconfig.mp4",
        "REC0001.MP4",
        "REC0001P.mp4",
        "still.bmp",
        "drive.gpx",
        "track.kml",
        ".profile",
        ".config/autostart/x.desktop",
        "skin/.hidden",
        "x.part~",
        "Velmorant DVR Tools.old",
        "Velmorant DVR Tools.next",
        std::string(254, 'x'),
        std::string(240, '/'),
    };
    // Every way up, by either slash, from different depths.
    for (const char* start : {"", "skin/", "skin/main/", "deep/", "new/folder/", "./"}) {
        for (int ups = 1; ups <= 10; ++ups) {
            std::string name = start;
            for (int i = 0; i < ups; ++i)
                name += "../";
            names.push_back(name + "made");
            std::string other = name + "kept";
            for (char& letter : other)
                letter = letter == '/' ? '\\' : letter;
            names.push_back(other);
        }
    }
    return names;
}

class hostileCatalogueTest : public UpdateRun {
  protected:
    hostileCatalogueTest() {
        paths.programFolder = folder.path("program");
        paths.writableFolder = paths.programFolder;
        folder.write("kept", "kept");
        folder.write("outside/kept", "kept");
        for (const char* name : {"config.mp4", "flow.xml", "REC0001.MP4", "still.bmp", "skin/1.mp4",
                                 "deep/x", "system32/qvconfig.mp4"})
            folder.write(std::string("program/") + name, "user's");
        namespace fs = std::filesystem;
        fs::create_directory_symlink("../outside", folder.path("program/link"));
        fs::create_directory_symlink(folder.path("outside"), folder.path("program/deep/link2"));
        fs::create_symlink("../outside/kept", folder.path("program/filelink"));
        fs::create_symlink("../outside/made", folder.path("program/dangling"));
        // What the catalogue names is there, so that nothing but the checks stops it.
        transfer.answers[base + "x"] = fakes::FakeHttpTransfer::body("hostile");
    }

    /// All but the update's own folder, into which the catalogue itself is fetched.
    std::map<std::string, std::string> present() const {
        auto all = folder.contents();
        std::erase_if(all, [](const auto& file) {
            return file.first == "program/update/remote.mp4" ||
                   file.first == "program/update/.lock";
        });
        return all;
    }
};

TEST_F(hostileCatalogueTest, creates_opens_and_deletes_nothing_outside_the_program) {
    const auto before = present();
    const std::vector<std::string> names = hostileNames(folder.path("outside"));
    ASSERT_GE(names.size(), 200U);
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        serveCatalogue(catalogueText("next", {{name, "x", "1"}}));
        frmUpdate update(needs());
        run(update);
        EXPECT_FALSE(update.running());
        ASSERT_EQ(present(), before);
    }
    RecordProperty("catalogues", static_cast<int>(names.size()));
}

TEST_F(hostileCatalogueTest, asks_no_other_server) {
    for (const char* remote : {"../x", "..\\x", "a/%2e%2e/x", "x#y", "", "x\x01", "a/../../x"}) {
        SCOPED_TRACE(remote);
        transfer.requests.clear();
        serveCatalogue(catalogueText("next", {{"a.txt", remote, "1"}}));
        frmUpdate update(needs());
        run(update);
        EXPECT_EQ(transfer.requests.size(), 1U);
    }
    for (const char* remote : {"http://evil.test/x", "//evil.test/x", "@evil.test/x"}) {
        transfer.requests.clear();
        serveCatalogue(catalogueText("next", {{"a.txt", remote, "1"}}));
        frmUpdate update(needs());
        run(update);
        for (const std::string& url : transfer.requests)
            EXPECT_TRUE(url.starts_with(base)) << url;
    }
}

TEST_F(hostileCatalogueTest, ends_by_itself_for_a_text_that_is_no_catalogue) {
    const std::vector<std::string> catalogues{
        "",
        std::string(1000, '\0'),
        "[config]\nmainv=x\nmainall=32767\n",
        "[config]\nmainv=x\nmainall=1\n[NO0]\nLOCAL=a" + std::string(1, '\0') + "b\n",
        "[config]\nmainv=x\nmainall=-32768\n",
        "[config]\nmainv=x\nmainall=1e4\n",
        "mainv=x",
        "[config]\nmainv=" + std::string(100000, 'v'),
        std::string(9 << 20, '['),
    };
    const auto before = folder.contents().size();
    for (const std::string& text : catalogues) {
        folder.write("program/config.mp4", "user's");
        serveCatalogue(text);
        frmUpdate update(needs());
        update.Open(UpdateOpening::Automatic);
        transfer.answer();
        timers.advance(40000L * 100);
        EXPECT_FALSE(transfer.answer());
        EXPECT_FALSE(update.running());
    }
    EXPECT_LE(folder.contents().size(), before + 2);
}

} // namespace
} // namespace velmorant

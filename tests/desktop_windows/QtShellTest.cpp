#include "desktop/system/QtShell.h"

#include "common/StepError.h"
#include "desktop/system/FreedesktopShellObject.h"
#include "tests/desktop_windows/TemporaryFolder.h"
#include "tests/desktop_windows/WaitUntil.h"
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <csignal>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

std::string program(const TemporaryFolder& folder, const std::string& name,
                    const QByteArray& script) {
    const std::string path = folder.write(name, "#!/bin/sh\n" + script + "\n");
    QFile::setPermissions(QString::fromStdString(path),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    return path;
}

TEST(QtShell, gives_the_parameters_as_one_argument_in_the_working_folder) {
    const TemporaryFolder folder;
    QtShell shell;
    const std::string file =
        program(folder, "show arguments",
                "printf '%s|%s|' \"$#\" \"$1\" > part; pwd >> part; mv part result");
    const int result =
        shell.execute("open", file, "a  b & \"c\" 行車", folder.path(), ShowWindow::Hidden);
    EXPECT_GE(result, 33);
    ASSERT_TRUE(waitUntil([&] { return folder.names().contains("result"); }));
    EXPECT_EQ(
        folder.read("result").toStdString(),
        "1|a  b & \"c\" 行車|" +
            QFileInfo(QString::fromStdString(folder.path())).canonicalFilePath().toStdString() +
            "\n");
}

TEST(QtShell, empty_parameters_are_no_argument) {
    const TemporaryFolder folder;
    QtShell shell;
    const std::string file = program(folder, "count", "printf '%s' \"$#\" > part; mv part result");
    EXPECT_GE(shell.execute("open", file, "", folder.path(), ShowWindow::Normal), 33);
    ASSERT_TRUE(waitUntil([&] { return folder.names().contains("result"); }));
    EXPECT_EQ(folder.read("result"), "0");
}

TEST(QtShell, failures_are_below_33_and_say_why) {
    const TemporaryFolder folder;
    QtShell shell([](const QUrl&) { return false; });
    const std::string missing = folder.path("missing");
    EXPECT_LT(shell.execute("open", missing, "", "", ShowWindow::Hidden), 33);
    EXPECT_NE(shell.lastErrorDescription().find(missing), std::string::npos);
    const std::string broken = folder.write("broken", "\x7f"
                                                      "ELF nothing");
    QFile::setPermissions(QString::fromStdString(broken),
                          QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    EXPECT_LT(shell.execute("open", broken, "", "", ShowWindow::Hidden), 33);
    EXPECT_NE(shell.lastErrorDescription(), "");
    EXPECT_LT(shell.execute("open", "https://example.org/", "", "", ShowWindow::Normal), 33);
    EXPECT_NE(shell.lastErrorDescription().find("example.org"), std::string::npos);
}

TEST(QtShell, web_addresses_and_documents_go_to_the_desktop) {
    const TemporaryFolder folder;
    QUrl opened;
    QtShell shell([&](const QUrl& url) {
        opened = url;
        return true;
    });
    EXPECT_GE(shell.execute("OPEN", "https://example.org/a?b=c", "", "", ShowWindow::Normal), 33);
    EXPECT_EQ(opened.toString(), "https://example.org/a?b=c");
    const std::string document = folder.write("route.gpx", "<gpx/>");
    EXPECT_GE(shell.execute("open", document, "", "", ShowWindow::Normal), 33);
    EXPECT_EQ(opened.toLocalFile().toStdString(), document);
}

TEST(QtShell, stops_the_last_program) {
    const TemporaryFolder folder;
    QtShell shell;
    const std::string file = program(folder, "wait", "echo $$ > part; mv part pid; exec sleep 60");
    ASSERT_GE(shell.execute("open", file, "", folder.path(), ShowWindow::Hidden), 33);
    ASSERT_TRUE(waitUntil([&] { return folder.names().contains("pid"); }));
    const int pid = folder.read("pid").trimmed().toInt();
    ASSERT_EQ(kill(pid, 0), 0);
    shell.stopLastProgram();
    EXPECT_NE(kill(pid, 0), 0);
}

TEST(QtShell, tells_how_a_hidden_program_ended_and_what_it_said) {
    const TemporaryFolder folder;
    QtShell shell;
    EXPECT_FALSE(shell.lastProgramEnd());
    const std::string file = program(folder, "fail", "echo 'no space left' >&2; exit 3");
    ASSERT_GE(shell.execute("open", file, "x", "", ShowWindow::Hidden), 33);
    ASSERT_TRUE(waitUntil([&] { return shell.lastProgramEnd().has_value(); }));
    EXPECT_EQ(shell.lastProgramEnd()->exitCode, 3);
    EXPECT_FALSE(shell.lastProgramEnd()->crashed);
    EXPECT_TRUE(shell.lastProgramEnd()->failed());
    EXPECT_EQ(shell.lastProgramEnd()->words, "no space left\n");
    const std::string killed = program(folder, "crash", "kill -SEGV $$");
    ASSERT_GE(shell.execute("open", killed, "", "", ShowWindow::Hidden), 33);
    ASSERT_TRUE(waitUntil([&] { return shell.lastProgramEnd().has_value(); }));
    EXPECT_TRUE(shell.lastProgramEnd()->crashed);
    EXPECT_EQ(shell.lastProgramEnd()->words, "") << "the words of the program before";
    const std::string good = program(folder, "good", "exit 0");
    ASSERT_GE(shell.execute("open", good, "", "", ShowWindow::Hidden), 33);
    ASSERT_TRUE(waitUntil([&] { return shell.lastProgramEnd().has_value(); }));
    EXPECT_FALSE(shell.lastProgramEnd()->failed());
}

TEST(QtShell, keeps_no_more_than_the_first_words_of_a_program_that_never_stops_talking) {
    const TemporaryFolder folder;
    QtShell shell;
    // More than a pipe holds: who does not listen never sees the end.
    const std::string file =
        program(folder, "talk", "head -c 300000 /dev/zero | tr '\\0' x >&2; exit 1");
    ASSERT_GE(shell.execute("open", file, "", "", ShowWindow::Hidden), 33);
    ASSERT_TRUE(waitUntil([&] { return shell.lastProgramEnd().has_value(); }));
    EXPECT_EQ(shell.lastProgramEnd()->words, std::string(4096, 'x'));
}

TEST(QtShell, hands_a_name_that_is_no_utf_8_on_as_it_stands) {
    const TemporaryFolder folder;
    QtShell shell;
    const std::string file =
        program(folder, "show", "printf '%s|%s' \"$#\" \"$1\" > part; mv part result");
    const std::string name = "/card/\xff\xfe 1.MP4";
    ASSERT_GE(shell.execute("open", file, name, folder.path(), ShowWindow::Hidden), 33);
    ASSERT_TRUE(waitUntil([&] { return folder.names().contains("result"); }));
    EXPECT_EQ(folder.read("result").toStdString(), "1|" + name);
}

TEST(QtShell, never_opens_with_the_desktop_what_is_started_hidden) {
    const TemporaryFolder folder;
    bool opened = false;
    QtShell shell([&](const QUrl&) { return opened = true; });
    const std::string file = folder.write("Parse", "#!/bin/sh\n");
    EXPECT_LT(shell.execute("open", file, "/card/1.MP4", "", ShowWindow::Hidden), 33);
    EXPECT_FALSE(opened);
    EXPECT_NE(shell.lastErrorDescription().find("may not be run"), std::string::npos);
}

TEST(QtShell, a_visible_program_outlives_the_shell) {
    const TemporaryFolder folder;
    const std::string file = program(folder, "wait", "echo $$ > part; mv part pid; exec sleep 60");
    {
        QtShell shell;
        ASSERT_GE(shell.execute("open", file, "", folder.path(), ShowWindow::Normal), 33);
        ASSERT_TRUE(waitUntil([&] { return folder.names().contains("pid"); }));
    }
    const int pid = folder.read("pid").trimmed().toInt();
    EXPECT_EQ(kill(pid, 0), 0);
    kill(pid, SIGTERM);
}

TEST(FreedesktopShellObject, knows_the_two_folders_by_their_registry_names) {
    const FreedesktopShellObject shell("");
    const std::string key = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\"
                            "Explorer\\Shell Folders\\";
    EXPECT_EQ(shell.readRegistry(key + "Desktop"),
              QStandardPaths::writableLocation(QStandardPaths::DesktopLocation).toStdString());
    EXPECT_EQ(shell.readRegistry("programs"),
              QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation).toStdString());
    EXPECT_THROW(shell.readRegistry(key + "Startup"), StepError);
}

TEST(FreedesktopShellObject, writes_a_shortcut_that_the_desktops_own_check_accepts) {
    const TemporaryFolder folder;
    FreedesktopShellObject shell("velmorant-dvr-tools");
    const std::string path = folder.path("menu/Velmorant DVR Tools.desktop");
    shell.createShortcut(path, "/opt/100% \"$HOME\" \\ `x`/Velmorant DVR Tools", "/opt/行車 tools");
    EXPECT_EQ(folder.read("menu/Velmorant DVR Tools.desktop").toStdString(),
              "[Desktop Entry]\nType=Application\nVersion=1.0\nName=Velmorant DVR Tools\n"
              "Exec=\"/opt/100%% \\\\\"\\\\$HOME\\\\\" \\\\\\\\ \\\\`x\\\\`/Velmorant DVR Tools\"\n"
              "Path=/opt/行車 tools\nIcon=velmorant-dvr-tools\nTerminal=false\n"
              "Categories=AudioVideo;Video;Player;\n");
    EXPECT_TRUE(QFileInfo(QString::fromStdString(path)).isExecutable());
    QProcess check;
    check.setProcessChannelMode(QProcess::MergedChannels);
    check.start("desktop-file-validate", {QString::fromStdString(path)});
    ASSERT_TRUE(check.waitForFinished());
    EXPECT_EQ(check.exitCode(), 0) << check.readAll().toStdString();
}

TEST(FreedesktopShellObject, a_shortcut_that_cannot_be_written_is_an_error) {
    const TemporaryFolder folder;
    folder.write("file", "");
    FreedesktopShellObject shell("");
    EXPECT_THROW(shell.createShortcut(folder.path("file/x.desktop"), "/bin/true", "/"), StepError);
}

} // namespace
} // namespace velmorant

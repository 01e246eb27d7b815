#include "server/catalogue/ServedTree.h"
#include "tests/desktop/update/DesktopUpdate.h"
#include "tests/desktop/update/NginxServer.h"

#include <QProcess>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace velmorant {
namespace {

using testing::HasSubstr;

const char* const program = "Velmorant DVR Tools";

std::string contentOf(const std::string& path) {
    QFile file(QString::fromStdString(path));
    file.open(QIODevice::ReadOnly);
    return file.readAll().toStdString();
}

/// A program folder with the real updater and a small real program as the main one, and a real
/// server that has the next version of it.
class UpdaterTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(nginx.ready()) << nginx.errors();
        put(program, sample("runs old"));
        put("velmupdate", contentOf(VELMORANT_UPDATER));
        running.setWorkingDirectory(folderText());
        updater.setWorkingDirectory(folderText());
        updater.setProgram(pathText("velmupdate"));
    }
    void TearDown() override {
        updater.kill();
        updater.waitForFinished();
        desktop.folder.write("end", "");
        running.waitForFinished();
        for (const char* name : {"running-old", "running-new"})
            EXPECT_TRUE(waitFor([this, name] { return !runs(name); }));
    }

    bool runs(const std::string& name) const {
        if (!desktop.folder.has(name))
            return false;
        // One that has ended has no file any more, even while nobody has asked how it ended.
        std::error_code error;
        return std::filesystem::exists("/proc/" + desktop.folder.read(name) + "/exe", error);
    }

    static std::string sample(const std::string& behaviour) {
        return contentOf(VELMORANT_SAMPLE_PROGRAM) + "\n" + behaviour;
    }
    void put(const std::string& name, const std::string& content) {
        desktop.folder.write(name, content);
        std::filesystem::permissions(desktop.folder.path(name), std::filesystem::perms::owner_exec,
                                     std::filesystem::perm_options::add);
    }
    QString folderText() const { return QString::fromStdString(desktop.folder.path()); }
    QString pathText(const std::string& name) const {
        return QString::fromStdString(desktop.folder.path(name));
    }
    void publish(const std::string& newProgram) {
        release.write(program, newProgram);
        release.write("readme.txt", "new");
        publishRelease({release.path(), nginx.served().path(), "R2", program, {}});
    }
    void runOldProgram() {
        running.start(pathText(program), {});
        ASSERT_TRUE(waitFor([this] { return desktop.folder.has("running-old"); }));
    }
    /// The window's part: the other files, the question, the call of the updater.
    void agreeInTheWindow() {
        desktop.messages.answers = {MessageAnswer::Yes};
        ASSERT_TRUE(desktop.runToEnd());
        ASSERT_EQ(desktop.shell.calls.size(), 1U);
        ASSERT_EQ(desktop.shell.calls[0].file, desktop.folder.path("velmupdate"));
        ASSERT_EQ(desktop.folder.read("readme.txt"), "new");
    }
    void startUpdater() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("VELMORANT_SERVER", QString::fromStdString(nginx.base()));
        updater.setProcessEnvironment(environment);
        updater.start();
        ASSERT_TRUE(updater.waitForStarted());
    }
    void endOldProgram() {
        ASSERT_EQ(running.state(), QProcess::Running);
        std::filesystem::remove(desktop.folder.path("running-old"));
        running.kill();
        ASSERT_TRUE(running.waitForFinished());
    }
    bool updaterEnds() {
        return waitFor([this] { return updater.state() == QProcess::NotRunning; }, 30000);
    }
    std::string updaterSays() { return updater.readAllStandardError().toStdString(); }

    void expectOldOneBack(const std::string& broken);

    NginxServer nginx;
    builders::ScratchFolder release;
    DesktopUpdate desktop{nginx.base()};
    QProcess running;
    QProcess updater;
};

TEST_F(UpdaterTest, replaces_the_main_program_when_it_has_ended_and_starts_the_new_one) {
    publish(sample("runs new"));
    runOldProgram();
    agreeInTheWindow();
    startUpdater();
    ASSERT_TRUE(waitFor([this] { return desktop.folder.has("Velmorant DVR Tools.next"); }));
    letRun(700);
    EXPECT_EQ(updater.state(), QProcess::Running) << "waits for the running program";
    EXPECT_TRUE(desktop.folder.read(program) == sample("runs old"));
    EXPECT_FALSE(desktop.folder.has("running-new"));

    endOldProgram();
    ASSERT_TRUE(waitFor([this] { return desktop.folder.has("running-new"); }));
    ASSERT_TRUE(updaterEnds());
    EXPECT_EQ(updater.exitCode(), 0) << updaterSays();
    EXPECT_TRUE(desktop.folder.read(program) == sample("runs new"));
    EXPECT_TRUE(desktop.folder.read("Velmorant DVR Tools.old") == sample("runs old"));
    EXPECT_FALSE(desktop.folder.has("Velmorant DVR Tools.next"));
    EXPECT_EQ(desktop.folder.read("config.mp4"), nginx.served().read("update/remote.rar"));
    EXPECT_TRUE(runs("running-new")) << "stays when the updater has ended";
}

void UpdaterTest::expectOldOneBack(const std::string& broken) {
    publish(broken);
    agreeInTheWindow();
    startUpdater();
    ASSERT_TRUE(waitFor([this] { return desktop.folder.has("running-old"); }));
    ASSERT_TRUE(updaterEnds());
    EXPECT_EQ(updater.exitCode(), 1);
    EXPECT_THAT(updaterSays(), HasSubstr("the old one is in its place again"));
    EXPECT_TRUE(desktop.folder.read(program) == sample("runs old"));
    EXPECT_FALSE(desktop.folder.has("config.mp4")) << "the update is offered again";
}

TEST_F(UpdaterTest, puts_the_old_program_back_when_the_new_one_ends_with_an_error) {
    expectOldOneBack(sample("fails new"));
}

TEST_F(UpdaterTest, puts_the_old_program_back_when_the_new_one_is_no_program) {
    expectOldOneBack("not a program");
}

TEST_F(UpdaterTest, replaces_nothing_by_a_program_that_is_not_the_one_of_the_catalogue) {
    publish(sample("runs new"));
    agreeInTheWindow();
    // As after a fault of the server's disk.
    for (const auto& entry :
         std::filesystem::directory_iterator(nginx.served().path("update/files")))
        nginx.served().write("update/files/" + entry.path().filename().string(), "other");
    startUpdater();
    ASSERT_TRUE(updaterEnds());
    EXPECT_EQ(updater.exitCode(), 1);
    EXPECT_THAT(updaterSays(), HasSubstr("the file is not the one of the catalogue"));
    EXPECT_TRUE(desktop.folder.read(program) == sample("runs old"));
    EXPECT_FALSE(desktop.folder.has("Velmorant DVR Tools.next"));
}

} // namespace
} // namespace velmorant

#include "update/MainProgramUpdate.h"

#include "common/StepError.h"
#include "tests/builders/CatalogueBuilder.h"
#include "tests/builders/ScratchFolder.h"
#include "update/PosixProgramHost.h"
#include "update/Sha256.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace velmorant {
namespace {

using builders::catalogueText;
using testing::ElementsAre;

/// Programs that never run: the tests say when one has ended and how one starts.
class FakeProgramHost : public ProgramHost {
  public:
    bool isRunning(const std::string&) override { return runsFor > 0; }
    void waitABit() override { --runsFor; }
    ProgramStart startAndWatch(const std::string& path, const std::string&) override {
        started.push_back(folder.read(std::filesystem::path(path).filename().string()));
        return started.back() == broken ? ProgramStart::Failed : ProgramStart::Runs;
    }

    explicit FakeProgramHost(const builders::ScratchFolder& where) : folder(where) {}
    const builders::ScratchFolder& folder;
    int runsFor = 3;
    std::string broken = "none";
    std::vector<std::string> started; ///< contents of what was started
};

class MainProgramUpdateTest : public testing::Test {
  protected:
    MainProgramUpdateTest() {
        folder.write("Velmorant DVR Tools", "old");
        std::filesystem::permissions(folder.path("Velmorant DVR Tools"),
                                     std::filesystem::perms{0750});
        folder.write("update/remote.mp4",
                     catalogueText("2", {{"a.txt", "a", "1"},
                                         {"qvmp4.EXE", "main", "2", Sha256::of("new")},
                                         {"later.txt", "later", "1"}}));
        served = {{"http://s/main", "new"}, {"http://s/later", "later"}};
    }

    MainProgramResult run() {
        ProgramTree tree(folder.path());
        MainProgramUpdate update({tree, host,
                                  [&](const DownloadRequest& request) {
                                      requests.push_back(request.url);
                                      const std::string& text = served.at(request.url);
                                      if (text == "fault")
                                          throw StepError("server gone");
                                      auto file = tree.beginFile(request.path);
                                      file->write(
                                          std::as_bytes(std::span(text.data(), text.size())));
                                      tree.add(std::move(file));
                                  },
                                  "http://s/", "Velmorant DVR Tools", publicKey});
        return update.run();
    }

    builders::ScratchFolder folder;
    FakeProgramHost host{folder};
    std::map<std::string, std::string> served;
    std::vector<std::string> requests;
    std::string publicKey;
};

TEST_F(MainProgramUpdateTest, replaces_the_program_after_it_has_ended_and_starts_it) {
    EXPECT_EQ(run(), MainProgramResult::Updated);
    EXPECT_EQ(host.runsFor, 0);
    EXPECT_THAT(host.started, ElementsAre("new"));
    EXPECT_EQ(folder.read("Velmorant DVR Tools"), "new");
    EXPECT_EQ(folder.read("Velmorant DVR Tools.old"), "old");
    EXPECT_FALSE(folder.has("Velmorant DVR Tools.next"));
    EXPECT_EQ(std::filesystem::status(folder.path("Velmorant DVR Tools")).permissions(),
              std::filesystem::perms{0750});
    EXPECT_EQ(folder.read("config.mp4"), folder.read("update/remote.mp4"));
}

TEST_F(MainProgramUpdateTest, fetches_what_stands_behind_the_main_program_alone) {
    run();
    EXPECT_THAT(requests, ElementsAre("http://s/main", "http://s/later"));
    EXPECT_EQ(folder.read("later.txt"), "later");
    EXPECT_FALSE(folder.has("a.txt"));
}

TEST_F(MainProgramUpdateTest, puts_the_old_program_back_when_the_new_one_does_not_start) {
    host.broken = "new";
    EXPECT_EQ(run(), MainProgramResult::PutBack);
    EXPECT_THAT(host.started, ElementsAre("new", "old"));
    EXPECT_EQ(folder.read("Velmorant DVR Tools"), "old");
    EXPECT_FALSE(folder.has("config.mp4"));
}

TEST_F(MainProgramUpdateTest, leaves_the_running_program_alone_when_the_server_is_gone) {
    served["http://s/later"] = "fault";
    EXPECT_THROW(run(), StepError);
    EXPECT_TRUE(host.started.empty());
    EXPECT_EQ(folder.read("Velmorant DVR Tools"), "old");
    EXPECT_FALSE(folder.has("config.mp4"));
    served["http://s/later"] = "later";
    requests.clear();
    EXPECT_EQ(run(), MainProgramResult::Updated);
    EXPECT_THAT(requests, ElementsAre("http://s/later")) << "the program was there already";
}

TEST_F(MainProgramUpdateTest, does_nothing_without_a_main_program) {
    folder.write("update/remote.mp4", catalogueText("2", {{"a.txt", "a", "1"}}));
    EXPECT_EQ(run(), MainProgramResult::NothingToDo);
    folder.write("update/remote.mp4", "");
    EXPECT_EQ(run(), MainProgramResult::NothingToDo);
    // An entry behind the number of entries is none.
    folder.write("update/remote.mp4", "[config]\nmainv=2\nmainall=1\n[NO0]\nLOCAL=a.txt\n"
                                      "[NO1]\nLOCAL=QVMP4.EXE\nREMOTE=main\nVERSION=1\n");
    EXPECT_EQ(run(), MainProgramResult::NothingToDo);
    EXPECT_TRUE(host.started.empty());
}

TEST_F(MainProgramUpdateTest, checks_the_signature_itself) {
    publicKey = "PUAXw+hDiVqStwqnTRt+vJyYLM8uxJaMwM1V8Sr0Zgw=";
    EXPECT_THROW(run(), StepError);
    EXPECT_TRUE(requests.empty());
}

class PosixProgramHostTest : public testing::Test {
  protected:
    std::string script(const std::string& name, const std::string& text) {
        folder.write(name, "#!/bin/sh\n" + text + "\n");
        std::filesystem::permissions(folder.path(name), std::filesystem::perms{0755});
        return folder.path(name);
    }

    builders::ScratchFolder folder;
    PosixProgramHost host{std::chrono::milliseconds(400)};
};

TEST_F(PosixProgramHostTest, sees_which_program_runs) {
    EXPECT_TRUE(host.isRunning("/proc/self/exe"));
    EXPECT_FALSE(host.isRunning(script("idle", "exit 0")));
    EXPECT_FALSE(host.isRunning(folder.path("none")));
}

TEST_F(PosixProgramHostTest, tells_a_start_from_a_failure) {
    const auto start = [this](const std::string& path) {
        return host.startAndWatch(path, folder.path());
    };
    EXPECT_EQ(start(script("stays", "sleep 1")), ProgramStart::Runs);
    EXPECT_EQ(start(script("quick", "pwd > place; exit 0")), ProgramStart::Runs);
    EXPECT_EQ(folder.read("place"), folder.path() + "\n");
    EXPECT_EQ(start(script("fails", "exit 3")), ProgramStart::Failed);
    EXPECT_EQ(start(script("dies", "kill -9 $$")), ProgramStart::Failed);
    EXPECT_EQ(start(folder.path("none")), ProgramStart::Failed);
    folder.write("text", "no program");
    EXPECT_EQ(start(folder.path("text")), ProgramStart::Failed);
}

} // namespace
} // namespace velmorant

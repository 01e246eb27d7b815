#include "track/ExtractorRun.h"

#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeShell.h"
#include "tests/fakes/FakeWaits.h"
#include "tests/fakes/FakeXmlDocument.h"
#include "tests/track/trackFileContent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using Outcome = ExtractorRun::Outcome;

const std::string folder = "/cache/VelmorantDVRtempFile";
const std::string trackFile = folder + "/output.kml";
const std::string recording = "/card/103045.MP4";

class ExtractorRunTest : public ::testing::Test {
  protected:
    ExtractorRunTest() { files.folders = {"/", "/cache"}; }

    static fakes::XmlContent named(const std::string& path) {
        fakes::XmlContent content = trackFileContent(3);
        content.rootAttributes["recording"] = path;
        return content;
    }
    void write(const fakes::XmlContent& content) {
        files.files[trackFile] = "";
        document.documents[trackFile] = content;
    }
    /// In the first round, as the real extractor does, which takes a few milliseconds.
    void inFirstRound(std::function<void()> step) {
        waits.whenWaiting = [this, step = std::move(step)] {
            if (waits.sleeps.size() == 1)
                step();
        };
    }
    ExtractorRun::Result run() { return extractor.run(recording); }

    fakes::FakeWaits waits;
    fakes::FakeFileSystem files;
    fakes::FakeHostPaths paths;
    fakes::FakeShell shell;
    fakes::FakeXmlDocument document;
    TrackFileReader reader{document};
    bool cancelled = false;
    ExtractorRun extractor{{.waits = waits,
                            .files = files,
                            .paths = paths,
                            .shell = shell,
                            .reader = reader,
                            .cancelled = [this] { return cancelled; }}};
};

TEST_F(ExtractorRunTest, an_extractor_that_fails_at_once_is_not_waited_for) {
    inFirstRound([this] {
        shell.end = ProgramEnd{3, false, "Parse: [disk-full] /x: cannot be written: no space\n"};
    });
    const auto result = run();
    EXPECT_EQ(result.outcome, Outcome::Failed);
    EXPECT_EQ(result.reason.code, "disk-full");
    EXPECT_THAT(result.reason.technical, HasSubstr("no space"));
    EXPECT_EQ(waits.sleeps.size(), 1u);
    EXPECT_EQ(waits.cutShort, 1);
}

TEST_F(ExtractorRunTest, an_extractor_that_fails_without_a_word_is_told_by_its_exit_code) {
    inFirstRound([this] { shell.end = ProgramEnd{7, false, ""}; });
    EXPECT_EQ(run().reason.technical, "the extractor ended with 7");
    waits.sleeps.clear();
    inFirstRound([this] { shell.end = ProgramEnd{0, true, "\n"}; });
    const auto result = run();
    EXPECT_EQ(result.outcome, Outcome::Failed);
    EXPECT_EQ(result.reason.technical, "the extractor crashed");
}

TEST_F(ExtractorRunTest, a_track_file_counts_more_than_the_exit_code) {
    inFirstRound([this] {
        write(named(recording));
        shell.end = ProgramEnd{1, false, "Parse: [empty] the file is empty\n"};
    });
    EXPECT_EQ(run().outcome, Outcome::Loaded);
}

TEST_F(ExtractorRunTest, the_wait_ends_with_the_extractor_and_a_file_that_names_its_recording) {
    inFirstRound([this] {
        write(named(recording));
        shell.end = ProgramEnd{};
    });
    EXPECT_EQ(run().outcome, Outcome::Loaded);
    EXPECT_THAT(waits.sleeps, ElementsAre(100));
    EXPECT_EQ(waits.cutShort, 1);
}

TEST_F(ExtractorRunTest, a_file_that_names_no_recording_gets_its_time_to_settle) {
    inFirstRound([this] {
        write(trackFileContent(3));
        shell.end = ProgramEnd{};
    });
    EXPECT_EQ(run().outcome, Outcome::Loaded);
    EXPECT_THAT(waits.sleeps, ElementsAre(100, 500));
}

TEST_F(ExtractorRunTest, one_that_ends_well_without_a_file_has_all_its_rounds) {
    inFirstRound([this] { shell.end = ProgramEnd{}; });
    EXPECT_EQ(run().outcome, Outcome::TimedOut);
    EXPECT_EQ(waits.sleeps.size(), 250u);
    EXPECT_THAT(waits.sleeps, Each(100));
    EXPECT_EQ(waits.cutShort, 1) << "only the round in which it ended";
}

TEST_F(ExtractorRunTest, the_file_of_another_recording_is_no_answer_of_one_that_failed) {
    inFirstRound([this] {
        write(named("/card/other.MP4"));
        shell.end = ProgramEnd{3, false, "why"};
    });
    EXPECT_EQ(run().outcome, Outcome::Failed);
}

TEST_F(ExtractorRunTest, one_that_hangs_is_stopped_after_250_rounds) {
    EXPECT_EQ(run().outcome, Outcome::TimedOut);
    EXPECT_EQ(waits.sleeps.size(), 250u);
    EXPECT_EQ(shell.programsStopped, 1);
}

TEST_F(ExtractorRunTest, the_folder_is_private_and_the_track_file_goes_when_it_was_read) {
    inFirstRound([this] { write(named(recording)); });
    EXPECT_EQ(run().outcome, Outcome::Loaded);
    EXPECT_EQ(reader.sampleCount(), 3u);
    EXPECT_THAT(files.privateFolders, ElementsAre(folder));
    EXPECT_FALSE(files.fileExists(trackFile));
}

TEST_F(ExtractorRunTest, a_track_file_that_cannot_be_used_goes_too) {
    inFirstRound([this] { files.files[trackFile] = "<tr"; });
    const auto result = run();
    EXPECT_EQ(result.outcome, Outcome::Failed);
    EXPECT_EQ(result.reason.code, "track-file");
    EXPECT_THAT(result.reason.technical, Not(HasSubstr(trackFile)));
    EXPECT_FALSE(files.fileExists(trackFile));
    EXPECT_EQ(shell.programsStopped, 1);
}

TEST_F(ExtractorRunTest, one_that_cannot_be_started_is_not_waited_for) {
    shell.result = 32;
    EXPECT_EQ(run().outcome, Outcome::NotStarted);
    EXPECT_THAT(waits.sleeps, IsEmpty());
}

TEST_F(ExtractorRunTest, a_disk_that_knows_no_rights_holds_nobody_up) {
    files.folders.insert(folder);
    files.broken.insert(folder);
    inFirstRound([this] { write(named(recording)); });
    EXPECT_EQ(run().outcome, Outcome::Loaded);
}

TEST_F(ExtractorRunTest, a_folder_that_cannot_be_made_is_told) {
    files.broken.insert(folder);
    const auto result = run();
    EXPECT_EQ(result.outcome, Outcome::Failed);
    EXPECT_EQ(result.reason.code, "not-written");
    EXPECT_THAT(shell.calls, IsEmpty());
}

TEST_F(ExtractorRunTest, cancel_stops_it) {
    inFirstRound([this] { cancelled = true; });
    EXPECT_EQ(run().outcome, Outcome::Cancelled);
    EXPECT_EQ(shell.programsStopped, 1);
    EXPECT_EQ(waits.sleeps.size(), 1u);
}

} // namespace
} // namespace velmorant

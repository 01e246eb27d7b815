// Where the command writes: never over a recording, through what is no file, nothing half.
#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/extractor/DvrTrackFixture.h"

namespace velmorant::telemetry {

using namespace recordings;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

namespace fs = std::filesystem;

class DvrTrackOutput : public DvrTrack {
  protected:
    std::string recording(const char* name = "day/103045.MP4") const {
        return (folder_ / name).string();
    }
    std::vector<std::string> filesIn(const fs::path& folder) const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    void expectRefused(const std::vector<std::string>& arguments, const fs::path& kept,
                       const std::string& reason = "is a recording and is not written over") {
        const std::string before = contentOf(kept);
        EXPECT_EQ(run(arguments), 2) << kept;
        EXPECT_THAT(errors_.str(), HasSubstr(reason));
        EXPECT_EQ(contentOf(kept), before) << kept;
    }
};

} // namespace

TEST_F(DvrTrackOutput, refuses_to_write_over_a_recording_that_it_reads) {
    expectRefused({"-f", "csv", "-o", recording(), recording()}, recording());
    expectRefused({"-o", recording(), recording()}, recording());
    EXPECT_EQ(filesIn(folder_ / "day").size(), 3U);
}

TEST_F(DvrTrackOutput, refuses_to_write_over_any_other_recording) {
    expectRefused({"-f", "csv", "-o", recording("day/120000.MP4"), recording()},
                  recording("day/120000.MP4"));
    // Whatever its name says, and however damaged one of the right name is.
    fs::copy(recording(), folder_ / "copy.bin");
    expectRefused({"-f", "csv", "-o", recording("copy.bin"), recording()}, folder_ / "copy.bin");
    write("broken.MOV", ByteVector(100, 'x'));
    expectRefused({"-f", "csv", "-o", recording("broken.MOV"), recording()},
                  folder_ / "broken.MOV");
}

TEST_F(DvrTrackOutput, refuses_a_link_to_a_recording) {
    fs::create_symlink(recording(), folder_ / "track.csv");
    expectRefused({"-f", "csv", "-o", recording("track.csv"), recording("day/120000.MP4")},
                  recording());
    EXPECT_TRUE(fs::is_symlink(folder_ / "track.csv"));
    fs::create_hard_link(recording(), folder_ / "hard.csv");
    expectRefused({"-f", "csv", "-o", recording("hard.csv"), recording()}, recording());
}

TEST_F(DvrTrackOutput, refuses_to_write_over_the_files_that_hold_a_recordings_track) {
    for (const char* name : {"day/103045.NMEA", "day/103045.gps", "day/103045.3gf",
                             "GPSData000001.txt", "day/103045.srt"}) {
        write(name, ByteVector(100, '$'));
        expectRefused({"-f", "csv", "-o", recording(name), recording()}, folder_ / name,
                      "may hold the track of a recording and is not written over");
    }
}

TEST_F(DvrTrackOutput, a_link_in_the_output_folder_does_not_lead_onto_a_recording) {
    fs::create_directories(folder_ / "out");
    fs::create_symlink(recording("day/120000.MP4"), folder_ / "out" / "103045.csv");
    const std::string before = contentOf(recording("day/120000.MP4"));
    EXPECT_EQ(run({"-f", "csv", "-o", recording("out"), recording()}), 3);
    EXPECT_THAT(errors_.str(), HasSubstr("is a recording"));
    EXPECT_EQ(contentOf(recording("day/120000.MP4")), before);
}

TEST_F(DvrTrackOutput, follows_a_link_to_the_file_behind_it) {
    fs::create_directories(folder_ / "elsewhere");
    std::ofstream(folder_ / "elsewhere" / "track.csv") << "old";
    fs::create_symlink("elsewhere/track.csv", folder_ / "there.csv");
    fs::create_symlink("elsewhere/new.csv", folder_ / "dangling.csv");
    for (const auto& [link, file] : {std::pair("there.csv", "elsewhere/track.csv"),
                                     std::pair("dangling.csv", "elsewhere/new.csv")}) {
        EXPECT_EQ(run({"-f", "csv", "-o", recording(link), recording()}), 0) << errors_.str();
        EXPECT_TRUE(fs::is_symlink(folder_ / link)) << link;
        EXPECT_FALSE(fs::is_symlink(folder_ / file)) << link;
        EXPECT_EQ(countOf(contentOf(folder_ / file), "\r\n"), 31U) << link;
    }
    EXPECT_THAT(filesIn(folder_ / "elsewhere"), testing::ElementsAre("new.csv", "track.csv"));
}

TEST_F(DvrTrackOutput, keeps_the_rights_of_a_file_that_it_replaces) {
    std::ofstream(folder_ / "track.csv") << "old";
    fs::permissions(folder_ / "track.csv", fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(run({"-f", "csv", "-o", recording("track.csv"), recording()}), 0);
    EXPECT_EQ(fs::status(folder_ / "track.csv").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(DvrTrackOutput, writes_into_a_pipe_and_leaves_it_one) {
    const std::string pipe = recording("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    // Both ends are held here: the rows of one recording fit into the pipe.
    const int ends = ::open(pipe.c_str(), O_RDWR | O_NONBLOCK);
    ASSERT_GE(ends, 0);
    EXPECT_EQ(run({"-f", "csv", "-o", pipe, recording()}), 0) << errors_.str();
    std::string read;
    std::array<char, 4096> buffer{};
    for (ssize_t got = 0; (got = ::read(ends, buffer.data(), buffer.size())) > 0;) {
        read.append(buffer.data(), static_cast<std::size_t>(got));
    }
    ::close(ends);
    EXPECT_TRUE(fs::is_fifo(pipe));
    EXPECT_EQ(countOf(read, "\r\n"), 31U);
}

TEST_F(DvrTrackOutput, writes_into_a_device_and_leaves_it_one) {
    // A link stands in the way of a program that renames: the device itself stays in any case.
    fs::create_symlink("/dev/null", folder_ / "null.csv");
    EXPECT_EQ(run({"-f", "csv", "-o", recording("null.csv"), recording()}), 0) << errors_.str();
    EXPECT_TRUE(fs::is_character_file(folder_ / "null.csv"));
    EXPECT_TRUE(fs::is_symlink(folder_ / "null.csv"));
    EXPECT_EQ(run({"-o", recording("null.csv"), recording()}), 0) << errors_.str();
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(DvrTrackOutput, a_full_device_is_told) {
    fs::create_symlink("/dev/full", folder_ / "full.csv");
    EXPECT_EQ(run({"-f", "csv", "-o", recording("full.csv"), recording()}), 3);
    EXPECT_THAT(errors_.str(), HasSubstr("full.csv: cannot be written: No space left on device"));
}

TEST_F(DvrTrackOutput, a_dash_means_the_standard_output) {
    fs::remove("-");
    EXPECT_EQ(run({"-f", "csv", "-o", "-", recording()}), 0);
    EXPECT_EQ(countOf(out_.str(), "\r\n"), 31U);
    EXPECT_EQ(run({"-o", "-", recording()}), 0);
    EXPECT_THAT(out_.str(), StartsWith("family"));
    EXPECT_FALSE(fs::exists("-"));
}

TEST_F(DvrTrackOutput, the_list_replaces_its_file_only_when_it_is_whole) {
    std::ofstream(folder_ / "list.txt") << "old";
    EXPECT_EQ(run({"-o", recording("list.txt"), recording()}), 0);
    EXPECT_THAT(contentOf(folder_ / "list.txt"), HasSubstr("103045.MP4"));
    EXPECT_EQ(run({"-o", recording("no folder/list.txt"), recording()}), 3);
    EXPECT_THAT(errors_.str(), HasSubstr("cannot be written: No such file or directory"));
    EXPECT_EQ(run({"-o", folder_.string(), recording()}), 2);
    EXPECT_THAT(errors_.str(), HasSubstr("is a folder"));
}

TEST_F(DvrTrackOutput, an_interrupted_run_leaves_no_unfinished_file) {
    // Searching this one takes long enough to be interrupted, and no space on the disk.
    {
        std::ofstream endless(folder_ / "day" / "235959.MP4", std::ios::binary);
        const ByteVector head = box("ftyp", ByteVector(8, 'x'));
        endless.write(reinterpret_cast<const char*>(head.data()),
                      static_cast<std::streamsize>(head.size()));
        const std::array<char, 16> media = {0, 0, 0, 1,  'm', 'd', 'a', 't',
                                            0, 0, 0, 64, 0,   0,   0,   0};
        endless.write(media.data(), media.size());
    }
    fs::resize_file(folder_ / "day" / "235959.MP4", 200ULL << 30);
    fs::create_directories(folder_ / "out");
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const std::string output = recording("out/all.csv");
        const std::string day = recording("day");
        const pid_t process = ::fork();
        ASSERT_GE(process, 0);
        if (process == 0) {
            ::execl(VELMORANT_DVR_TRACK, "dvr-track", "-f", "csv", "-o", output.c_str(),
                    day.c_str(), static_cast<char*>(nullptr));
            ::_exit(127);
        }
        int status = 0;
        bool ended = false;
        for (int tries = 0; tries < 6000 && !ended && filesIn(folder_ / "out").empty(); ++tries) {
            ::usleep(10000);
            ended = ::waitpid(process, &status, WNOHANG) == process;
        }
        EXPECT_FALSE(filesIn(folder_ / "out").empty());
        if (!ended) {
            ::kill(process, number);
            ASSERT_EQ(::waitpid(process, &status, 0), process);
        }
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == number) << status;
        EXPECT_THAT(filesIn(folder_ / "out"), testing::IsEmpty());
    }
}

TEST_F(DvrTrackOutput, a_reader_that_goes_away_ends_the_run) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const pid_t process = ::fork();
    ASSERT_GE(process, 0);
    if (process == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        ::dup2(ends[1], STDERR_FILENO);
        ::close(ends[0]);
        ::close(ends[1]);
        ::execl(VELMORANT_DVR_TRACK, "dvr-track", "-f", "csv", recording("day").c_str(),
                static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::close(ends[1]);
    ::close(ends[0]);
    int status = 0;
    ASSERT_EQ(::waitpid(process, &status, 0), process);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 3) << status;
}

} // namespace velmorant::telemetry

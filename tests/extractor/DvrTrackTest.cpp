#include "extractor/command/DvrTrackCommand.h"

#include <gmock/gmock.h>

#include <array>
#include <atomic>

#include "extractor/command/OrderedReading.h"
#include "tests/extractor/DvrTrackFixture.h"

namespace velmorant::telemetry {

using namespace recordings;
using testing::HasSubstr;
using testing::Not;

namespace {

namespace fs = std::filesystem;

} // namespace

TEST_F(DvrTrack, lists_the_recordings_of_a_folder) {
    EXPECT_EQ(run({(folder_ / "day").string()}), 0);
    EXPECT_THAT(out_.str(), HasSubstr("freeGPS blocks                30      100%   utc       "
                                      "2024-06-12T10:30:45Z"));
    EXPECT_EQ(countOf(out_.str(), "\n"), 4U);
    EXPECT_EQ(errors_.str(), "");
}

TEST_F(DvrTrack, walks_into_folders_only_when_asked) {
    EXPECT_EQ(run({folder_.string()}), 1);
    EXPECT_THAT(errors_.str(), HasSubstr("no recordings found"));
    EXPECT_EQ(run({"-r", folder_.string()}), 0);
    EXPECT_EQ(countOf(out_.str(), ".MP4"), 3U);
}

TEST_F(DvrTrack, lists_as_json_for_scripts) {
    write("day/broken.mp4", ByteVector(100, 'x'));
    EXPECT_EQ(run({"--json", (folder_ / "day").string()}), 1);
    EXPECT_THAT(out_.str(), testing::StartsWith("[\n{\"recording\":"));
    EXPECT_THAT(out_.str(), HasSubstr("\"family\":\"GPMF\",\"samples\":30,\"fixes\":30,"
                                      "\"timeBase\":\"utc\""));
    EXPECT_THAT(out_.str(), HasSubstr("the file is no MP4 recording"));
}

TEST_F(DvrTrack, a_broken_recording_does_not_stop_the_others) {
    write("day/103100.MP4", ByteVector(100, 'x'));
    EXPECT_EQ(run({"-f", "gpx", (folder_ / "day").string()}), 1);
    EXPECT_EQ(countOf(out_.str(), "<trk>"), 3U);
    EXPECT_THAT(errors_.str(), HasSubstr("103100.MP4: xxxx at byte 0: the file is no MP4"));
}

TEST_F(DvrTrack, joins_recordings_that_follow_one_another) {
    EXPECT_EQ(run({"--format=gpx", "--join", (folder_ / "day").string()}), 0);
    EXPECT_EQ(countOf(out_.str(), "<trk>"), 2U);
    EXPECT_EQ(countOf(out_.str(), "<trkpt "), 90U);
    EXPECT_EQ(run({"--format=gpx", (folder_ / "day").string()}), 0);
    EXPECT_EQ(countOf(out_.str(), "<trk>"), 3U);
}

TEST_F(DvrTrack, joins_the_recordings_of_each_camera) {
    using Names = std::array<const char*, 4>; // front and rear by turns, as a folder sorts them
    for (const Names& names :
         {Names{"103045_F.MP4", "103045_R.MP4", "103115_F.MP4", "103115_R.MP4"},
          Names{"Front/1.MP4", "Rear/1.MP4", "Front/2.MP4", "Rear/2.MP4"},
          Names{"0001F.MP4", "0002B.MP4", "0003F.MP4", "0004B.MP4"}}) {
        Driver driver({}, 70, 5);
        const auto first = maker("freegps_letters_28").make(driver.drive(start_, 30));
        const auto second = maker("freegps_letters_28").make(driver.drive(start_ + 30, 30));
        std::vector<std::string> arguments = {"-f", "gpx", "--join"};
        for (std::size_t i = 0; i < names.size(); ++i) {
            fs::create_directories((folder_ / "pair" / names[i]).parent_path());
            write(std::string("pair/") + names[i], i < 2 ? first : second);
            arguments.push_back((folder_ / "pair" / names[i]).string());
        }
        EXPECT_EQ(run(arguments), 0) << errors_.str();
        EXPECT_EQ(countOf(out_.str(), "<trk>"), 2U) << names[0];
        EXPECT_EQ(countOf(out_.str(), "<trkpt "), 120U) << names[0];
    }
}

TEST_F(DvrTrack, writes_one_file_per_recording_into_a_folder) {
    fs::create_directories(folder_ / "out");
    EXPECT_EQ(run({"-f", "kml", "-o", (folder_ / "out").string(), (folder_ / "day").string()}), 0)
        << errors_.str();
    for (const char* name : {"103045.kml", "103115.kml", "120000.kml"}) {
        EXPECT_THAT(contentOf(folder_ / "out" / name), HasSubstr("</kml>")) << name;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "out"), fs::directory_iterator()), 3);
}

TEST_F(DvrTrack, writes_all_into_one_file) {
    const fs::path file = folder_ / "all.csv";
    EXPECT_EQ(run({"-f", "csv", "-o", file.string(), (folder_ / "day").string()}), 0);
    EXPECT_EQ(countOf(contentOf(file), "\r\n"), 91U);
    EXPECT_EQ(out_.str(), "");
    EXPECT_FALSE(fs::exists(file.string() + ".part"));
}

TEST_F(DvrTrack, tells_what_cannot_be_read_or_written) {
    EXPECT_EQ(run({"-f", "gpx", (folder_ / "none.MP4").string()}), 3);
    EXPECT_THAT(errors_.str(), HasSubstr("none.MP4: cannot be opened"));
    EXPECT_EQ(run({"-f", "gpx", "-o", (folder_ / "no folder" / "x.gpx").string(),
                   (folder_ / "day").string()}),
              3);
    EXPECT_THAT(errors_.str(), HasSubstr("cannot be written"));
}

TEST_F(DvrTrack, refuses_wrong_use_and_names_it) {
    const std::pair<std::vector<std::string>, const char*> wrong[] = {
        {{}, "no recording is named"},
        {{"-f", "shp", "a.mp4"}, "unknown format shp"},
        {{"--frobnicate", "a.mp4"}, "unknown option --frobnicate"},
        {{"a.mp4", "-f"}, "-f needs a value"},
        {{"-j", "0", "a.mp4"}, "--jobs takes a number"},
        {{"--join=soon", "a.mp4"}, "--join takes seconds"},
        {{"--json", "-f", "gpx", "a.mp4"}, "--json lists"},
    };
    for (const auto& [arguments, reason] : wrong) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_THAT(errors_.str(), HasSubstr(reason));
        EXPECT_EQ(out_.str(), "");
    }
}

TEST_F(DvrTrack, helps_and_names_its_version) {
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_THAT(out_.str(), HasSubstr("Exit codes: 0"));
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_THAT(out_.str(), testing::MatchesRegex("dvr-track [0-9.]+\n"));
}

TEST(OrderedReading, hands_over_in_order_whatever_finishes_first) {
    std::vector<std::string> paths;
    for (int i = 0; i < 200; ++i) {
        paths.push_back(std::to_string(i));
    }
    std::vector<std::size_t> seen;
    readInOrder(
        paths, 4,
        [](const std::string& path) -> Result<Telemetry> {
            Telemetry telemetry;
            telemetry.family = path;
            // Every fifth takes longer.
            volatile unsigned work = 0;
            for (unsigned i = 0; i < (std::stoul(path) % 5 == 0 ? 200000U : 10U); ++i) {
                work = work + i;
            }
            return telemetry;
        },
        [&](std::size_t index, const Result<Telemetry>& outcome) {
            EXPECT_EQ(outcome.value().family, paths[index]);
            seen.push_back(index);
            return Reading::goesOn;
        });
    ASSERT_EQ(seen.size(), paths.size());
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
}

TEST(OrderedReading, ends_when_it_is_told) {
    const std::vector<std::string> paths(200, "a.MP4");
    std::size_t seen = 0;
    std::atomic<std::size_t> read = 0;
    readInOrder(
        paths, 4,
        [&](const std::string&) -> Result<Telemetry> {
            ++read;
            return Telemetry{};
        },
        [&](std::size_t index, const Result<Telemetry>&) {
            ++seen;
            return index == 9 ? Reading::ends : Reading::goesOn;
        });
    EXPECT_EQ(seen, 10U);
    EXPECT_LT(read, 30U);
}

} // namespace velmorant::telemetry

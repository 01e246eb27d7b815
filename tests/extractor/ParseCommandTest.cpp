#include "extractor/ParseCommand.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <unistd.h>

#include "app/PosixHostPaths.h"
#include "extractor/PrivateFiles.h"
#include "extractor/TrackFileWriter.h"
#include "tools/recordings/FreeGpsBlocks.h"
#include "tools/recordings/Mp4Builder.h"

namespace velmorant::telemetry {

using namespace recordings;
using testing::HasSubstr;
using testing::Not;

namespace {

namespace fs = std::filesystem;

class ParseCommand : public testing::Test {
  protected:
    ParseCommand() {
        folder_ =
            fs::temp_directory_path() /
            ("parse-test-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
             "-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)) + "-" +
             ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(folder_);
    }
    ~ParseCommand() override { fs::remove_all(folder_); }

    std::string write(const std::string& name, const ByteVector& bytes) {
        const fs::path path = folder_ / name;
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        return path.string();
    }

    int parse(const std::vector<std::string>& arguments) {
        errors_.clear();
        return runParse(
            arguments,
            [this](const std::string& name) -> std::optional<std::string> {
                return name == "XDG_CACHE_HOME" ? std::optional(folder_.string() + "/cache")
                                                : std::nullopt;
            },
            errors_);
    }

    fs::path trackFile() const {
        return folder_ / "cache/velmorant-dvr-tools/VelmorantDVRtempFile/output.kml";
    }
    std::string track() const {
        std::ifstream in(trackFile(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    std::vector<std::string> values(const std::string& tag) const {
        const std::string text = track();
        const std::regex element("<" + tag + ">([^<]*)</" + tag + ">");
        std::vector<std::string> found;
        for (std::sregex_iterator i(text.begin(), text.end(), element), end; i != end; ++i) {
            found.push_back((*i)[1]);
        }
        return found;
    }

    static ByteVector recording(const std::vector<DriveSecond>& drive) {
        Mp4Plan plan;
        plan.seconds = static_cast<double>(drive.size());
        plan.creation = drive.front().time;
        plan.index = Mp4Plan::Index::whole;
        for (std::size_t i = 0; i < drive.size(); ++i) {
            plan.blocks.push_back({freeGpsBlock(drive[i], FreeGpsLayout::withAcceleration), i});
        }
        return buildMp4(plan);
    }

    fs::path folder_;
    std::string errors_;
};

constexpr std::int64_t beforeMidnight = 1718236790; // 2024-06-12 23:59:50

} // namespace

TEST_F(ParseCommand, writes_one_sample_per_second_whose_hour_goes_on_past_midnight) {
    const auto drive = Driver({}, 70, 5).drive(beforeMidnight, 20);
    EXPECT_EQ(parse({write("235950.MP4", recording(drive))}), 0);
    EXPECT_EQ(errors_, "");
    const auto hours = values("utc_Hour");
    const auto minutes = values("utc_Minute");
    const auto seconds = values("utc_Second");
    ASSERT_EQ(hours.size(), 20U);
    for (std::size_t i = 0; i < 20; ++i) {
        EXPECT_EQ(std::stol(hours[i]) * 3600 + std::stol(minutes[i]) * 60 + std::stol(seconds[i]),
                  86390 + static_cast<long>(i));
        EXPECT_EQ(values("utc_Day")[i], "12");
    }
    EXPECT_EQ(hours[10], "24");
    for (const char* tag : {"utc_Year", "utc_Month", "Latitude", "Longitude", "Angle", "Speed",
                            "G_sum", "G_x", "G_y", "G_z", "fix"}) {
        EXPECT_EQ(values(tag).size(), 20U) << tag;
    }
}

TEST_F(ParseCommand, writes_the_sign_of_every_longitude_and_seven_decimals) {
    for (const double longitude : {121.5, -0.0005, 0.0005}) {
        const auto drive = Driver({51.5, longitude}, 70, 5).drive(beforeMidnight, 5);
        ASSERT_EQ(parse({write("a.MP4", recording(drive))}), 0);
        for (const std::string& text : values("Longitude")) {
            EXPECT_THAT(text, testing::MatchesRegex("[+-][0-9]+\\.[0-9]{7}"));
        }
        for (const std::string& text : values("Latitude")) {
            EXPECT_THAT(text, testing::MatchesRegex("[+-][0-9]+\\.[0-9]{7}"));
        }
    }
}

TEST_F(ParseCommand, names_the_recording_whatever_its_path_holds) {
    const auto bytes = recording(Driver({}, 70, 5).drive(beforeMidnight, 5));
    const std::string odd[] = {"two  blanks & <ampersand>.MP4",
                               "\xe5\x8f\xb0\xe5\x8c\x97 'q' \".MP4",
                               std::string(120, 'x') + "/" + std::string(120, 'y') + ".MP4"};
    for (const std::string& name : odd) {
        const std::string path = write(name, bytes);
        EXPECT_EQ(parse({path}), 0) << errors_;
        std::string escaped = std::regex_replace(path, std::regex("&"), "&amp;");
        escaped = std::regex_replace(escaped, std::regex("<"), "&lt;");
        escaped = std::regex_replace(escaped, std::regex(">"), "&gt;");
        escaped = std::regex_replace(escaped, std::regex("'"), "&apos;");
        escaped = std::regex_replace(escaped, std::regex("\""), "&quot;");
        EXPECT_THAT(track(), HasSubstr("recording=\"" + escaped + "\" family"));
    }
    const std::string path = write("bad\xff\x01%.MP4", bytes);
    EXPECT_EQ(parse({path}), 0);
    EXPECT_THAT(track(), HasSubstr("/bad%FF%01%25.MP4\" recording_encoding=\"percent\""));
}

TEST_F(ParseCommand, joins_a_path_that_arrives_in_several_arguments) {
    write("my card/one two.MP4", recording(Driver({}, 70, 5).drive(beforeMidnight, 5)));
    EXPECT_EQ(parse({folder_.string() + "/my", "card/one", "two.MP4"}), 0) << errors_;
    EXPECT_THAT(track(), HasSubstr("/my card/one two.MP4\""));
}

TEST_F(ParseCommand, leaves_the_reason_in_a_track_file_without_samples) {
    const std::string path = write("cut.MP4", box("ftyp", {}));
    EXPECT_EQ(parse({path}), 1);
    EXPECT_THAT(track(), HasSubstr("<error code=\"unfinished\">the recording has no movie header"));
    EXPECT_THAT(track(), Not(HasSubstr("gpsinfo")));
    EXPECT_THAT(track(), HasSubstr("recording=\"" + path + "\""));
    EXPECT_EQ(errors_, "Parse: [unfinished] " + path +
                           ": moov at byte 8: the recording has no movie header: it was cut "
                           "off\n");
}

TEST_F(ParseCommand, tells_a_missing_file_from_a_damaged_one) {
    EXPECT_EQ(parse({folder_.string() + "/none.MP4"}), 3);
    EXPECT_THAT(track(), HasSubstr("<error code=\"missing\">cannot be opened: No such file or "
                                   "directory</error>"));
    EXPECT_THAT(errors_, HasSubstr("/none.MP4: cannot be opened"));
}

TEST_F(ParseCommand, explains_its_use_without_a_path) {
    EXPECT_EQ(parse({}), 2);
    EXPECT_THAT(errors_, HasSubstr("usage"));
    EXPECT_FALSE(fs::exists(trackFile()));
}

TEST_F(ParseCommand, replaces_an_old_track_file_and_leaves_nothing_else_behind) {
    fs::create_directories(trackFile().parent_path());
    std::ofstream(trackFile()) << "old";
    EXPECT_EQ(parse({write("a.MP4", recording(Driver({}, 70, 5).drive(beforeMidnight, 5)))}), 0);
    EXPECT_EQ(values("fix").size(), 5U);
    const auto entries = fs::directory_iterator(trackFile().parent_path());
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST_F(ParseCommand, lets_nobody_else_read_where_somebody_drove) {
    // Folder and file of an earlier version, for all to read.
    fs::create_directories(trackFile().parent_path());
    fs::permissions(trackFile().parent_path(), fs::perms(0755));
    const std::string path = write("a.MP4", recording(Driver({}, 70, 5).drive(beforeMidnight, 5)));
    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(parse({path}), 0);
        EXPECT_EQ(fs::status(trackFile()).permissions(), fs::perms(0600));
        EXPECT_EQ(fs::status(trackFile().parent_path()).permissions(), fs::perms(0700));
        fs::remove_all(trackFile().parent_path());
    }
}

TEST_F(ParseCommand, removes_what_runs_that_were_broken_off_have_left) {
    const fs::path folder = trackFile().parent_path();
    fs::create_directories(folder);
    std::ofstream(folder / "output.kml.part-1234") << "half";
    std::ofstream(folder / "other.part-1234") << "not ours";
    fs::create_symlink("/nowhere", folder / "output.kml.part-77");
    const BesideFile atWork = openBeside(trackFile().string()); // of a run that goes on
    ASSERT_GE(atWork.descriptor, 0);
    const std::string path = write("a.MP4", recording(Driver({}, 70, 5).drive(beforeMidnight, 5)));
    EXPECT_EQ(parse({path}), 0);
    EXPECT_FALSE(fs::exists(folder / "output.kml.part-1234"));
    EXPECT_TRUE(fs::exists(folder / "other.part-1234"));
    EXPECT_TRUE(fs::exists(atWork.name));
    ::close(atWork.descriptor);
    EXPECT_EQ(parse({path}), 0);
    EXPECT_FALSE(fs::exists(atWork.name));
}

TEST_F(ParseCommand, says_when_the_track_file_cannot_be_written) {
    fs::create_directories(trackFile() / "in the way");
    EXPECT_EQ(parse({write("a.MP4", recording(Driver({}, 70, 5).drive(beforeMidnight, 5)))}), 3);
    EXPECT_THAT(errors_, HasSubstr("Parse: [not-written] "));
    EXPECT_THAT(errors_, HasSubstr("cannot be written"));
    const auto entries = fs::directory_iterator(trackFile().parent_path());
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST_F(ParseCommand, says_how_many_seconds_a_cut_off_recording_lacks) {
    const auto drive = Driver({}, 70, 5).drive(beforeMidnight, 12);
    Mp4Plan plan;
    plan.seconds = 12;
    plan.order = Mp4Plan::Order::movieFirst;
    plan.index = Mp4Plan::Index::whole;
    plan.pictureBytes = 50000;
    for (std::size_t i = 0; i < drive.size(); ++i) {
        plan.blocks.push_back({freeGpsBlock(drive[i], FreeGpsLayout::withAcceleration), i});
    }
    ByteVector bytes = buildMp4(plan);
    // A second takes 68 KiB, block and picture; two and a half of them go.
    bytes.resize(bytes.size() - std::size_t{68 * 1024} * 5 / 2);
    EXPECT_EQ(parse({write("cut.MP4", bytes)}), 0) << errors_;
    EXPECT_THAT(track(), HasSubstr("<notice code=\"cut-off\" amount=\"3\">"));
}

TEST(TrackFileWriter, tells_a_full_disk_from_other_troubles) {
    EXPECT_EQ(notWritten("/a", std::make_error_code(std::errc::no_space_on_device)).code,
              ReasonCode::diskFull);
    EXPECT_EQ(notWritten("/a", std::make_error_code(std::errc::permission_denied)).code,
              ReasonCode::notWritten);
}

TEST_F(ParseCommand, marks_a_recording_without_gps_as_such) {
    Mp4Plan plan;
    plan.seconds = 5;
    EXPECT_EQ(parse({write("plain.MP4", buildMp4(plan))}), 0);
    EXPECT_EQ(values("Latitude"), std::vector<std::string>(5, "+0.0000000"));
    EXPECT_EQ(values("fix"), std::vector<std::string>(5, "no"));
    EXPECT_EQ(values("fix_reason"), std::vector<std::string>(5, "no reading"));
    EXPECT_THAT(track(), HasSubstr("time_base=\"creation\""));
}

TEST_F(ParseCommand, writes_where_the_program_looks) {
    const EnvironmentLookup environment = [this](const std::string& name) {
        return name == "HOME" ? std::optional(folder_.string()) : std::nullopt;
    };
    std::string errors;
    EXPECT_EQ(runParse({(folder_ / "none.MP4").string()}, environment, errors), 3);
    const PosixHostPaths program(environment, "/p");
    EXPECT_TRUE(fs::exists(program.temporaryFolder() + "/output.kml")) << errors;
}

} // namespace velmorant::telemetry

// The sample card's recordings, made by the tool itself, against an independent decoder.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <sstream>

#include "telemetry/Extract.h"
#include "telemetry/Geometry.h"
#include "tests/builders/TemporaryFolder.h"

namespace velmorant::telemetry {

namespace {

namespace fs = std::filesystem;

std::string outputOf(const std::string& command) {
    std::string text;
    std::FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return text;
    }
    std::array<char, 4096> buffer{};
    while (const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        text.append(buffer.data(), got);
    }
    return ::pclose(pipe) == 0 ? text : std::string();
}

class SampleCard : public testing::Test {
  protected:
    std::vector<std::string> make(const std::string& options) {
        std::istringstream list(outputOf(std::string("\"") + VELMORANT_MAKE_CARD + "\" \"" +
                                         m_folder.file("card") + "\" --size 320x180 " + options));
        std::vector<std::string> paths;
        for (std::string line; std::getline(list, line);) {
            paths.push_back(line);
        }
        return paths;
    }

    const builders::TemporaryFolder m_folder;
};

} // namespace

TEST_F(SampleCard, holds_the_recordings_that_a_recorder_leaves) {
    const auto paths = make("--recordings 6 --seconds 6 --one-picture");
    ASSERT_EQ(paths.size(), 6U);
    std::vector<std::string> found;
    for (const std::string& path : paths) {
        const auto read = extractFile(path);
        const std::string file = fs::path(path).filename().string();
        if (!read) {
            found.push_back(file + " broken");
            continue;
        }
        if (file != "103109.MP4") { // cut off by the power loss
            EXPECT_EQ(read.value().samples.size(), 6U) << file;
        }
        found.push_back(file + " " + std::to_string(read.value().fixes()));
    }
    EXPECT_EQ(fs::path(paths[0]).parent_path().filename(), "20240612");
    const std::vector<std::string> expected = {"103045.MP4 6", "103051.MP4 4", "103057_P.MP4 6",
                                               "103103.MP4 0", "103109.MP4 4", "235957.MP4 6"};
    EXPECT_EQ(found, expected);
}

TEST_F(SampleCard, is_read_alike_by_an_independent_decoder) {
    const auto paths = make("--recordings 1 --seconds 12 --layout n2");
    ASSERT_EQ(paths.size(), 1U);
    const auto read = extractFile(paths[0]);
    ASSERT_TRUE(read);
    std::istringstream rows(
        outputOf("exiftool -q -q -ee -n -p '$gpslatitude $gpslongitude $gpsspeed $gpstrack' \"" +
                 paths[0] + "\" 2>/dev/null"));
    std::size_t count = 0;
    double latitude = 0, longitude = 0, speed = 0, heading = 0;
    while (rows >> latitude >> longitude >> speed >> heading) {
        ASSERT_LT(count, read.value().samples.size());
        const Sample& sample = read.value().samples[count++];
        EXPECT_LT(distance(sample.latitude, sample.longitude, latitude, longitude), 0.05);
        EXPECT_NEAR(sample.speed, speed, 0.05);
        EXPECT_NEAR(sample.heading, heading, 0.05);
    }
    EXPECT_EQ(count, 12U);
}

TEST_F(SampleCard, plays_with_picture_and_sound_of_the_right_length) {
    const auto paths = make("--recordings 1 --seconds 5");
    ASSERT_EQ(paths.size(), 1U);
    const std::string streams = outputOf("ffprobe -v error -count_packets -show_entries "
                                         "stream=codec_type,nb_read_packets -of csv=p=0 \"" +
                                         paths[0] + "\"");
    EXPECT_NE(streams.find("video,75"), std::string::npos) << streams;
    EXPECT_NE(streams.find("audio,"), std::string::npos) << streams;
    EXPECT_NE(outputOf("ffmpeg -v error -xerror -i \"" + paths[0] + "\" -f null - 2>&1 && echo ok"),
              "");
}

} // namespace velmorant::telemetry

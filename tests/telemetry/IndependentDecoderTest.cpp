// Made recordings of the layouts that Debian's ExifTool (12.57) reads whole, read by both.
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

enum class Rows { withFix, all }; // whether the decoder prints a row for seconds without a fix

struct Known {
    const char* name;
    Rows rows;
};

class IndependentDecoder : public testing::TestWithParam<Known> {};

std::string outputOf(const std::string& command) {
    std::string text;
    std::FILE* pipe = ::popen(command.c_str(), "r");
    std::array<char, 4096> buffer{};
    while (const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        text.append(buffer.data(), got);
    }
    ::pclose(pipe);
    return text;
}

const FamilyMaker& makerOf(std::string_view name) {
    return *std::find_if(familyMakers().begin(), familyMakers().end(),
                         [&](const FamilyMaker& maker) { return maker.name == name; });
}

} // namespace

TEST_P(IndependentDecoder, finds_the_same_places_and_speeds) {
    const FamilyMaker& maker = makerOf(GetParam().name);
    auto drive = Driver({}, 70, 5).drive(morning, 60);
    loseFix(drive, 20, 29);
    const auto path = std::filesystem::temp_directory_path() /
                      (std::string("decoder-") + GetParam().name + ".MP4");
    const ByteVector bytes = maker.make(drive);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    const auto read = extractFile(path.string());
    std::istringstream rows(outputOf("exiftool -q -q -m -f -ee -n -p "
                                     "'$gpslatitude $gpslongitude $gpsspeed' \"" +
                                     path.string() + "\" 2>/dev/null"));
    std::filesystem::remove(path);
    ASSERT_TRUE(read);
    std::size_t second = 0;
    std::size_t compared = 0;
    for (std::string line; std::getline(rows, line);) {
        std::istringstream cells(line);
        std::string latitude, longitude, speed;
        cells >> latitude >> longitude >> speed;
        if (latitude == "-") {
            continue;
        }
        while (GetParam().rows == Rows::withFix && second < drive.size() && !drive[second].fix) {
            ++second;
        }
        ASSERT_LT(second, drive.size());
        const Sample& sample = read.value().samples[second++];
        if (sample.state != FixState::good) {
            continue;
        }
        SCOPED_TRACE("second " + std::to_string(second - 1));
        EXPECT_LT(
            distance(sample.latitude, sample.longitude, std::stod(latitude), std::stod(longitude)),
            0.1);
        if (speed != "-") {
            EXPECT_NEAR(sample.speed, std::stod(speed), 0.05);
        }
        ++compared;
    }
    EXPECT_EQ(compared, 50U);
}

INSTANTIATE_TEST_SUITE_P(layouts, IndependentDecoder,
                         testing::Values(Known{"freegps_letters_28", Rows::withFix},
                                         Known{"freegps_letters_48", Rows::withFix},
                                         Known{"freegps_letters_40", Rows::withFix},
                                         Known{"freegps_enciphered_text", Rows::withFix},
                                         Known{"freegps_shifted_text", Rows::withFix},
                                         Known{"freegps_spread_floats", Rows::withFix},
                                         Known{"free_box", Rows::withFix},
                                         Known{"text_enciphered", Rows::withFix},
                                         Known{"text_gsensori", Rows::withFix},
                                         Known{"gps_box", Rows::all}, Known{"text_pndm", Rows::all},
                                         Known{"camm", Rows::all}),
                         [](const auto& row) { return row.param.name; });

} // namespace velmorant::telemetry

// Made recordings of the layouts that Debian's ExifTool (12.57) reads whole, read by both.
#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "telemetry/UtcTime.h"
#include "tests/builders/TemporaryFolder.h"
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

// Whether the decoder prints a row for seconds without a fix, or only for some seconds, which are
// told by the row's time.
enum class Rows { withFix, all, byTime };

struct Known {
    const char* name;
    Rows rows;
    double kmhPerUnit = 1; // of the speed that the decoder prints
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

// "2024:06:12" and "10:30:45Z" as seconds since the drive's start.
std::size_t secondOfRow(const std::string& date, const std::string& time) {
    CivilTime civil;
    double inMinute = 0;
    EXPECT_EQ(std::sscanf(date.c_str(), "%d:%d:%d", &civil.year, &civil.month, &civil.day), 3);
    EXPECT_EQ(std::sscanf(time.c_str(), "%d:%d:%lf", &civil.hour, &civil.minute, &inMinute), 3);
    civil.second = inMinute;
    return static_cast<std::size_t>(toMilliseconds(civil).value_or(0) / 1000 - morning);
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
    const builders::TemporaryFolder folder;
    const std::string path = folder.file(std::string(GetParam().name) + ".MP4");
    const ByteVector bytes = maker.make(drive);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    const auto read = extractFile(path);
    std::istringstream rows(outputOf("exiftool -q -q -m -f -ee -n -p "
                                     "'$gpslatitude $gpslongitude $gpsspeed $gpsdatetime' \"" +
                                     path + "\" 2>/dev/null"));
    ASSERT_TRUE(read);
    std::size_t second = 0;
    std::size_t compared = 0;
    for (std::string line; std::getline(rows, line);) {
        std::istringstream cells(line);
        std::string latitude, longitude, speed, date, time;
        cells >> latitude >> longitude >> speed >> date >> time;
        if (latitude == "-") {
            continue;
        }
        if (GetParam().rows == Rows::byTime) {
            second = secondOfRow(date, time);
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
            EXPECT_NEAR(sample.speed, std::stod(speed) * GetParam().kmhPerUnit, 0.05);
        }
        ++compared;
    }
    if (GetParam().rows == Rows::byTime) {
        EXPECT_GE(compared, 15U);
    } else {
        EXPECT_EQ(compared, 50U);
    }
}

INSTANTIATE_TEST_SUITE_P(
    layouts, IndependentDecoder,
    testing::Values(
        Known{"freegps_letters_28", Rows::withFix}, Known{"freegps_letters_48", Rows::withFix},
        Known{"freegps_letters_40", Rows::withFix}, Known{"freegps_enciphered_text", Rows::withFix},
        Known{"freegps_shifted_text", Rows::withFix}, Known{"freegps_digits_34", Rows::all},
        Known{"gpmd_fmas", Rows::withFix}, Known{"gpmd_enciphered", Rows::withFix},
        Known{"gpmf_gps5", Rows::all, kmhPerMetrePerSecond},
        Known{"freegps_spread_floats", Rows::withFix}, Known{"freegps_doubles_20", Rows::byTime},
        Known{"freegps_doubles_40", Rows::byTime}, Known{"freegps_rows_32", Rows::byTime},
        Known{"free_box", Rows::withFix}, Known{"text_enciphered", Rows::withFix},
        Known{"text_gsensori", Rows::withFix}, Known{"gps_box", Rows::all},
        Known{"text_pndm", Rows::all}, Known{"camm", Rows::all}),
    [](const auto& row) { return row.param.name; });

} // namespace velmorant::telemetry

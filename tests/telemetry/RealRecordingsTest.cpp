// Real recordings against what an independent decoder reads from them, kept beside them as tables.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "telemetry/UtcTime.h"
#include "tests/telemetry/Extraction.h"

namespace velmorant::telemetry {

namespace {

struct Row {
    double time = 0; // seconds from the recording's start
    double latitude = 0, longitude = 0;
    double speed = unknown;
};

double numberOr(const std::string& text, double otherwise) {
    return text == "-" || text.empty() ? otherwise : std::strtod(text.c_str(), nullptr);
}

// The rows of one payload are spread over its duration; its first row carries the payload's time.
std::vector<Row> readTable(const std::string& path) {
    std::ifstream in(path);
    std::vector<Row> rows;
    std::size_t payloadStart = 0;
    double payloadTime = 0;
    double payloadLength = 0;
    const auto spread = [&] {
        const std::size_t count = rows.size() - payloadStart;
        for (std::size_t i = 0; i < count; ++i) {
            rows[payloadStart + i].time =
                payloadTime + payloadLength * static_cast<double>(i) / static_cast<double>(count);
        }
        payloadStart = rows.size();
    };
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        std::vector<std::string> cells;
        std::stringstream stream(line);
        for (std::string cell; std::getline(stream, cell, ',');) {
            cells.push_back(cell);
        }
        if (cells.size() < 10 || cells[1] == "-" || (cells[0] == "-" && rows.empty())) {
            continue; // the file's own place, rounded, stands in front of the samples
        }
        if (cells[8] != "-") {
            spread();
            payloadTime = numberOr(cells[8], 0);
            payloadLength = numberOr(cells[9], 0);
        }
        rows.push_back(
            {0, numberOr(cells[1], 0), numberOr(cells[2], 0), numberOr(cells[3], unknown)});
    }
    spread();
    return rows;
}

const Row& nearest(const std::vector<Row>& rows, double time) {
    return *std::min_element(rows.begin(), rows.end(), [time](const Row& a, const Row& b) {
        return std::abs(a.time - time) < std::abs(b.time - time);
    });
}

struct RealFile {
    const char* name;
    std::size_t seconds;
    std::int64_t firstSecond;
    bool speeds;
};

class RealRecording : public testing::TestWithParam<RealFile> {};

} // namespace

TEST_P(RealRecording, agrees_with_the_independent_decoder_at_every_second) {
    const std::string path =
        std::string(VELMORANT_TEST_DATA) + "/recordings/" + GetParam().name + ".mp4";
    const auto rows = readTable(path + ".et13.csv");
    ASSERT_GT(rows.size(), 40U);
    const auto read = extractFile(path);
    ASSERT_TRUE(read) << read.error().reason;
    const auto& samples = read.value().samples;
    ASSERT_EQ(samples.size(), GetParam().seconds);
    EXPECT_EQ(samples[0].time, GetParam().firstSecond);
    EXPECT_EQ(read.value().base, TimeBase::utc);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        SCOPED_TRACE("second " + std::to_string(i));
        const Row& row = nearest(rows, static_cast<double>(i));
        EXPECT_EQ(samples[i].state, FixState::good);
        EXPECT_LT(distance(samples[i].latitude, samples[i].longitude, row.latitude, row.longitude),
                  5);
        if (GetParam().speeds) {
            ASSERT_TRUE(known(row.speed));
            EXPECT_NEAR(samples[i].speed, row.speed, 2);
        }
    }
}

TEST_P(RealRecording, measures_about_one_g_at_rest) {
    const auto read =
        extractFile(std::string(VELMORANT_TEST_DATA) + "/recordings/" + GetParam().name + ".mp4");
    ASSERT_TRUE(read);
    double sum = 0;
    for (const Sample& sample : read.value().samples) {
        EXPECT_TRUE(sample.hasAcceleration);
        EXPECT_GE(sample.strongest, sample.magnitude() - 1e-6);
        sum += sample.magnitude();
    }
    EXPECT_NEAR(sum / static_cast<double>(read.value().samples.size()), 1, 0.08);
}

INSTANTIATE_TEST_SUITE_P(gpmf, RealRecording,
                         testing::Values(RealFile{"hero7", 12, 1557166507, true},
                                         RealFile{"max-heromode", 11, 1574120714, true},
                                         RealFile{"karma", 12, 1492457278, false}),
                         [](const auto& row) {
                             std::string name = row.param.name;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(RealRecordings, the_gps_box_agrees_with_the_independent_decoder_in_every_second) {
    const std::string path = std::string(VELMORANT_TEST_DATA) + "/recordings/box.mp4";
    const auto read = extractFile(path);
    ASSERT_TRUE(read) << describe(read.error());
    EXPECT_EQ(read.value().family, "GPS box");
    std::ifstream table(path + ".et13.csv");
    std::size_t second = 0;
    for (std::string line; std::getline(table, line);) {
        int day = 0, hour = 0, minute = 0, inMinute = 0;
        double latitude = 0, longitude = 0, speed = 0;
        if (std::sscanf(line.c_str(), "2014:11:%d %d:%d:%d.000Z,%lf,%lf,%lf", &day, &hour, &minute,
                        &inMinute, &latitude, &longitude, &speed) != 7) {
            continue; // the names of the columns and the file's own row
        }
        SCOPED_TRACE(line);
        ASSERT_LT(second, read.value().samples.size());
        const Sample& sample = read.value().samples[second++];
        EXPECT_EQ(sample.time,
                  *toMilliseconds({2014, 11, day, hour, minute, static_cast<double>(inMinute)}) /
                      1000);
        EXPECT_EQ(sample.state, FixState::good) << name(sample.state);
        EXPECT_NEAR(sample.latitude, latitude, 1e-7);
        EXPECT_NEAR(sample.longitude, longitude, 1e-7);
        EXPECT_NEAR(sample.speed, speed, 0.0051);
    }
    EXPECT_EQ(second, read.value().samples.size());
    EXPECT_EQ(second, 61U);
}

} // namespace velmorant::telemetry

#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FreeGpsBlocks.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

Mp4Plan planOf(const std::vector<DriveSecond>& drive, FreeGpsLayout layout, double seconds) {
    Mp4Plan plan;
    plan.seconds = seconds;
    plan.creation = drive.front().time;
    plan.index = Mp4Plan::Index::whole;
    for (std::size_t i = 0; i < drive.size(); ++i) {
        plan.blocks.push_back({freeGpsBlock(drive[i], layout), i});
    }
    return plan;
}

// The truth as the layout can hold it: its floats are as coarse as 3.6 metres near the date line.
std::vector<DriveSecond> onFloatGrid(std::vector<DriveSecond> drive) {
    const auto rounded = [](double degrees) {
        const auto held = static_cast<float>(degreesMinutes(std::abs(degrees)));
        return std::copysign(fromDegreesMinutes(static_cast<double>(held)), degrees);
    };
    for (DriveSecond& second : drive) {
        second.latitude = rounded(second.latitude);
        second.longitude = rounded(second.longitude);
    }
    return drive;
}

constexpr Tolerance exact{0.05, 0.05, 0.05, 0.01};

struct Start {
    const char* name;
    Place place;
    std::int64_t time;
};

class FreeGpsDrive : public testing::TestWithParam<Start> {};

} // namespace

TEST_P(FreeGpsDrive, is_read_second_by_second_in_both_layouts) {
    auto drive = Driver(GetParam().place, 70, 5).drive(GetParam().time, 90);
    loseFix(drive, 40, 52);
    for (const auto layout :
         {FreeGpsLayout::withAcceleration, FreeGpsLayout::withoutAcceleration}) {
        const auto read = extractBytes(buildMp4(planOf(drive, layout, 90)));
        ASSERT_TRUE(read) << read.error().reason;
        EXPECT_EQ(read.value().family, "freeGPS blocks");
        EXPECT_EQ(read.value().base, TimeBase::utc);
        expectTruth(read.value(), onFloatGrid(drive), exact);
        if (layout == FreeGpsLayout::withAcceleration) {
            expectAcceleration(read.value(), drive);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(everywhere, FreeGpsDrive,
                         testing::Values(Start{"taipei", {25.05, 121.5}, morning},
                                         Start{"midnight", {48.1, 11.5}, 1718236770},
                                         Start{"south_west", {-22.9, -43.2}, morning},
                                         Start{"date_line", {-16.8, 179.9985}, morning}),
                         [](const auto& row) { return row.param.name; });

TEST(FreeGps, holds_the_last_place_at_speed_zero_through_a_tunnel) {
    auto drive = Driver({}, 70, 5).drive(morning, 60);
    loseFix(drive, 20, 30);
    const auto read = extractBytes(buildMp4(planOf(drive, FreeGpsLayout::withAcceleration, 60)));
    ASSERT_TRUE(read);
    const auto& samples = read.value().samples;
    for (std::size_t i = 20; i <= 30; ++i) {
        EXPECT_EQ(samples[i].latitude, samples[19].latitude);
        EXPECT_EQ(samples[i].longitude, samples[19].longitude);
        EXPECT_EQ(samples[i].speed, 0);
        EXPECT_EQ(samples[i].state, FixState::noFix);
    }
}

TEST(FreeGps, starts_at_the_first_fix_where_the_first_seconds_have_none) {
    auto drive = Driver({}, 70, 5).drive(morning, 60);
    loseFix(drive, 0, 19);
    const auto read = extractBytes(buildMp4(planOf(drive, FreeGpsLayout::withAcceleration, 60)));
    ASSERT_TRUE(read);
    expectTruth(read.value(), onFloatGrid(drive), exact);
    EXPECT_EQ(read.value().samples[0].latitude, read.value().samples[20].latitude);
    EXPECT_EQ(read.value().samples[0].longitude, read.value().samples[20].longitude);
}

TEST(FreeGps, leaves_out_the_tail_of_the_previous_recording) {
    const auto drive = Driver({}, 70, 5).drive(morning - 1, 61);
    const auto read = extractBytes(buildMp4(planOf(drive, FreeGpsLayout::withAcceleration, 60)));
    ASSERT_TRUE(read);
    expectTruth(read.value(), onFloatGrid({drive.begin() + 1, drive.end()}), exact);
    expectAcceleration(read.value(), {drive.begin() + 1, drive.end()});
}

TEST(FreeGps, takes_a_second_once_that_the_source_repeats_after_the_first_fix) {
    const auto drive = Driver({}, 70, 5).drive(morning, 60);
    auto plan = planOf(drive, FreeGpsLayout::withAcceleration, 60);
    plan.blocks.insert(plan.blocks.begin(), plan.blocks.front());
    const auto read = extractBytes(buildMp4(plan));
    ASSERT_TRUE(read);
    expectTruth(read.value(), onFloatGrid(drive), exact);
}

TEST(FreeGps, counts_fewer_blocks_than_an_index_claims) {
    const auto drive = Driver({}, 70, 5).drive(morning, 10);
    auto bytes = buildMp4(planOf(drive, FreeGpsLayout::withAcceleration, 10));
    const std::string marker = "gps ";
    const auto found = std::search(bytes.begin(), bytes.end(), marker.begin(), marker.end());
    ASSERT_NE(found, bytes.end());
    std::fill(found + 8, found + 12, std::uint8_t{0xff});
    const auto read = extractBytes(bytes);
    ASSERT_TRUE(read);
    expectTruth(read.value(), onFloatGrid(drive), exact);
    ASSERT_FALSE(read.value().notices.empty());
    EXPECT_EQ(read.value().notices[0].box, "moov/gps ");
}

TEST(FreeGps, reports_no_acceleration_where_none_is_fitted) {
    auto drive = Driver({}, 70, 5).drive(morning, 10);
    for (DriveSecond& second : drive) {
        second.right = second.forwards = second.up = 0;
    }
    const auto read = extractBytes(buildMp4(planOf(drive, FreeGpsLayout::withAcceleration, 10)));
    ASSERT_TRUE(read);
    EXPECT_FALSE(read.value().samples[3].hasAcceleration);
}

} // namespace velmorant::telemetry

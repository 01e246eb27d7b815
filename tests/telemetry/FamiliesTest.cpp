// Every layout against the truth that its recording was made from.
#include "telemetry/FamilyTable.h"
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"
#include "tools/recordings/FreeGpsBlocks.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

struct Route {
    const char* name;
    Place place;
    std::int64_t time;
    std::size_t firstFix, tunnelFrom, tunnelTo;
};

constexpr Route routes[] = {{"tunnel", {25.05, 121.5}, morning, 0, 40, 55},
                            {"late_fix", {48.1, 11.5}, morning, 12, 0, 0},
                            {"midnight", {48.1, 11.5}, 1718236770, 0, 0, 0},
                            {"south_west", {-22.9, -43.2}, morning, 0, 0, 0},
                            {"date_line", {-16.8, 179.9985}, morning, 0, 0, 0}};

DriveSeconds driveOf(const Route& route) {
    auto drive = Driver(route.place, 70, 5).drive(route.time, 90);
    if (route.firstFix > 0) {
        loseFix(drive, 0, route.firstFix - 1);
    }
    if (route.tunnelTo > 0) {
        loseFix(drive, route.tunnelFrom, route.tunnelTo);
    }
    return drive;
}

double onFloatGrid(double degrees) {
    const auto held = static_cast<double>(static_cast<float>(degreesMinutes(std::abs(degrees))));
    return std::copysign(fromDegreesMinutes(held), degrees);
}

using Parameters = std::tuple<FamilyMaker, Route>;
class EveryLayout : public testing::TestWithParam<Parameters> {};

void expectMovement(const FamilyMaker& maker, const Sample& sample, const DriveSecond& truth,
                    bool besideGap) {
    if (maker.speed == Given::yes) {
        EXPECT_NEAR(sample.speed, truth.speed, std::max(0.5, maker.speedGrid / 2 + 0.05));
    } else if (!besideGap) {
        // Derived over two seconds: a car that brakes at its hardest differs by that much.
        EXPECT_NEAR(sample.speed, truth.speed, 12);
    }
    const double off = std::abs(std::remainder(sample.heading - truth.heading, 360.0));
    if (maker.heading == Given::yes && truth.speed > 2) {
        EXPECT_LT(off, 2.1);
    } else if (truth.speed > 20 && !besideGap) {
        EXPECT_LT(off, 30);
    }
}

} // namespace

TEST_P(EveryLayout, is_read_as_it_was_driven) {
    const auto& [maker, route] = GetParam();
    const DriveSeconds drive = driveOf(route);
    const auto read = extractBytes(maker.make(drive));
    ASSERT_TRUE(read) << describe(read.error());
    EXPECT_EQ(read.value().family, maker.family);
    ASSERT_EQ(read.value().samples.size(), drive.size());
    for (std::size_t i = 0; i < drive.size(); ++i) {
        SCOPED_TRACE("second " + std::to_string(i));
        const Sample& sample = read.value().samples[i];
        if (maker.clock == Given::yes || maker.extension == ".MP4") {
            EXPECT_EQ(sample.time, drive[i].time);
        }
        ASSERT_EQ(sample.state == FixState::good, drive[i].fix) << name(sample.state);
        if (maker.acceleration == Given::yes) {
            const double tolerance = 0.01 + maker.accelerationGrid / 2;
            EXPECT_NEAR(sample.mean.x, drive[i].right, tolerance);
            EXPECT_NEAR(sample.mean.y, drive[i].forwards, tolerance);
            EXPECT_NEAR(sample.mean.z, drive[i].up, tolerance);
        }
        if (!drive[i].fix) {
            EXPECT_EQ(sample.speed, 0);
            continue;
        }
        const bool coarse = maker.places == PlaceGrid::floatMinutes;
        EXPECT_LT(distance(sample.latitude, sample.longitude,
                           coarse ? onFloatGrid(drive[i].latitude) : drive[i].latitude,
                           coarse ? onFloatGrid(drive[i].longitude) : drive[i].longitude),
                  1 + maker.placeGrid * 0.71); // half a grid step in both directions
        const bool besideGap =
            i == 0 || i + 1 == drive.size() || !drive[i - 1].fix || !drive[i + 1].fix;
        expectMovement(maker, sample, drive[i], besideGap);
    }
}

INSTANTIATE_TEST_SUITE_P(families, EveryLayout,
                         testing::Combine(testing::ValuesIn(familyMakers().begin(),
                                                            familyMakers().end()),
                                          testing::ValuesIn(routes)),
                         [](const auto& row) {
                             return std::string(std::get<0>(row.param).name) + "_" +
                                    std::get<1>(row.param).name;
                         });

TEST(Families, every_row_of_the_table_has_a_recording_that_it_reads) {
    for (const Family& family : families()) {
        const bool made =
            std::any_of(familyMakers().begin(), familyMakers().end(),
                        [&](const FamilyMaker& maker) { return maker.family == family.name; });
        // These read other files than the recording, which tests of their own write.
        const bool beside = family.name == "files beside the recording" ||
                            family.name == "front recording" ||
                            family.name == "track file beside the recording";
        EXPECT_TRUE(made || beside) << family.name;
    }
}

} // namespace velmorant::telemetry

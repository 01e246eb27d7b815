// Fields that stand for nothing, and fields that decoders read in two ways.
#include "telemetry/families/VvPlaces.h"
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"
#include "tools/recordings/FreeGpsBlocks.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

bool noticed(const Telemetry& telemetry, std::string_view words) {
    return std::any_of(
        telemetry.notices.begin(), telemetry.notices.end(),
        [&](const Error& notice) { return notice.reason.find(words) != std::string::npos; });
}

ByteVector vvMinutes(const DriveSecond& second) {
    ByteWriter out;
    out.i32le(making::whole(std::copysign(making::latitudeMinutes(second), second.latitude) * 1e5));
    out.i32le(
        making::whole(std::copysign(making::longitudeMinutes(second), second.longitude) * 1e5));
    return making::blockAround(31, out.zeros(12).text("VV").take());
}

ByteVector vvDegreesBlock(const DriveSecond& second) {
    ByteWriter out;
    out.i32le(making::whole(second.latitude * 1e7)).i32le(making::whole(second.longitude * 1e7));
    return making::blockAround(31, out.zeros(12).text("VV").take());
}

void expectPlaces(const Telemetry& read, const DriveSeconds& truth) {
    ASSERT_EQ(read.samples.size(), truth.size());
    for (std::size_t i = 0; i < truth.size(); ++i) {
        EXPECT_EQ(read.samples[i].state, FixState::good) << i;
        EXPECT_LT(distance(read.samples[i].latitude, read.samples[i].longitude, truth[i].latitude,
                           truth[i].longitude),
                  1)
            << i;
    }
}

} // namespace

TEST(VvPlaces, are_degrees_where_minutes_would_reach_60) {
    const auto drive = Driver({48.71, 11.5}, 70, 5).drive(morning, 30);
    const auto read = extractBytes(making::withBlocks(drive, vvDegreesBlock));
    ASSERT_TRUE(read);
    expectPlaces(read.value(), drive);
    EXPECT_TRUE(noticed(read.value(), "more than 59 minutes"));
}

TEST(VvPlaces, are_degrees_and_minutes_where_degrees_would_leap) {
    auto drive = Driver({48.998, 11.5}, 0, 5).drive(morning, 60); // over the 49th degree
    ASSERT_GT(drive.back().latitude, 49);
    const auto read = extractBytes(making::withBlocks(drive, vvMinutes));
    ASSERT_TRUE(read);
    expectPlaces(read.value(), drive);
    EXPECT_TRUE(noticed(read.value(), "degrees and minutes: as degrees they would leap"));
}

TEST(VvPlaces, say_so_where_nothing_tells_their_unit) {
    const auto drive = Driver({48.1, 11.5}, 70, 5).drive(morning, 30);
    const auto read = extractBytes(making::withBlocks(drive, vvDegreesBlock));
    ASSERT_TRUE(read);
    expectPlaces(read.value(), drive);
    EXPECT_TRUE(noticed(read.value(), "nothing in this recording tells the two apart"));
}

TEST(AbsentValues, give_no_heading_of_510_degrees_and_no_altitude_of_65_kilometres) {
    const auto& makers = familyMakers();
    const auto maker = std::find_if(makers.begin(), makers.end(), [](const FamilyMaker& m) {
        return m.name == "ssmd_32_without_heading";
    });
    auto drive = Driver({48.1, 11.5}, 70, 5).drive(morning, 30);
    for (DriveSecond& second : drive) {
        second.altitude = second.time % 2 == 0 ? 65531 : 65535;
    }
    const auto read = extractBytes(maker->make(drive));
    ASSERT_TRUE(read);
    for (std::size_t i = 5; i + 5 < drive.size(); ++i) {
        EXPECT_FALSE(known(read.value().samples[i].altitude)) << i;
        if (drive[i].speed > 20) {
            const double off = read.value().samples[i].heading - drive[i].heading;
            EXPECT_LT(std::abs(std::remainder(off, 360.0)), 30) << i;
        }
    }
}

TEST(AbsentValues, give_no_acceleration_of_255_counts_on_every_axis) {
    auto drive = Driver({48.1, 11.5}, 70, 5).drive(morning, 10);
    for (DriveSecond& second : drive) {
        second.right = second.forwards = second.up = 255.0 / 256;
    }
    const auto maker =
        std::find_if(familyMakers().begin(), familyMakers().end(),
                     [](const FamilyMaker& m) { return m.name == "freegps_letters_28"; });
    const auto read = extractBytes(maker->make(drive));
    ASSERT_TRUE(read);
    EXPECT_FALSE(read.value().samples[3].hasAcceleration);
}

} // namespace velmorant::telemetry

// Which clock a recording's times were read from.
#include "telemetry/ClockEvidence.h"

#include "telemetry/UtcTime.h"
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

constexpr std::int64_t taipei = 8 * 3600;

ClockWitnesses witnesses(std::int64_t clock) {
    ClockWitnesses given;
    given.declared = TimeBase::utc;
    given.clock = clock;
    given.path = "/card/made.mp4";
    given.duration = 60;
    given.longitude = 121.5;
    return given;
}

DriveSeconds shifted(DriveSeconds drive, std::int64_t seconds) {
    for (DriveSecond& second : drive) {
        second.time += seconds;
    }
    return drive;
}

const FamilyMaker& maker(std::string_view name) {
    return *std::find_if(familyMakers().begin(), familyMakers().end(),
                         [&](const FamilyMaker& m) { return m.name == name; });
}

} // namespace

TEST(ClockEvidence, reads_date_and_time_from_the_names_that_recorders_give) {
    for (const char* name :
         {"/card/20240612_103045.MP4", "2024_0612_103045_001F.MP4", "MOVI20240612103045.mp4",
          "2024-06-12 10-30-45.mp4", "240612_103045_F.MP4", "NO20240612-103045-000017F.MP4"}) {
        EXPECT_EQ(timeInName(name), morning) << name;
    }
    for (const char* name : {"made.mp4", "GX010123.MP4", "20241312_103045.MP4", "1718188245.mp4",
                             "/2024/06/12/F0001.MP4", "202406121030450.MP4"}) {
        EXPECT_FALSE(timeInName(name)) << name;
    }
}

TEST(ClockEvidence, keeps_what_a_published_format_defines) {
    auto given = witnesses(morning);
    given.standard = true;
    given.path = "20240612_103045.mp4";
    EXPECT_EQ(judgeClock(given).base, TimeBase::utc);
}

TEST(ClockEvidence, takes_the_clock_that_names_the_file_for_the_recorders_own) {
    auto given = witnesses(morning + taipei);
    given.path = "20240612_183047.mp4";
    EXPECT_EQ(judgeClock(given).base, TimeBase::camera);
    EXPECT_FALSE(judgeClock(given).minutesAheadOfUtc);
    given.creation = morning;
    EXPECT_EQ(judgeClock(given).minutesAheadOfUtc, 480);
    given.creation = morning + 60; // set when the recording ended
    EXPECT_EQ(judgeClock(given).minutesAheadOfUtc, 480);
    given.creation = morning + taipei; // local as well: it tells no zone
    EXPECT_FALSE(judgeClock(given).minutesAheadOfUtc);
    EXPECT_EQ(judgeClock(given).base, TimeBase::camera);
}

TEST(ClockEvidence, believes_utc_where_the_name_is_ahead_by_the_zone_of_the_place) {
    auto given = witnesses(morning);
    given.path = "20240612_183045.mp4";
    EXPECT_EQ(judgeClock(given).base, TimeBase::utc);
    EXPECT_NE(judgeClock(given).reasons.front().find("8 h ahead"), std::string::npos);
    given.path = "20240612_184145.mp4"; // eleven minutes: a clock that runs wrong says nothing
    EXPECT_EQ(judgeClock(given).base, TimeBase::utc);
    EXPECT_NE(judgeClock(given).reasons.front().find("nothing"), std::string::npos);
}

TEST(ClockEvidence, asks_the_place_which_of_two_clocks_is_local) {
    auto given = witnesses(morning + taipei);
    given.creation = morning;
    EXPECT_EQ(judgeClock(given).base, TimeBase::camera);
    EXPECT_EQ(judgeClock(given).minutesAheadOfUtc, 480);
    given = witnesses(morning);
    given.creation = morning + taipei;
    EXPECT_EQ(judgeClock(given).base, TimeBase::utc);
    given.longitude = -46.6; // three hours behind
    given.creation = morning - 3 * 3600;
    EXPECT_EQ(judgeClock(given).base, TimeBase::utc);
    given = witnesses(morning - 3 * 3600);
    given.longitude = -46.6;
    given.creation = morning;
    EXPECT_EQ(judgeClock(given).minutesAheadOfUtc, -180);
    EXPECT_EQ(describe(judgeClock(given)), "the recorder's own clock, 3 h behind UTC");
}

TEST(ClockEvidence, knows_the_zone_by_which_a_clock_was_set_at_the_first_position) {
    auto given = witnesses(morning + taipei);
    given.setAtFirstFix = taipei;
    EXPECT_EQ(judgeClock(given).base, TimeBase::camera);
    EXPECT_EQ(judgeClock(given).minutesAheadOfUtc, 480);
    given = witnesses(morning);
    given.setAtFirstFix = -taipei;
    EXPECT_EQ(judgeClock(given).base, TimeBase::utc);
    given.longitude = unknown;
    EXPECT_EQ(judgeClock(given).base, TimeBase::camera);
    given.setAtFirstFix = 4711; // never set before: no zone
    EXPECT_EQ(judgeClock(given).base, TimeBase::utc);
}

TEST(ClockEvidence, labels_recordings_of_recorders_set_to_local_time) {
    const auto drive = Driver({}, 70, 5).drive(morning, 60);
    for (const char* name : {"freegps_letters_28", "freegps_letters_48", "stream_row"}) {
        SCOPED_TRACE(name);
        const auto local = maker(name).make(shifted(drive, taipei));
        const auto read = extractBytes(local, "/card/20240612_183045.MP4");
        ASSERT_TRUE(read);
        EXPECT_EQ(read.value().base, TimeBase::camera);
        EXPECT_EQ(read.value().samples[5].recordedBase, TimeBase::camera);
        EXPECT_EQ(read.value().samples[5].time, morning + taipei + 5);
        EXPECT_FALSE(read.value().clock.reasons.empty());
        const auto utc = extractBytes(maker(name).make(drive), "/card/20240612_183045.MP4");
        ASSERT_TRUE(utc);
        EXPECT_EQ(utc.value().base, TimeBase::utc);
    }
}

TEST(ClockEvidence, labels_a_clock_that_a_cold_start_sets_by_whole_hours) {
    auto drive = shifted(Driver({}, 70, 5).drive(morning, 60), taipei);
    loseFix(drive, 0, 19);
    for (std::size_t i = 0; i < 20; ++i) {
        drive[i].time -= taipei;
    }
    const auto read = extractBytes(maker("freegps_letters_28").make(drive));
    ASSERT_TRUE(read);
    EXPECT_EQ(read.value().base, TimeBase::camera);
    EXPECT_EQ(read.value().clock.minutesAheadOfUtc, 480);
    EXPECT_EQ(read.value().samples[30].time, drive[30].time);
}

} // namespace velmorant::telemetry

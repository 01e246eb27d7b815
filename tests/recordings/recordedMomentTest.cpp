#include "recordings/recordedMoment.h"

#include <gtest/gtest.h>

namespace velmorant {
namespace {

void addDot(clsDot& track, const std::string& date, std::int32_t second) {
    track.SetDot(date, "", 0, second, "121.5", "25.25", 0, 90, 0, 0, 0);
}

clsDot trackWith(TimeBase base, const std::string& date, int dots = 3) {
    clsDot track;
    for (int i = 0; i < dots; ++i)
        addDot(track, i == 0 ? date : "", i);
    TrackDetails details;
    details.timeBase = base;
    details.samples.resize(static_cast<std::size_t>(dots));
    track.setDetails(details);
    return track;
}

std::string momentText(const clsDot& track, double position) {
    const auto moment = recordedMoment(&track, position);
    return moment ? dateAndTime(moment->seconds) : "none";
}

TEST(recordedMoment, is_the_first_dots_time_plus_the_position) {
    const clsDot track = trackWith(TimeBase::Utc, "2012/10/9 10:30:45");
    EXPECT_EQ(momentText(track, 0), "2012/10/09 10:30:45");
    EXPECT_EQ(momentText(track, 1.9), "2012/10/09 10:30:46");
    EXPECT_EQ(momentText(track, 60), "2012/10/09 10:31:45") << "also past the track's end";
}

TEST(recordedMoment, crosses_midnight_and_the_year) {
    EXPECT_EQ(momentText(trackWith(TimeBase::Utc, "2012/12/31 23:59:59"), 1),
              "2013/01/01 00:00:00");
    EXPECT_EQ(momentText(trackWith(TimeBase::Utc, "2012/2/28 24:00:01"), 0), "2012/02/29 00:00:01");
    EXPECT_EQ(momentText(trackWith(TimeBase::Utc, "1969/12/31 23:59:58"), 1),
              "1969/12/31 23:59:59");
}

TEST(recordedMoment, tells_the_recorders_own_clock_from_utc) {
    struct Clock {
        TimeBase base;
        RecordedClock clock;
    };
    for (const Clock each : {Clock{TimeBase::Utc, RecordedClock::Utc},
                             {TimeBase::Unknown, RecordedClock::Utc},
                             {TimeBase::Creation, RecordedClock::Utc},
                             {TimeBase::Camera, RecordedClock::Camera}}) {
        const clsDot track = trackWith(each.base, "2012/10/9 10:30:45");
        const auto moment = recordedMoment(&track, 0);
        ASSERT_TRUE(moment);
        EXPECT_EQ(moment->clock, each.clock);
        EXPECT_EQ(moment->base, each.base);
    }
}

TEST(recordedMoment, is_absent_where_nothing_is_known) {
    EXPECT_FALSE(recordedMoment(nullptr, 0));
    EXPECT_EQ(momentText(trackWith(TimeBase::None, "1970/1/1 00:00:00"), 0), "none");
    EXPECT_EQ(momentText(trackWith(TimeBase::Utc, "", 0), 0), "none");
    for (const char* date : {"", "2012/10/9", "2012/13/9 10:30:45", "2012/2/30 10:30:45",
                             "2012/10/9 10:30", "a/b/c d:e:f", "2012/10/9 10:30:45 x"})
        EXPECT_EQ(momentText(trackWith(TimeBase::Utc, date), 0), "none") << date;
}

TEST(recordedPlace, is_the_place_of_that_second) {
    const clsDot track = trackWith(TimeBase::Utc, "2012/10/9 10:30:45");
    const auto place = recordedPlace(&track, 1.5);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->longitude, 121.5);
    EXPECT_EQ(place->latitude, 25.25);
    EXPECT_EQ(place->heading, 90);
    EXPECT_TRUE(recordedPlace(&track, 100)) << "past the end: the last place";
    EXPECT_FALSE(recordedPlace(nullptr, 0));
}

TEST(recordedPlace, is_absent_without_a_fix_and_at_nowhere) {
    clsDot track = trackWith(TimeBase::Utc, "2012/10/9 10:30:45");
    TrackDetails details = track.details();
    details.samples[1].hasFix = false;
    track.setDetails(details);
    EXPECT_TRUE(recordedPlace(&track, 0));
    EXPECT_FALSE(recordedPlace(&track, 1));
    EXPECT_TRUE(recordedPlace(&track, 2));
    clsDot nowhere;
    nowhere.SetDot("", "", 0, 0, "+0.0000000", "+0.0000000", 0, 0, 0, 0, 0);
    EXPECT_FALSE(recordedPlace(&nowhere, 0));
}

TEST(recordedPlace, finds_the_second_of_a_track_with_gaps) {
    clsDot track;
    for (const int second : {0, 5, 10})
        track.SetDot("", "", 0, second, std::to_string(second + 1), "1", 0, 0, 0, 0, 0);
    EXPECT_EQ(recordedPlace(&track, 4.9)->longitude, 1);
    EXPECT_EQ(recordedPlace(&track, 5)->longitude, 6);
    EXPECT_EQ(recordedPlace(&track, 99)->longitude, 11);
}

TEST(recordedMoment, positions_are_shown_in_minutes_and_seconds) {
    EXPECT_EQ(minutesAndSeconds(0), "00:00");
    EXPECT_EQ(minutesAndSeconds(65.9), "01:05");
    EXPECT_EQ(minutesAndSeconds(4503), "75:03");
    EXPECT_EQ(minutesAndSeconds(-1), "00:00");
    EXPECT_EQ(timeOfDay(-1), "23:59:59");
}

} // namespace
} // namespace velmorant

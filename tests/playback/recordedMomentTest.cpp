#include "playback/recordedMoment.h"

#include <gtest/gtest.h>

namespace velmorant {
namespace {

void addDot(clsDot& track, const std::string& date, std::int32_t second) {
    track.SetDot(date, "", 0, second, "121.5", "25.25", 0, 90, 0, 0, 0);
}

ProgramState stateWith(const std::string& timeBase, const std::string& date, int dots = 3) {
    ProgramState state;
    state.currentTrack = std::make_shared<clsDot>();
    for (int i = 0; i < dots; ++i)
        addDot(*state.currentTrack, i == 0 ? date : "", i);
    TrackDetails details;
    details.timeBase = timeBase;
    details.samples.resize(static_cast<std::size_t>(dots));
    state.loadedTracks.add("1No", state.currentTrack, details);
    return state;
}

std::string momentText(const ProgramState& state, double position) {
    const auto moment = recordedMoment(state, position);
    return moment ? dateAndTime(moment->seconds) : "none";
}

TEST(recordedMoment, is_the_first_dots_time_plus_the_position) {
    const ProgramState state = stateWith("utc", "2012/10/9 10:30:45");
    EXPECT_EQ(momentText(state, 0), "2012/10/09 10:30:45");
    EXPECT_EQ(momentText(state, 1.9), "2012/10/09 10:30:46");
    EXPECT_EQ(momentText(state, 60), "2012/10/09 10:31:45") << "also past the track's end";
}

TEST(recordedMoment, crosses_midnight_and_the_year) {
    EXPECT_EQ(momentText(stateWith("utc", "2012/12/31 23:59:59"), 1), "2013/01/01 00:00:00");
    EXPECT_EQ(momentText(stateWith("utc", "2012/2/28 24:00:01"), 0), "2012/02/29 00:00:01");
    EXPECT_EQ(momentText(stateWith("utc", "1969/12/31 23:59:58"), 1), "1969/12/31 23:59:59");
}

TEST(recordedMoment, tells_the_recorders_own_clock_from_utc) {
    EXPECT_EQ(recordedMoment(stateWith("utc", "2012/10/9 10:30:45"), 0)->clock, RecordedClock::Utc);
    EXPECT_EQ(recordedMoment(stateWith("", "2012/10/9 10:30:45"), 0)->clock, RecordedClock::Utc);
    EXPECT_EQ(recordedMoment(stateWith("creation", "2012/10/9 10:30:45"), 0)->clock,
              RecordedClock::Utc);
    EXPECT_EQ(recordedMoment(stateWith("camera", "2012/10/9 10:30:45"), 0)->clock,
              RecordedClock::Camera);
}

TEST(recordedMoment, is_absent_where_nothing_is_known) {
    EXPECT_EQ(momentText(ProgramState{}, 0), "none");
    EXPECT_EQ(momentText(stateWith("none", "1970/1/1 00:00:00"), 0), "none");
    EXPECT_EQ(momentText(stateWith("utc", "", 0), 0), "none");
    for (const char* date : {"", "2012/10/9", "2012/13/9 10:30:45", "2012/2/30 10:30:45",
                             "2012/10/9 10:30", "a/b/c d:e:f", "2012/10/9 10:30:45 x"})
        EXPECT_EQ(momentText(stateWith("utc", date), 0), "none") << date;
}

TEST(recordedPlace, is_the_place_of_that_second) {
    const ProgramState state = stateWith("utc", "2012/10/9 10:30:45");
    const auto place = recordedPlace(state, 1.5);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->longitude, 121.5);
    EXPECT_EQ(place->latitude, 25.25);
    EXPECT_EQ(place->heading, 90);
    EXPECT_TRUE(recordedPlace(state, 100)) << "past the end: the last place";
    EXPECT_FALSE(recordedPlace(ProgramState{}, 0));
}

TEST(recordedPlace, is_absent_without_a_fix_and_at_nowhere) {
    ProgramState state = stateWith("utc", "2012/10/9 10:30:45");
    TrackDetails details = *state.loadedTracks.details("1No");
    details.samples[1].hasFix = false;
    state.loadedTracks.clear();
    state.loadedTracks.add("1No", state.currentTrack, details);
    EXPECT_TRUE(recordedPlace(state, 0));
    EXPECT_FALSE(recordedPlace(state, 1));
    EXPECT_TRUE(recordedPlace(state, 2));
    state.currentTrack = std::make_shared<clsDot>();
    state.currentTrack->SetDot("", "", 0, 0, "+0.0000000", "+0.0000000", 0, 0, 0, 0, 0);
    EXPECT_FALSE(recordedPlace(state, 0));
}

TEST(recordedPlace, finds_the_second_of_a_track_with_gaps) {
    ProgramState state;
    state.currentTrack = std::make_shared<clsDot>();
    for (const int second : {0, 5, 10})
        state.currentTrack->SetDot("", "", 0, second, std::to_string(second + 1), "1", 0, 0, 0, 0,
                                   0);
    EXPECT_EQ(recordedPlace(state, 4.9)->longitude, 1);
    EXPECT_EQ(recordedPlace(state, 5)->longitude, 6);
    EXPECT_EQ(recordedPlace(state, 99)->longitude, 11);
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

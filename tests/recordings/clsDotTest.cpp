#include "recordings/clsDot.h"

#include "common/StepError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace velmorant {
namespace {

void addSecond(clsDot& track, std::int32_t second) {
    track.SetDot("2012/9/7 08:05:09", "00:00", 0, second, "0", "0", 0, 0, 0, 0, 0);
}

void addPlace(clsDot& track, const std::string& longitude, const std::string& latitude) {
    track.SetDot("", "", 0, track.count(), longitude, latitude, 0, 0, 0, 0, 0);
}

void addG(clsDot& track, double gX, double gY, double gZ) {
    track.SetDot("", "", 0, 0, "0", "0", 0, 0, gX, gY, gZ);
}

clsDot oneFilledDot() {
    clsDot track;
    track.SetDot("2012/9/7 08:05:09", "01:05", 60, 65, "121.5", "25", 1.01, 90, 0.1, -0.2, 0.98);
    return track;
}

TEST(clsDot, a_new_track_is_empty_and_its_cursor_names_no_dot) {
    const clsDot track;
    EXPECT_EQ(track.count(), 0);
    EXPECT_EQ(track.lPlayLocal(), 0);
    EXPECT_EQ(track.lSerial(), 0);
    EXPECT_EQ(track.dSpeed(), 0.0);
    EXPECT_EQ(track.strTime(), "");
    EXPECT_EQ(track.maximumSpeed(), 0.0);
    EXPECT_EQ(track.maximumG(), 0.0);
    EXPECT_EQ(track.minimumG(), 0.0);
    EXPECT_EQ(track.GetDotTime(1), 0) << "the spare dot exists from the start";
    EXPECT_THROW(track.GetDotTime(2), StepError);
}

TEST(clsDot, the_current_dot_is_read_field_by_field) {
    clsDot track = oneFilledDot();
    track.lPlayLocal(1);
    EXPECT_EQ(track.iAngelValue(), 90);
    EXPECT_EQ(track.sLonLat(), "121.5|25");
    EXPECT_EQ(track.dSpeed(), 60.0);
    EXPECT_EQ(track.dG_Sum(), 1.01);
    EXPECT_EQ(track.dG_x(), 0.1);
    EXPECT_EQ(track.dG_y(), -0.2);
    EXPECT_EQ(track.dG_z(), 0.98);
    EXPECT_EQ(track.lSecond(), 65.0);
    EXPECT_EQ(track.strTime(), "01:05");
    EXPECT_EQ(track.strDate(), "2012/9/7 08:05:09");
}

TEST(clsDot, a_current_index_outside_reads_zeros_and_empty_texts) {
    clsDot track = oneFilledDot();
    for (const std::int32_t outside : {-1, 0, 2, 3, 2147483647}) {
        track.lPlayLocal(outside);
        EXPECT_EQ(track.lPlayLocal(), outside);
        EXPECT_EQ(track.iAngelValue(), 0) << outside;
        EXPECT_EQ(track.sLonLat(), "") << outside;
        EXPECT_EQ(track.dSpeed(), 0.0) << outside;
        EXPECT_EQ(track.dG_Sum(), 0.0) << outside;
        EXPECT_EQ(track.dG_x(), 0.0) << outside;
        EXPECT_EQ(track.dG_y(), 0.0) << outside;
        EXPECT_EQ(track.dG_z(), 0.0) << outside;
        EXPECT_EQ(track.lSecond(), 0.0) << outside;
        EXPECT_EQ(track.strTime(), "") << outside;
        EXPECT_EQ(track.strDate(), "") << outside;
    }
}

TEST(clsDot, coordinates_become_integers_of_a_ten_millionth_degree) {
    const clsDot track = oneFilledDot();
    EXPECT_EQ(track.dot(1).x, 1215000000);
    EXPECT_EQ(track.dot(1).y, 250000000);
    EXPECT_EQ(track.lPtLocal(1215000000, 250000000), 1);
}

TEST(clsDot, exactly_one_spare_dot_stands_behind_the_last) {
    clsDot track;
    for (std::int32_t i = 1; i <= 5; ++i) {
        addSecond(track, i * 10);
        EXPECT_EQ(track.count(), i);
        EXPECT_EQ(track.lastSecond(), i * 10);
        EXPECT_EQ(track.GetDotTime(i), i * 10);
        EXPECT_EQ(track.GetDotTime(i + 1), 0);
        EXPECT_THROW(track.GetDotTime(i + 2), StepError);
    }
    EXPECT_THROW(track.GetDotTime(0), StepError);
}

struct BadPlace {
    const char* longitude;
    const char* latitude;
};

TEST(clsDot, a_coordinate_that_is_no_number_or_too_large_is_an_error_and_adds_no_dot) {
    const BadPlace places[] = {{"east", "25"},      {"121.5", ""},  {"121.5", "25N"}, {"215", "25"},
                               {"121.5", "-214.8"}, {"1e300", "0"}, {"121,5", "25"}};
    for (const BadPlace& place : places) {
        clsDot track;
        EXPECT_THROW(
            track.SetDot("date", "time", 50, 7, place.longitude, place.latitude, 0, 0, 9, 0, 0),
            StepError)
            << place.longitude << "|" << place.latitude;
        EXPECT_EQ(track.count(), 0);
        EXPECT_EQ(track.maximumSpeed(), 0.0);
        EXPECT_EQ(track.maximumG(), 0.0);
        EXPECT_EQ(track.GetDotTime(1), 7) << "the spare dot is half written";
        addSecond(track, 3);
        EXPECT_EQ(track.count(), 1);
        EXPECT_EQ(track.GetDotTime(1), 3);
    }
}

TEST(clsDot, extremes_keep_zero_inside_their_range) {
    clsDot track;
    addG(track, -0.5, -0.2, -1.5);
    EXPECT_EQ(track.maximumG(), 0.0);
    EXPECT_EQ(track.minimumG(), -1.5);
    addG(track, 0.1, 2.5, 0.3);
    EXPECT_EQ(track.maximumG(), 2.5);
    EXPECT_EQ(track.minimumG(), -1.5);
}

TEST(clsDot, the_sum_of_accelerations_does_not_count_for_the_extremes) {
    clsDot track;
    track.SetDot("", "", 0, 0, "0", "0", 5.0, 0, 0.1, 0.1, 0.1);
    EXPECT_EQ(track.maximumG(), 0.1);
}

TEST(clsDot, the_maximum_speed_is_never_below_zero) {
    clsDot track;
    track.SetDot("", "", -20, 0, "0", "0", 0, 0, 0, 0, 0);
    EXPECT_EQ(track.maximumSpeed(), 0.0);
    track.SetDot("", "", 80, 1, "0", "0", 0, 0, 0, 0, 0);
    track.SetDot("", "", 30, 2, "0", "0", 0, 0, 0, 0, 0);
    EXPECT_EQ(track.maximumSpeed(), 80.0);
}

TEST(clsDot, the_cursor_moves_to_the_first_interval_that_holds_the_second) {
    clsDot track;
    for (std::int32_t second = 0; second < 3; ++second)
        addSecond(track, second);
    track.ForcePlayLocal(1);
    EXPECT_EQ(track.lPlayLocal(), 1);
    track.lPlayLocal(7);
    track.ForcePlayLocal(2);
    EXPECT_EQ(track.lPlayLocal(), 7) << "only the first interval of three dots is tried";
    track.ForcePlayLocal(5);
    EXPECT_EQ(track.lPlayLocal(), 7);
}

TEST(clsDot, the_last_dot_never_becomes_current_by_a_second) {
    clsDot track;
    for (std::int32_t second = 0; second < 10; ++second)
        addSecond(track, second);
    track.ForcePlayLocal(8);
    EXPECT_EQ(track.lPlayLocal(), 8);
    track.ForcePlayLocal(9);
    EXPECT_EQ(track.lPlayLocal(), 8);
}

TEST(clsDot, a_track_of_fewer_than_three_dots_never_moves_the_cursor) {
    clsDot track;
    track.ForcePlayLocal(0);
    EXPECT_EQ(track.lPlayLocal(), 0);
    addSecond(track, 0);
    track.ForcePlayLocal(0);
    EXPECT_EQ(track.lPlayLocal(), 0);
    addSecond(track, 1);
    track.ForcePlayLocal(0);
    EXPECT_EQ(track.lPlayLocal(), 0);
}

TEST(clsDot, of_two_dots_with_one_second_the_earlier_one_wins) {
    clsDot track;
    for (const std::int32_t second : {0, 5, 5, 5, 6, 7})
        addSecond(track, second);
    track.ForcePlayLocal(5);
    EXPECT_EQ(track.lPlayLocal(), 1);
    track.ForcePlayLocal(6);
    EXPECT_EQ(track.lPlayLocal(), 4);
}

TEST(clsDot, right_and_bottom_edges_of_a_segment_lie_outside) {
    clsDot track;
    addPlace(track, "1", "1");
    addPlace(track, "2", "2");
    addPlace(track, "9", "9");
    EXPECT_EQ(track.lPtLocal(10000000, 10000000), 1);
    EXPECT_EQ(track.lPtLocal(19999999, 19999999), 1);
    EXPECT_EQ(track.lPtLocal(20000000, 10000000), 0);
    EXPECT_EQ(track.lPtLocal(10000000, 20000000), 0);
    EXPECT_EQ(track.lPtLocal(20000000, 20000000), 0);
    EXPECT_EQ(track.lPtLocal(9999999, 10000000), 0);
    EXPECT_EQ(track.lPtLocal(30000000, 30000000), 0) << "the last segment is never tried";
}

TEST(clsDot, a_segment_due_north_or_east_is_never_hit) {
    clsDot track;
    addPlace(track, "1", "1");
    addPlace(track, "1", "2");
    addPlace(track, "2", "2");
    addPlace(track, "3", "3");
    EXPECT_EQ(track.lPtLocal(10000000, 15000000), 0);
    EXPECT_EQ(track.lPtLocal(15000000, 20000000), 0);
}

TEST(clsDot, the_first_of_two_segments_over_a_point_is_found) {
    clsDot track;
    for (const char* place : {"0", "4", "1", "9", "0"})
        addPlace(track, place, place);
    EXPECT_EQ(track.lPtLocal(20000000, 20000000), 1);
    EXPECT_EQ(track.lPtLocal(50000000, 50000000), 3);
}

TEST(clsDot, a_single_dot_is_hit_only_exactly) {
    clsDot track;
    EXPECT_EQ(track.lPtLocal(0, 0), 0) << "an empty track holds nothing";
    addPlace(track, "1.5", "2.5");
    EXPECT_EQ(track.lPtLocal(15000000, 25000000), 1);
    EXPECT_EQ(track.lPtLocal(15000001, 25000000), 0);
    addPlace(track, "3", "3");
    EXPECT_EQ(track.lPtLocal(15000000, 25000000), 0) << "two dots have no segment to try";
}

TEST(clsDot, the_label_of_a_dot_holds_its_time_and_speed_in_the_display_unit) {
    const clsDot track = oneFilledDot();
    EXPECT_EQ(track.ShowInfo(1, 1.0), "Time:01:05\rSpeed:60.00");
    EXPECT_EQ(track.ShowInfo(1, 0.6213712), "Time:01:05\rSpeed:37.28");
    EXPECT_EQ(track.ShowInfo(1, 0.5399568), "Time:01:05\rSpeed:32.40");
    EXPECT_EQ(track.ShowInfo(2, 1.0), "Time:\rSpeed:0.00") << "the spare dot";
    EXPECT_EQ(track.ShowInfo(0, 1.0), "");
    EXPECT_EQ(track.ShowInfo(3, 1.0), "");
}

TEST(clsDot, readers_by_index_answer_zero_outside) {
    const clsDot track = oneFilledDot();
    EXPECT_EQ(track.MouseSecond(1), 65);
    EXPECT_EQ(track.MouseSpeed(1), 60);
    for (const std::int32_t outside : {-5, 0, 3}) {
        EXPECT_EQ(track.MouseSecond(outside), 0);
        EXPECT_EQ(track.MouseSpeed(outside), 0);
    }
}

TEST(clsDot, the_serial_is_kept_for_the_owner) {
    clsDot track;
    track.lSerial(42);
    EXPECT_EQ(track.lSerial(), 42);
}

// The searches as the plain loops that describe them.

std::int32_t plainForcePlayLocal(const clsDot& track, std::int32_t second) {
    for (std::int32_t i = 1; i <= track.count() - 2; ++i)
        if (track.MouseSecond(i) <= second && track.MouseSecond(i + 1) >= second)
            return i;
    return track.lPlayLocal();
}

std::int32_t plainPtLocal(const clsDot& track, std::int32_t x, std::int32_t y) {
    if (track.count() == 1 && track.dot(1).x == x && track.dot(1).y == y)
        return 1;
    for (std::int32_t i = 1; i <= track.count() - 2; ++i) {
        const TrackDot& a = track.dot(i);
        const TrackDot& b = track.dot(i + 1);
        if (std::min(a.x, b.x) <= x && x < std::max(a.x, b.x) && std::min(a.y, b.y) <= y &&
            y < std::max(a.y, b.y))
            return i;
    }
    return 0;
}

clsDot randomTrack(std::mt19937& random) {
    std::uniform_int_distribution<int> length(0, 3000);
    std::uniform_int_distribution<int> kind(0, 9);
    std::uniform_int_distribution<int> anything(-200, 200);
    clsDot track;
    int second = 0;
    int x = 0;
    int y = 0;
    const int count = kind(random) < 3 ? length(random) % 6 : length(random);
    const int restlessness = kind(random);
    for (int i = 0; i < count; ++i) {
        // Mostly rising seconds and short ways; repeats, gaps, midnights and jumps between.
        const bool strange = kind(random) < restlessness / 3;
        second = strange ? anything(random) : second + (kind(random) + 2) / 4;
        x = strange ? anything(random) : x + kind(random) % 4 - 1;
        y = strange ? anything(random) : y + kind(random) % 3 - 1;
        track.SetDot("", "", 0, second, std::to_string(x) + "e-7", std::to_string(y) + "e-7", 0, 0,
                     0, 0, 0);
    }
    return track;
}

TEST(clsDot, finds_the_same_dots_as_the_plain_loops_on_random_tracks) {
    std::mt19937 random(20121009);
    std::uniform_int_distribution<int> value(-210, 3200);
    std::int64_t secondsFound = 0;
    std::int64_t placesFound = 0;
    for (int round = 0; round < 120; ++round) {
        clsDot track = randomTrack(random);
        for (int query = 0; query < 120; ++query) {
            const std::int32_t second = value(random);
            track.lPlayLocal(0);
            const std::int32_t expected = plainForcePlayLocal(track, second);
            track.ForcePlayLocal(second);
            ASSERT_EQ(track.lPlayLocal(), expected) << "round " << round << " second " << second;
            secondsFound += expected > 0 ? 1 : 0;

            const TrackDot& near = track.dot(value(random));
            const std::int32_t x = near.x + value(random) % 4;
            const std::int32_t y = near.y + value(random) % 4;
            const std::int32_t place = plainPtLocal(track, x, y);
            ASSERT_EQ(track.lPtLocal(x, y), place) << "round " << round << " " << x << "|" << y;
            placesFound += place > 0 ? 1 : 0;
        }
    }
    EXPECT_GT(secondsFound, 1000) << "the test must also find dots";
    EXPECT_GT(placesFound, 1000) << "the test must also find dots";
}

} // namespace
} // namespace velmorant

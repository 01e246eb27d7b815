// Recorders that stumble: each second of the drive still stands at its own second.
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

// Of every way in which a place gets its second: blocks between the picture's samples, records in a
// row, samples of a track, stamps.
class RecorderHabits : public testing::TestWithParam<const char*> {
  protected:
    static const FamilyMaker& maker() {
        return *std::find_if(familyMakers().begin(), familyMakers().end(),
                             [](const FamilyMaker& m) { return m.name == GetParam(); });
    }
    void SetUp() override {
        truth_ = Driver({48.1, 11.5}, 70, 5).drive(morning, 60);
        written_ = truth_;
    }
    // The seconds that the recorder wrote rightly, each at its own place.
    void expectTrue() {
        const auto read = extractBytes(maker().make(written_));
        ASSERT_TRUE(read) << describe(read.error());
        const auto& samples = read.value().samples;
        ASSERT_EQ(samples.size(), truth_.size());
        for (std::size_t i = 0; i < truth_.size(); ++i) {
            SCOPED_TRACE("second " + std::to_string(i));
            EXPECT_EQ(samples[i].time, truth_[i].time);
            const bool own = written_[i].fix && written_[i].written > 0 &&
                             written_[i].latitude == truth_[i].latitude;
            if (own || samples[i].state == FixState::good) {
                EXPECT_EQ(samples[i].state, FixState::good) << name(samples[i].state);
                EXPECT_LT(distance(samples[i].latitude, samples[i].longitude, truth_[i].latitude,
                                   truth_[i].longitude),
                          2);
            }
        }
    }

    DriveSeconds truth_, written_;
};

} // namespace

TEST_P(RecorderHabits, a_second_written_twice_moves_no_other) {
    written_[20].written = 2;
    expectTrue();
}

TEST_P(RecorderHabits, seconds_in_whose_place_the_one_before_stands_are_left_out) {
    for (const std::size_t every : {4U, 8U}) {
        written_ = truth_;
        for (std::size_t i = every - 1; i < written_.size(); i += every) {
            written_[i] = written_[i - 1];
        }
        expectTrue();
    }
}

TEST_P(RecorderHabits, a_stumbling_clock_takes_no_second_from_the_track) {
    constexpr int stumbling[] = {-1, 0, 0, 0, -1, 0, 0};
    for (std::size_t i = 0; i < written_.size(); ++i) {
        written_[i].time += stumbling[i % 7];
    }
    expectTrue();
}

TEST_P(RecorderHabits, a_leap_of_the_clock_moves_no_place) {
    for (const int leap : {2, -90, -3600, 3600}) {
        SCOPED_TRACE(leap);
        written_ = truth_;
        for (std::size_t i = 30; i < written_.size(); ++i) {
            written_[i].time += leap;
        }
        expectTrue();
    }
}

TEST_P(RecorderHabits, a_single_wrong_clock_moves_no_place) {
    for (const std::size_t wrong : {0U, 17U, 59U}) {
        written_ = truth_;
        written_[wrong].time += 7;
        expectTrue();
    }
}

TEST_P(RecorderHabits, lost_seconds_move_no_other) {
    written_[10].written = written_[33].written = written_[34].written = 0;
    expectTrue();
}

INSTANTIATE_TEST_SUITE_P(recorders, RecorderHabits,
                         testing::Values("freegps_letters_28", "freegps_without_index",
                                         "freegps_doubles_40", "ligo_trailer", "uuid_box",
                                         "gps0_binary", "text_sentences_sbtl", "free_box"),
                         [](const auto& row) { return std::string(row.param); });

TEST(RecorderClocks, win_over_a_sample_table_that_lies_about_its_rate) {
    const auto truth = Driver({48.1, 11.5}, 70, 5).drive(morning, 60);
    for (const std::uint32_t claimed : {200U, 4000U}) {
        SCOPED_TRACE(claimed);
        Mp4Plan plan = making::planOf(truth);
        TrackPlan track;
        track.handler = track.format = "text";
        for (const DriveSecond& second : truth) {
            const std::string text = making::rmc(second);
            track.samples.push_back({ByteWriter().u16be(text.size()).text(text).take(), claimed});
        }
        plan.tracks.push_back(track);
        const auto read = extractBytes(buildMp4(plan));
        ASSERT_TRUE(read);
        expectTruth(read.value(), truth, {0.1, 0.1, 0.1, 0.01});
        ASSERT_FALSE(read.value().notices.empty());
        const auto& notices = read.value().notices;
        EXPECT_TRUE(std::any_of(notices.begin(), notices.end(), [](const Error& notice) {
            return notice.reason.find("clock") != std::string::npos;
        }));
    }
}

TEST(RecorderClocks, lose_against_the_sample_table_of_a_time_lapse) {
    const auto truth = Driver({48.1, 11.5}, 70, 5).drive(morning, 180);
    DriveSeconds lapse;
    for (std::size_t i = 0; i < truth.size(); i += 3) {
        lapse.push_back(truth[i]);
    }
    const auto maker = std::find_if(familyMakers().begin(), familyMakers().end(),
                                    [](const auto& m) { return m.name == "gpmf_gps9"; });
    const auto read = extractBytes(maker->make(lapse));
    ASSERT_TRUE(read);
    ASSERT_EQ(read.value().samples.size(), lapse.size());
    for (std::size_t i = 0; i < lapse.size(); ++i) {
        EXPECT_NEAR(read.value().samples[i].latitude, lapse[i].latitude, 1e-5) << i;
    }
}

} // namespace velmorant::telemetry

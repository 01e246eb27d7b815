#include "track/BatchProgress.h"

#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeTexts.h"

#include <gtest/gtest.h>

namespace velmorant {
namespace {

using namespace std::chrono_literals;

class BatchProgressTest : public ::testing::Test {
  protected:
    BatchProgressTest() {
        texts.texts = {{"extraction.place", "Reading %1, %2 of %3"},
                       {"extraction.secondsLeft", ", %1 s"},
                       {"extraction.minutesLeft", ", %1 min"},
                       {"extraction.read", "%1 read"},
                       {"extraction.readInPart", "%1 read, %2 not"}};
    }
    /// The text of the recording with that number, each before it having taken `each`.
    std::string textOf(int number, int total, std::chrono::milliseconds each) {
        BatchProgress progress(clock, texts, total);
        std::string text;
        for (int i = 1; i <= number; ++i) {
            text = progress.begin("a.MP4");
            clock.steady += each;
        }
        return text;
    }

    fakes::FakeClock clock;
    fakes::FakeTexts texts;
};

TEST_F(BatchProgressTest, names_the_recording_and_its_place) {
    EXPECT_EQ(textOf(1, 300, 100ms), "Reading a.MP4, 1 of 300");
    EXPECT_EQ(textOf(3, 300, 100ms), "Reading a.MP4, 3 of 300");
}

TEST_F(BatchProgressTest, tells_how_long_the_rest_will_take_once_it_has_seen_some) {
    EXPECT_EQ(textOf(4, 300, 100ms), "Reading a.MP4, 4 of 300, 30 s") << "297 are left";
    EXPECT_EQ(textOf(300, 300, 100ms), "Reading a.MP4, 300 of 300, 1 s");
    EXPECT_EQ(textOf(4, 4, 0ms), "Reading a.MP4, 4 of 4, 0 s");
}

TEST_F(BatchProgressTest, tells_minutes_where_seconds_would_be_many) {
    EXPECT_EQ(textOf(11, 100, 1000ms), "Reading a.MP4, 11 of 100, 90 s");
    EXPECT_EQ(textOf(11, 101, 1000ms), "Reading a.MP4, 11 of 101, 2 min");
}

TEST_F(BatchProgressTest, a_name_that_looks_like_a_place_stays_as_it_is) {
    BatchProgress progress(clock, texts, 2);
    EXPECT_EQ(progress.begin("%2 %3.MP4"), "Reading %2 %3.MP4, 1 of 2");
}

TEST_F(BatchProgressTest, says_at_its_end_what_was_read_and_what_was_not) {
    BatchProgress progress(clock, texts, 3);
    for (int i = 0; i < 2; ++i) {
        progress.begin("a.MP4");
        progress.read();
    }
    EXPECT_EQ(progress.summary(0), "2 read");
    EXPECT_EQ(progress.summary(1), "2 read, 1 not");
}

} // namespace
} // namespace velmorant

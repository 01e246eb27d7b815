#include "settings/UpdateSchedule.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeProfileFunctions.h"
#include "tests/fakes/FakeTexts.h"
#include "tests/fakes/FakeTimers.h"

#include <gtest/gtest.h>

namespace velmorant {
namespace {

class UpdateScheduleTest : public testing::Test {
  protected:
    UpdateScheduleTest() {
        texts.texts["1"] = "http://update.test/";
        clock.time = {2026, 3, 7, 12, 0, 0};
    }

    int opensAfterStart() {
        opened = 0;
        UpdateSchedule schedule({.timer = timer,
                                 .clock = clock,
                                 .texts = texts,
                                 .profile = profile,
                                 .paths = paths,
                                 .open = [this] { ++opened; }});
        schedule.Start();
        timers.advance(60000);
        return opened;
    }

    fakes::FakeTimers timers;
    fakes::FakeTimer timer{timers};
    fakes::FakeClock clock;
    fakes::FakeTexts texts;
    fakes::FakeProfileFunctions profile;
    fakes::FakeHostPaths paths;
    int opened = 0;
};

TEST_F(UpdateScheduleTest, opens_some_seconds_after_the_start) {
    UpdateSchedule schedule({.timer = timer,
                             .clock = clock,
                             .texts = texts,
                             .profile = profile,
                             .paths = paths,
                             .open = [this] { ++opened; }});
    schedule.Start();
    timers.advance(2000);
    EXPECT_EQ(opened, 0);
    timers.advance(10000);
    EXPECT_EQ(opened, 1);
}

TEST_F(UpdateScheduleTest, opens_once_a_day) {
    EXPECT_EQ(opensAfterStart(), 1);
    EXPECT_EQ(opensAfterStart(), 0);
    clock.time.day = 8;
    EXPECT_EQ(opensAfterStart(), 1);
    EXPECT_EQ(profile.contents.at({paths.globalFile, "config"}).at("UpdateDay"), "20260308");
}

TEST_F(UpdateScheduleTest, never_opens_with_the_embedded_default) {
    texts.texts["1"] = "velmorant://map/";
    EXPECT_EQ(opensAfterStart(), 0);
    texts.texts["1"] = "HTTPS://update.test/";
    EXPECT_EQ(opensAfterStart(), 1);
}

TEST_F(UpdateScheduleTest, never_opens_in_a_packaged_installation) {
    paths.writableFolder = "/home/user/data";
    EXPECT_EQ(opensAfterStart(), 0);
    EXPECT_TRUE(profile.writes.empty());
}

TEST_F(UpdateScheduleTest, opens_also_where_the_day_cannot_be_kept) {
    profile.refused.insert(paths.globalFile);
    EXPECT_EQ(opensAfterStart(), 1);
}

} // namespace
} // namespace velmorant

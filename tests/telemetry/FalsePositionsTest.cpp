#include "telemetry/FalsePositions.h"

#include "telemetry/Collector.h"

#include <gtest/gtest.h>

namespace velmorant::telemetry {

namespace {

// A car that drives north at 36 km/h.
std::vector<Sample> drive(std::size_t seconds) {
    std::vector<Sample> samples(seconds);
    for (std::size_t i = 0; i < seconds; ++i) {
        samples[i].state = FixState::good;
        samples[i].rawLatitude = 48 + static_cast<double>(i) * 10 / 111195;
        samples[i].rawLongitude = 11;
        samples[i].rawSpeed = 36;
        samples[i].heading = unknown;
    }
    return samples;
}

} // namespace

TEST(FalsePositions, trusts_an_ordinary_drive) {
    auto samples = drive(60);
    markFalsePositions(samples);
    for (const Sample& sample : samples) {
        EXPECT_EQ(sample.state, FixState::good);
    }
}

TEST(FalsePositions, marks_a_jump_across_the_country_and_nothing_else) {
    auto samples = drive(60);
    samples[30].rawLatitude = 50;
    samples[31].rawLatitude = 50;
    markFalsePositions(samples);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        EXPECT_EQ(samples[i].state, i == 30 || i == 31 ? FixState::jump : FixState::good) << i;
    }
}

TEST(FalsePositions, marks_the_fix_of_the_last_drive_before_the_first_real_one) {
    auto samples = drive(60);
    for (std::size_t i = 0; i < 8; ++i) {
        samples[i].rawLatitude = 47.2;
    }
    markFalsePositions(samples);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        EXPECT_EQ(samples[i].state, i < 8 ? FixState::stale : FixState::good) << i;
    }
}

TEST(FalsePositions, accepts_the_way_that_a_tunnel_took) {
    auto samples = drive(200);
    for (std::size_t i = 50; i < 150; ++i) {
        samples[i].state = FixState::noFix;
    }
    markFalsePositions(samples);
    EXPECT_EQ(samples[150].state, FixState::good);
    EXPECT_EQ(samples[49].state, FixState::good);
}

TEST(FalsePositions, marks_speeds_of_a_parked_car) {
    auto samples = drive(60);
    for (std::size_t i = 20; i < 40; ++i) {
        samples[i].rawLatitude = samples[19].rawLatitude;
        samples[i].rawSpeed = 120;
    }
    markFalsePositions(samples);
    EXPECT_EQ(samples[19].state, FixState::good);
    for (std::size_t i = 22; i < 40; ++i) {
        EXPECT_EQ(samples[i].state, FixState::parkedDrift) << i;
    }
    EXPECT_EQ(samples[41].state, FixState::good);
}

TEST(FalsePositions, lets_a_car_stand_still) {
    auto samples = drive(60);
    for (std::size_t i = 59; i >= 40; --i) { // it goes on from where it stood
        samples[i].rawLatitude = samples[i - 20].rawLatitude;
    }
    for (std::size_t i = 20; i < 40; ++i) {
        samples[i].rawLatitude = samples[19].rawLatitude;
        samples[i].rawSpeed = 0;
    }
    markFalsePositions(samples);
    for (const Sample& sample : samples) {
        EXPECT_EQ(sample.state, FixState::good);
    }
}

TEST(FalsePositions, believes_a_short_drive_rather_than_a_long_standstill_elsewhere) {
    for (const double speed : {0.0, 47.0, unknown}) {
        auto samples = drive(60);
        for (std::size_t i = 0; i < 40; ++i) {
            samples[i].rawLatitude = 47.95;
            samples[i].rawSpeed = speed;
        }
        markFalsePositions(samples);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            EXPECT_EQ(samples[i].state == FixState::good, i >= 40) << i;
        }
    }
}

TEST(FalsePositions, keeps_all_behind_a_tunnel_in_which_the_place_froze) {
    for (const double speed : {80.0, 0.0, unknown}) {
        SCOPED_TRACE(speed);
        auto samples = drive(120);
        for (Sample& sample : samples) { // 80 km/h
            sample.rawLatitude = 48 + (sample.rawLatitude - 48) * 80 / 36;
            sample.rawSpeed = 80;
        }
        for (std::size_t i = 40; i < 60; ++i) {
            samples[i].rawLatitude = samples[39].rawLatitude;
            samples[i].rawSpeed = speed;
        }
        markFalsePositions(samples);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            EXPECT_EQ(samples[i].state == FixState::good, i < 40 || i >= 60) << i;
        }
    }
}

TEST(FalsePositions, trusts_a_car_that_stands_and_drives_off) {
    auto samples = drive(60);
    for (std::size_t i = 0; i < 40; ++i) {
        samples[i].rawLatitude = samples[40].rawLatitude;
        samples[i].rawSpeed = i % 2 == 0 ? 0.4 : 1.2;
    }
    markFalsePositions(samples);
    for (const Sample& sample : samples) {
        EXPECT_EQ(sample.state, FixState::good);
    }
}

TEST(FalsePositions, trusts_a_parked_car_rather_than_two_wild_places) {
    auto samples = drive(60);
    for (Sample& sample : samples) {
        sample.rawLatitude = 48;
        sample.rawSpeed = 0;
    }
    samples[20].rawLatitude = 49;
    samples[21].rawLatitude = 49.0005;
    markFalsePositions(samples);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        EXPECT_EQ(samples[i].state, i == 20 || i == 21 ? FixState::jump : FixState::good) << i;
    }
}

TEST(FalsePositions, never_shows_a_speed_that_no_car_has) {
    for (const double speed : {9999.0, 3000.0, 2202.0, 451.0, -3.0, 1e300}) {
        Fix fix;
        fix.latitude = fix.longitude = 1;
        fix.speed = speed;
        fix.heading = 510;
        fix.altitude = 65531;
        judge(fix);
        EXPECT_EQ(fix.state, FixState::good);
        EXPECT_FALSE(known(fix.speed)) << speed;
        EXPECT_FALSE(known(fix.heading));
        EXPECT_FALSE(known(fix.altitude));
    }
    std::vector<Sample> samples(2); // as far apart as a believable step goes
    for (std::size_t i = 0; i < 2; ++i) {
        samples[i].state = FixState::good;
        samples[i].rawLatitude = 48 + static_cast<double>(i) * 119.9 / 111195;
        samples[i].rawLongitude = 11;
    }
    markFalsePositions(samples);
    completeSamples(samples);
    EXPECT_EQ(samples[1].state, FixState::good);
    EXPECT_LT(samples[1].speed, fastestSpeed);
}

TEST(CompletedSamples, derive_speed_and_heading_from_the_positions) {
    auto samples = drive(10);
    for (Sample& sample : samples) {
        sample.rawSpeed = unknown;
    }
    completeSamples(samples);
    for (const Sample& sample : samples) {
        EXPECT_NEAR(sample.speed, 36, 0.1);
        EXPECT_NEAR(sample.heading, 0, 0.01);
    }
}

TEST(CompletedSamples, cross_the_date_line_eastwards) {
    std::vector<Sample> samples(3);
    const double longitudes[] = {179.9999, -179.9999, -179.9997};
    for (std::size_t i = 0; i < 3; ++i) {
        samples[i].state = FixState::good;
        samples[i].rawLatitude = 0.5;
        samples[i].rawLongitude = longitudes[i];
        samples[i].heading = unknown;
    }
    completeSamples(samples);
    EXPECT_NEAR(samples[1].heading, 90, 0.1);
    EXPECT_NEAR(samples[1].speed, 22.24 * 3.6, 0.5);
}

TEST(CompletedSamples, turn_every_heading_into_one_circle) {
    std::vector<Sample> samples(5);
    const double headings[] = {-1e-20, -90, 360, 725, 12};
    for (std::size_t i = 0; i < 5; ++i) {
        samples[i].state = FixState::good;
        samples[i].rawLatitude = samples[i].rawLongitude = samples[i].rawSpeed = 1;
        samples[i].heading = headings[i];
    }
    completeSamples(samples);
    const double wanted[] = {0, 270, 0, 5, 12};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(samples[i].heading, wanted[i]) << headings[i];
    }
}

} // namespace velmorant::telemetry

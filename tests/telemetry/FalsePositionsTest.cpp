#include "telemetry/FalsePositions.h"

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
    for (std::size_t i = 20; i < 40; ++i) {
        samples[i].rawLatitude = samples[19].rawLatitude;
        samples[i].rawSpeed = 0;
    }
    markFalsePositions(samples);
    EXPECT_EQ(samples[30].state, FixState::good);
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

// What the tests of the families share: a drive, a recording of it, and the comparison of what is
// read with the truth.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "telemetry/Extract.h"
#include "telemetry/Geometry.h"
#include "tools/recordings/Drive.h"
#include "tools/recordings/Mp4Builder.h"

namespace velmorant::telemetry {

inline Result<Telemetry> extractBytes(const std::vector<std::uint8_t>& bytes,
                                      const std::string& name = "made.mp4") {
    MemorySource source(name, bytes);
    return extract(source);
}

inline constexpr std::int64_t morning = 1718188245; // 2024-06-12 10:30:45 UTC

struct Tolerance {
    double metres = 1;
    double kmh = 0.5;
    double degrees = 1;
    double g = 0.01;
};

inline void expectTruth(const Telemetry& read, const std::vector<recordings::DriveSecond>& truth,
                        const Tolerance& tolerance = {}) {
    ASSERT_EQ(read.samples.size(), truth.size());
    for (std::size_t i = 0; i < truth.size(); ++i) {
        const Sample& sample = read.samples[i];
        SCOPED_TRACE("second " + std::to_string(i));
        EXPECT_EQ(sample.time, truth[i].time);
        ASSERT_EQ(sample.state == FixState::good, truth[i].fix) << name(sample.state);
        if (truth[i].fix) {
            EXPECT_LT(
                distance(sample.latitude, sample.longitude, truth[i].latitude, truth[i].longitude),
                tolerance.metres);
            EXPECT_NEAR(sample.speed, truth[i].speed, tolerance.kmh);
            EXPECT_LT(std::abs(std::remainder(sample.heading - truth[i].heading, 360.0)),
                      tolerance.degrees);
        } else {
            EXPECT_EQ(sample.speed, 0);
        }
    }
}

inline void expectAcceleration(const Telemetry& read,
                               const std::vector<recordings::DriveSecond>& truth,
                               double tolerance = 0.01) {
    ASSERT_EQ(read.samples.size(), truth.size());
    for (std::size_t i = 0; i < truth.size(); ++i) {
        SCOPED_TRACE("second " + std::to_string(i));
        EXPECT_TRUE(read.samples[i].hasAcceleration);
        EXPECT_NEAR(read.samples[i].mean.x, truth[i].right, tolerance);
        EXPECT_NEAR(read.samples[i].mean.y, truth[i].forwards, tolerance);
        EXPECT_NEAR(read.samples[i].mean.z, truth[i].up, tolerance);
    }
}

} // namespace velmorant::telemetry

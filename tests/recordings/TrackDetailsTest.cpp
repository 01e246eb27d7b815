#include "recordings/clsDot.h"

#include <gtest/gtest.h>

namespace velmorant {
namespace {

TEST(TrackDetails, knows_the_time_bases_by_their_names) {
    for (const TimeBase base :
         {TimeBase::Utc, TimeBase::Camera, TimeBase::Creation, TimeBase::None, TimeBase::Unknown})
        EXPECT_EQ(timeBaseNamed(nameOf(base)), base) << nameOf(base);
    EXPECT_EQ(nameOf(TimeBase::Camera), "camera");
    EXPECT_EQ(timeBaseNamed("UTC"), TimeBase::Unknown);
}

TEST(TrackDetails, belong_to_the_dots_of_their_track) {
    clsDot track;
    EXPECT_EQ(track.detailsOfDot(1), nullptr);
    TrackDetails details;
    details.samples.resize(2);
    details.samples[1].hasFix = false;
    track.setDetails(details);
    EXPECT_EQ(track.detailsOfDot(0), nullptr);
    ASSERT_NE(track.detailsOfDot(1), nullptr);
    EXPECT_TRUE(track.detailsOfDot(1)->hasFix);
    ASSERT_NE(track.detailsOfDot(2), nullptr);
    EXPECT_FALSE(track.detailsOfDot(2)->hasFix);
    EXPECT_EQ(track.detailsOfDot(3), nullptr);
}

} // namespace
} // namespace velmorant

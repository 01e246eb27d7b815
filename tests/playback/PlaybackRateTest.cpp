#include "playback/PlaybackRate.h"

#include <gtest/gtest.h>

namespace velmorant {
namespace {

struct SliderRate {
    double slider;
    double rate;
    double snapped;
};

TEST(PlaybackRate, each_range_of_the_slider_has_its_rate_and_its_place) {
    const SliderRate rows[] = {
        {0, 0.2, -7},    {12.4, 0.2, -7}, {12.5, 0.5, 20}, {37.4, 0.5, 20},
        {37.5, 1, 43},   {50, 1, 43},     {62.4, 1, 43},   {62.5, 1.5, 65},
        {74.9, 1.5, 65}, {75, 2, 85},     {100, 2, 85},    {-7, 0.2, -7},
    };
    for (const SliderRate& row : rows) {
        EXPECT_EQ(rateOfSlider(row.slider).rate, row.rate) << row.slider;
        EXPECT_EQ(rateOfSlider(row.slider).sliderValue, row.snapped) << row.slider;
    }
}

TEST(PlaybackRate, the_place_of_each_rate_means_that_rate) {
    for (const PlaybackRate& rate : playbackRates)
        EXPECT_EQ(rateOfSlider(rate.sliderValue).rate, rate.rate);
}

} // namespace
} // namespace velmorant

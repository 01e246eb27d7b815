#include "playback/PlaybackRate.h"

namespace velmorant {

namespace {

constexpr double sliderUnitsPerStep = 12.5;
/// Where the rates from the second on begin, in steps; each bound belongs to the faster rate.
constexpr std::array<double, 4> bounds = {1.0, 3.0, 5.0, 6.0};

} // namespace

const std::array<PlaybackRate, 5> playbackRates = {
    {{0.2, -7}, {0.5, 20}, {1.0, 43}, {1.5, 65}, {2.0, 85}}};

const PlaybackRate& rateOfSlider(double sliderValue) {
    const double step = sliderValue / sliderUnitsPerStep;
    std::size_t index = 0;
    while (index < bounds.size() && step >= bounds[index])
        ++index;
    return playbackRates[index];
}

} // namespace velmorant

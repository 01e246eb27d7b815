#pragma once

#include <array>
#include <cstddef>

namespace velmorant {

/// One step of the playback rate and the place of the slider "PLAYSPEED" that stands for it.
struct PlaybackRate {
    double rate;        ///< 1 is normal
    double sliderValue; ///< the slowest one lies below the slider's 0 on purpose
};

/// From the slowest to the fastest.
extern const std::array<PlaybackRate, 5> playbackRates;

/// The rate of a slider value 0..100.
const PlaybackRate& rateOfSlider(double sliderValue);

} // namespace velmorant

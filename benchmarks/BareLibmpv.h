#pragma once

#include <string>

namespace velmorant {

/// The processor time of this process so far, in seconds.
double processorSeconds();

/// libmpv and its software drawing without any toolkit: what a playing picture costs at least.
/// Plays the recording for that many seconds at that size in pixels; returns the processor seconds
/// per second. Throws std::runtime_error when libmpv cannot draw.
double bareProcessorShare(const std::string& recording, int width, int height, double seconds);

} // namespace velmorant

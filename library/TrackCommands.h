#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace velmorant {

/// What the recording list asks of track extraction. The first two return when the extraction's
/// window has closed; rows may have been removed meanwhile.
struct TrackCommands {
    std::function<void()> extractSelected; ///< mode "One"
    std::function<void()> extractMarked;   ///< mode "All"
    /// Sends loaded tracks to the map again; how many were, from the first on: fewer than all when
    /// the user cancels.
    std::function<std::size_t(const std::vector<std::int32_t>& serials)> drawTracks;
};

} // namespace velmorant

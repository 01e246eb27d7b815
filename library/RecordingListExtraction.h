#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmorant {

/// What the recording list asks of track extraction. The first two return when the extraction's
/// window has closed; rows may have been removed meanwhile.
class RecordingListExtraction {
  public:
    virtual ~RecordingListExtraction() = default;
    virtual void extractSelected() = 0; ///< mode "One"
    virtual void extractMarked() = 0;   ///< mode "All"
    /// Sends loaded tracks to the map again, in this order. Returns how many: fewer than asked for
    /// when the user cancelled it.
    [[nodiscard]] virtual std::size_t drawTracks(const std::vector<std::int32_t>& serials) = 0;
};

} // namespace velmorant

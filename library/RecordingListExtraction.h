#pragma once

#include <cstdint>

namespace velmorant {

/// What the recording list asks of track extraction. The first two return when the extraction's
/// window has closed; rows may have been removed meanwhile.
class RecordingListExtraction {
  public:
    virtual ~RecordingListExtraction() = default;
    virtual void extractSelected() = 0;              ///< mode "One"
    virtual void extractMarked() = 0;                ///< mode "All"
    virtual void drawTrack(std::int32_t serial) = 0; ///< sends a loaded track to the map again
};

} // namespace velmorant

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmorant {

/// Where the times of a track come from.
enum class TimeBase {
    Unknown,  ///< the extractor says nothing
    Utc,      ///< satellites
    Camera,   ///< the recorder's own clock, in its own zone
    Creation, ///< the file's time of creation
    None      ///< there is no time: only the seconds within the recording hold
};

/// By the extractor's names: "utc", "camera", "creation", "none"; Unknown for any other text.
TimeBase timeBaseNamed(std::string_view name);
std::string nameOf(TimeBase base); ///< "" for Unknown

/// What the extractor says of one sample beyond the dot of the same number.
struct SampleDetails {
    bool hasFix = true;               ///< false: the place is the last one known, the speed is 0
    std::string fixReason;            ///< why there is no fix
    std::optional<double> strongestG; ///< in g, of the second's readings; the dot holds their mean
    std::optional<double> altitude;   ///< metres
    std::string recordedTime;         ///< as the recorder wrote it; empty when unknown
};

/// What the extractor says of a whole recording.
struct TrackDetails {
    TimeBase timeBase = TimeBase::Unknown;
    std::vector<SampleDetails> samples; ///< sample i belongs to dot i + 1; may be fewer than dots
};

} // namespace velmorant

#include "telemetry/PictureTimes.h"

#include <algorithm>

#include "telemetry/SampleTable.h"

namespace velmorant::telemetry {

std::vector<double> pictureTimes(Recording& recording, std::span<const std::uint64_t> offsets) {
    if (!recording.movie || !std::is_sorted(offsets.begin(), offsets.end())) {
        return {};
    }
    const auto picture =
        std::find_if(recording.movie->tracks.begin(), recording.movie->tracks.end(),
                     [](const MediaTrack& track) { return track.handler == code("vide"); });
    if (picture == recording.movie->tracks.end()) {
        return {};
    }
    // What is wrong with the picture's tables is no fault of the telemetry: it is noted nowhere.
    Input input(recording.input.source());
    auto table = SampleTable::open(input, *picture);
    if (!table) {
        return {};
    }
    std::vector<double> times;
    times.reserve(offsets.size());
    SampleLocation sample;
    double end = 0;
    while (times.size() < offsets.size() && !recording.input.stopped() &&
           table.value().next(sample)) {
        while (times.size() < offsets.size() && offsets[times.size()] < sample.offset) {
            times.push_back(sample.time);
        }
        end = sample.time + sample.duration;
    }
    times.resize(offsets.size(), end);
    return times;
}

} // namespace velmorant::telemetry

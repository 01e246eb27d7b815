// The whole way of a recording: any bytes become telemetry or an error, and a track file of them.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

#include "extractor/TrackFileWriter.h"
#include "telemetry/Extract.h"

using namespace velmorant::telemetry;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string trackFile =
        (std::filesystem::temp_directory_path() / ("fuzz-track-" + std::to_string(::getpid())))
            .string();
    MemorySource source("fuzz.mp4", {data, data + size});
    const auto read = extract(source);
    if (read) {
        if (read.value().samples.empty()) {
            std::abort(); // a success without a sample could not be played
        }
        for (std::size_t i = 0; i < read.value().samples.size(); ++i) {
            const Sample& sample = read.value().samples[i];
            const bool sound =
                sample.time == read.value().samples[0].time + static_cast<std::int64_t>(i) &&
                std::abs(sample.latitude) <= 90 && std::abs(sample.longitude) <= 180 &&
                sample.speed >= 0 && sample.heading >= 0 && sample.heading < 360;
            if (!sound) {
                std::abort();
            }
        }
    } else if (read.error().reason.empty()) {
        std::abort();
    }
    // Writing a file costs far more than reading these few bytes; successes are rare enough.
    if (read && writeTrackFile(trackFile, "/fuzz.mp4", read)) {
        std::abort();
    }
    return 0;
}

// Picture and sound of a recording, made by ffmpeg.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velmorant::recordings {

struct PicturePlan {
    std::int64_t start = 0; // what the clock in the picture shows first; UTC, seconds since 1970
    int seconds = 60;
    std::string size = "640x360";
    int rate = 15; // pictures a second
};

// Writes an MP4 file with a moving picture, the running clock burnt in, and sound. Returns what
// went wrong.
std::optional<std::string> encodePicture(const PicturePlan& plan, const std::string& path);

} // namespace velmorant::recordings

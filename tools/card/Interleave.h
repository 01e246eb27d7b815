// Puts blocks of telemetry between the chunks of an MP4 file, as a recorder does while it records,
// and an index of them into its movie header.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tools/recordings/ByteWriter.h"

namespace velmorant::recordings {

// `mp4` is a file as ffmpeg writes it: "mdat" before "moov", 32-bit chunk offsets. The blocks are
// spread evenly. Nothing where the file has another shape.
std::optional<ByteVector> interleave(const ByteVector& mp4, const std::vector<ByteVector>& blocks);

// The file as it is after a power loss at the given share of its media data: the movie header was
// never written.
ByteVector cutOff(const ByteVector& mp4, double share);

// Sets the creation time (seconds since 1970) of the movie and its tracks.
void setCreation(ByteVector& mp4, std::int64_t creation);

} // namespace velmorant::recordings

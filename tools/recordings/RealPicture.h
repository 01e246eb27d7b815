// Puts a picture that can be played into a made recording.
#pragma once

#include <optional>

#include "tools/recordings/ByteWriter.h"

namespace velmorant::recordings {

// The recording with the first track of `picture` instead of its own first track; all else of it
// keeps its place. Both are MP4 files with "mdat" before "moov", `picture` as ffmpeg writes it,
// with 32-bit chunk offsets. Nothing where one has another shape.
std::optional<ByteVector> withPicture(const ByteVector& recording, const ByteVector& picture);

} // namespace velmorant::recordings

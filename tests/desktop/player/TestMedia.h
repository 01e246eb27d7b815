#pragma once

#include <string>

namespace velmorant {

/// Recordings made by ffmpeg when first asked for, kept in the build folder. The luma of every
/// pixel tells the number of its frame: 20 + 2 * (number mod 100), 30 frames a second, a key frame
/// every 30.
enum class TestMedium {
    TenSeconds, ///< 320 x 180, with a tone
    Short,      ///< 1 second, without sound
    SoundOnly,
    CutOff, ///< TenSeconds with its index in front and its second half missing
    NoMedia ///< a text under a recording's name
};

/// The path; ends the test program with a message when ffmpeg fails.
std::string testMedium(TestMedium medium);

/// The number, mod 100, of the frame that a grey value belongs to. Video grey 16..235 was spread to
/// 0..255.
int frameNumberOf(int grey);

} // namespace velmorant

#pragma once

#include <cstdint>
#include <vector>

namespace velmorant {

/// A decoded picture of a recording at its full size.
struct DecodedFrame {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb; ///< 3 bytes a pixel, rows from the top, no padding
};

} // namespace velmorant

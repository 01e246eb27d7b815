#pragma once

#include <cstdint>
#include <string>

namespace velmorant {

/// One second of a recording's track. An empty dot holds zeros and empty texts.
struct TrackDot {
    std::int16_t speed = 0;  ///< km/h
    std::string timeText;    ///< minutes ":" seconds into the recording, not wrapped at 60 minutes
    std::string dateText;    ///< UTC, for example "2012/9/7 08:05:09"
    std::int32_t second = 0; ///< since the start of the recording; negative past midnight UTC
    std::string lonLatText;  ///< longitude "|" latitude, as read
    std::int32_t x = 0;      ///< longitude times 10,000,000
    std::int32_t y = 0;      ///< latitude times 10,000,000
    std::int16_t angle = 0;  ///< heading in degrees
    double gSum = 0.0;
    double gX = 0.0;
    double gY = 0.0;
    double gZ = 0.0;
};

} // namespace velmorant

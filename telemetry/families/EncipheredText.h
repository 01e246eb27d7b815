// Text in fixed columns, each byte XOR 0xaa. Columns of the plain text:
//   8    YYYYMMDDhhmmss, the recorder's clock
//   38   N or S, degrees and minutes times 10000 in 8 digits
//   47   E or W, degrees and minutes times 10000 in 9 digits
//   57   altitude in metres, sign and 4 digits (may be missing)
//   62   speed in km/h, 3 digits
//   65   acceleration: sign and 3 digits for x, y, z in hundredths of a g, several in a row;
//        or the same at 173
#pragma once

#include <optional>
#include <vector>

#include "telemetry/Bytes.h"
#include "telemetry/Samples.h"

namespace velmorant::telemetry {

struct EncipheredReading {
    Fix fix;
    std::vector<Acceleration> accelerations;
};

// Nothing where the columns hold no date.
std::optional<EncipheredReading> readEncipheredText(Bytes enciphered);

} // namespace velmorant::telemetry

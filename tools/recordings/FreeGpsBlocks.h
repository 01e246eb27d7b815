// Blocks of the "free" + "GPS " kind from a drive.
#pragma once

#include <vector>

#include "tools/recordings/ByteWriter.h"
#include "tools/recordings/Drive.h"

namespace velmorant::recordings {

enum class FreeGpsLayout { withAcceleration, withoutAcceleration };

// One block of 0x4000 bytes.
ByteVector freeGpsBlock(const DriveSecond& second, FreeGpsLayout layout);

// Degrees and minutes in one number.
double degreesMinutes(double degrees);

} // namespace velmorant::recordings

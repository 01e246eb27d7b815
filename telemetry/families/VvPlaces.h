// The places of freeGPS blocks with "VV" at 0x33: two i32 whose unit is not settled. Read as
// degrees times 1e7 by the decoder that was held against thousands of real blocks, as degrees and
// minutes times 1e5 by another; the same numbers are possible places in both. What tells them apart
// is that no minutes reach 60, and that a drive makes no leap where the degrees change.
#pragma once

#include <cstdint>
#include <span>

#include "telemetry/Input.h"

namespace velmorant::telemetry {

struct VvPlace {
    std::uint64_t block = 0; // offset in the file
    std::int32_t latitude = 0, longitude = 0;
};

enum class VvUnit { degrees, degreesAndMinutes };
struct VvDecision {
    VvUnit unit = VvUnit::degrees;
    const char* reason = ""; // what decided, for a notice
};

// By the whole recording.
VvDecision decideVvUnit(std::span<const VvPlace> places);
double vvDegrees(std::int32_t value, VvUnit unit);

} // namespace velmorant::telemetry

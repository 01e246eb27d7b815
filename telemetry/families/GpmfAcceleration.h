// The accelerations of GPMF: which way a device's sensor sits, and the sums of its many readings.
#pragma once

#include <array>
#include <string_view>

#include "telemetry/Bytes.h"
#include "telemetry/Collector.h"
#include "telemetry/families/GpmfRecord.h"

namespace velmorant::telemetry {

// The axes of the three values by the device's name, for a recording that does not say: letters of
// X Y Z in the order of the values, a small one for a reversed axis.
std::string_view axesOfModel(std::string_view device);

// Where each of a row's three raw values goes and by what it is multiplied to be in g.
class AccelerationAxes {
  public:
    // `axes` as axesOfModel() gives them, `scale` the divisors to metres per second squared.
    AccelerationAxes(std::string_view axes, const GpmfRow& scale);

    // Of the rows first..last-1 of three big-endian i16 each.
    AccelerationMean sumOf(Bytes rows, std::size_t first, std::size_t last) const;
    AccelerationMean one(const GpmfRow& values) const;

  private:
    bool wholeRangeBelievable() const;
    AccelerationMean filteredSumOf(Bytes rows, std::size_t first, std::size_t last) const;

    std::array<std::size_t, 3> target_{};
    std::array<float, 3> factor_{};
};

} // namespace velmorant::telemetry

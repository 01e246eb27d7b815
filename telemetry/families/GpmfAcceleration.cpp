#include "telemetry/families/GpmfAcceleration.h"

#include <algorithm>
#include <cmath>

#include "telemetry/Geometry.h"

namespace velmorant::telemetry {

namespace {

struct TripleSums {
    std::int32_t x = 0, y = 0, z = 0;
    std::uint32_t greatestSquare = 0; // of the length of one triple
    std::uint32_t count = 0;
};

// Big-endian i16 triples. A record has at most 65535 rows, so no sum of 16-bit values leaves 32
// bits. Hundreds of readings a second are most of what a recording holds: no check, no conversion
// and no root in the loop.
[[gnu::always_inline]] inline TripleSums sumRows(const std::uint8_t* at, std::uint32_t count) {
    const auto value = [](const std::uint8_t* bytes) -> std::int32_t {
        return static_cast<std::int16_t>(bytes[0] << 8 | bytes[1]);
    };
    TripleSums sums;
    sums.count = count;
    for (std::uint32_t row = 0; row < count; ++row, at += 6) {
        const std::int32_t x = value(at);
        const std::int32_t y = value(at + 2);
        const std::int32_t z = value(at + 4);
        sums.x += x;
        sums.y += y;
        sums.z += z;
        const std::uint32_t square = static_cast<std::uint32_t>(x * x) +
                                     static_cast<std::uint32_t>(y * y) +
                                     static_cast<std::uint32_t>(z * z);
        sums.greatestSquare = sums.greatestSquare < square ? square : sums.greatestSquare;
    }
    return sums;
}

#ifdef __x86_64__
// The same loop for processors that take sixteen values at once.
[[gnu::target("avx2")]] TripleSums sumRowsWide(const std::uint8_t* at, std::uint32_t count) {
    return sumRows(at, count);
}
#endif

TripleSums sumTriples(Bytes rows) {
    const auto count =
        static_cast<std::uint32_t>(std::min<std::size_t>(rows.size() / 6, UINT16_MAX));
#ifdef __x86_64__
    if (__builtin_cpu_supports("avx2") != 0) {
        return sumRowsWide(rows.span().data(), count);
    }
#endif
    return sumRows(rows.span().data(), count);
}

} // namespace

std::string_view axesOfModel(std::string_view device) {
    const auto has = [&](std::string_view part) {
        return device.find(part) != std::string_view::npos;
    };
    if (has("Fusion")) {
        return "yXZ";
    }
    for (const std::string_view model : {"Hero6", "Hero7", "Hero8", "HERO6", "HERO7", "HERO8"}) {
        if (has(model)) {
            return "YxZ";
        }
    }
    return "ZXY";
}

AccelerationAxes::AccelerationAxes(std::string_view axes, const GpmfRow& scale) {
    for (std::size_t i = 0; i < 3; ++i) {
        const double divisor = scale.empty() ? 1 : scale[std::min(i, scale.size() - 1)];
        const bool reversed = axes[i] >= 'a';
        const char axis = reversed ? static_cast<char>(axes[i] - 'a' + 'A') : axes[i];
        target_[i] = axis == 'X' ? 0 : axis == 'Y' ? 1 : 2;
        factor_[i] = static_cast<float>((reversed ? -1 : 1) /
                                        ((divisor == 0 ? 1 : divisor) * standardGravity));
    }
}

AccelerationMean AccelerationAxes::sumOf(Bytes rows, std::size_t first, std::size_t last) const {
    if (!wholeRangeBelievable()) {
        return filteredSumOf(rows, first, last);
    }
    const TripleSums sums = sumTriples(rows.from(6 * first, 6 * (last - first)));
    AccelerationMean mean;
    mean.addSums(static_cast<float>(sums.x) * factor_[0], static_cast<float>(sums.y) * factor_[1],
                 static_cast<float>(sums.z) * factor_[2],
                 static_cast<float>(sums.greatestSquare) * factor_[0] * factor_[0], sums.count);
    return mean.reordered(target_);
}

AccelerationMean AccelerationAxes::one(const GpmfRow& values) const {
    AccelerationMean sum;
    sum.add(static_cast<float>(values[0]) * factor_[0], static_cast<float>(values[1]) * factor_[1],
            static_cast<float>(values[2]) * factor_[2]);
    return sum.reordered(target_);
}

// Whether one factor serves all axes and takes no 16-bit value beyond what a sensor measures: then
// the readings can be summed as they stand.
bool AccelerationAxes::wholeRangeBelievable() const {
    const float factor = std::abs(factor_[0]);
    constexpr float rootOf3 = 1.7320509F;
    return factor == std::abs(factor_[1]) && factor == std::abs(factor_[2]) &&
           factor * 32768.0F * rootOf3 <= AccelerationMean::mostG;
}

AccelerationMean AccelerationAxes::filteredSumOf(Bytes rows, std::size_t first,
                                                 std::size_t last) const {
    AccelerationMean sum;
    for (std::size_t row = first; row < last; ++row) {
        sum.add(rows.i16be(6 * row) * factor_[0], rows.i16be(6 * row + 2) * factor_[1],
                rows.i16be(6 * row + 4) * factor_[2]);
    }
    return sum.reordered(target_);
}

} // namespace velmorant::telemetry

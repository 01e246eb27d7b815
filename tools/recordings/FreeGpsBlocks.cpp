#include "tools/recordings/FreeGpsBlocks.h"

#include <cmath>

#include "telemetry/UtcTime.h"

namespace velmorant::recordings {

namespace {

constexpr std::size_t blockSize = 0x4000;
constexpr double kmhPerKnot = 1.852;

void clock(ByteWriter& out, const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    out.i32le(time.hour).i32le(time.minute).i32le(static_cast<std::int64_t>(time.second));
    out.i32le(time.year - 2000).i32le(time.month).i32le(time.day);
}

void position(ByteWriter& out, const DriveSecond& second) {
    if (!second.fix) {
        out.text("V").zeros(3).zeros(16);
        return;
    }
    out.text("A").text(second.latitude < 0 ? "S" : "N").text(second.longitude < 0 ? "W" : "E");
    out.u8(0);
    out.f32le(degreesMinutes(std::abs(second.latitude)));
    out.f32le(degreesMinutes(std::abs(second.longitude)));
    out.f32le(second.speed / kmhPerKnot).f32le(second.heading);
}

} // namespace

double degreesMinutes(double degrees) {
    const double whole = std::floor(degrees);
    return whole * 100 + (degrees - whole) * 60;
}

ByteVector freeGpsBlock(const DriveSecond& second, FreeGpsLayout layout) {
    ByteWriter out;
    out.u32be(blockSize).text("freeGPS ").u32le(0x58);
    const bool accelerated = layout == FreeGpsLayout::withAcceleration;
    out.padTo(accelerated ? 0x10 : 0x30);
    clock(out, second);
    position(out, second);
    if (accelerated) {
        out.i32le(std::lround(second.right * 256));
        out.i32le(std::lround(second.forwards * 256));
        out.i32le(std::lround(second.up * 256));
    }
    return out.padTo(blockSize).take();
}

} // namespace velmorant::recordings

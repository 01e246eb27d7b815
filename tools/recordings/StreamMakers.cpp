// Layouts in transport streams.
#include <algorithm>
#include <cstdio>

#include "telemetry/UtcTime.h"
#include "tools/recordings/FamilyMakers.h"
#include "tools/recordings/FreeGpsBlocks.h"

namespace velmorant::recordings::making {

namespace {

void packet(ByteWriter& out, unsigned pid, bool starts, const ByteVector& payload) {
    const std::size_t stuffing = 184 - payload.size();
    out.u8(0x47).u16be(pid | (starts ? 0x4000U : 0U)).u8(stuffing > 0 ? 0x30 : 0x10);
    if (stuffing > 0) {
        out.u8(stuffing - 1);
        for (std::size_t i = 1; i < stuffing; ++i) {
            out.u8(i == 1 ? 0 : 0xff);
        }
    }
    out.append(payload);
}

// Splits a unit over packets of 184 bytes.
void unit(ByteWriter& out, unsigned pid, const ByteVector& bytes) {
    for (std::size_t at = 0; at < bytes.size(); at += 184) {
        const std::size_t length = std::min<std::size_t>(184, bytes.size() - at);
        packet(out, pid, at == 0,
               {bytes.begin() + static_cast<std::ptrdiff_t>(at),
                bytes.begin() + static_cast<std::ptrdiff_t>(at + length)});
    }
}

// A picture's packet with its time stamp in 1/90000 s.
ByteVector pictureStart(std::uint64_t stamp) {
    ByteWriter out;
    out.text(std::string_view("\0\0\1\xe0\0\0\x80\x80\5", 9));
    out.u8(0x21 | (stamp >> 29 & 0x0e)).u16be((stamp >> 14 & 0xfffe) | 1);
    return out.u16be((stamp << 1 & 0xfffe) | 1).padTo(184).take();
}

using UnitsOf = void (*)(ByteWriter& out, const DriveSecond& second);

ByteVector streamOf(const DriveSeconds& drive, UnitsOf units) {
    ByteWriter out;
    std::uint64_t stamp = 126000;
    for (const DriveSecond& second : drive) {
        for (int i = 0; i < 20; ++i) {
            packet(out, 0x0100, i == 0,
                   i == 0 ? pictureStart(stamp) : ByteVector(184, static_cast<std::uint8_t>(i)));
        }
        for (int copy = 0; copy < second.written; ++copy) {
            units(out, second);
        }
        stamp += 90000;
    }
    return out.take();
}

template <unsigned pid, BlockOf content>
ByteVector stream(const DriveSeconds& drive) {
    return streamOf(
        drive, [](ByteWriter& out, const DriveSecond& second) { unit(out, pid, content(second)); });
}

ByteVector ligoHead(const DriveSecond&) {
    return ByteWriter().text("LIGOGPSINFO").zeros(1).u32be(1).u32le(1).text("####").zeros(8).take();
}

ByteVector ligoRecord(const DriveSecond& second) {
    return ByteWriter().u32le(1).text(ligoLine(second)).padTo(0x84).take();
}

// The head in one packet, the record's beginning there too, the rest in the next.
ByteVector ligoCut(const DriveSeconds& drive) {
    return streamOf(drive, [](ByteWriter& out, const DriveSecond& second) {
        ByteWriter text;
        text.zeros(100).text("LIGOGPSINFO").zeros(9).append(ligoRecord(second));
        const ByteVector bytes = text.take();
        packet(out, 0x0102, true, {bytes.begin(), bytes.begin() + 160});
        packet(out, 0x0102, true, {bytes.begin() + 160, bytes.end()});
    });
}

// What follows the head looks enciphered; the plain record stands in the next packet.
ByteVector ligoBehind(const DriveSeconds& drive) {
    return streamOf(drive, [](ByteWriter& out, const DriveSecond& second) {
        unit(out, 0x0300, ligoHead(second));
        unit(out, 0x0300, ligoRecord(second));
    });
}

ByteVector row(const DriveSecond& second) {
    const ByteVector block = freeGpsBlock(second, FreeGpsLayout::withAcceleration);
    ByteVector bytes(block.begin() + 0x10, block.begin() + 0x10 + 0x60);
    if (!second.fix) {
        bytes[0x19] = 'N';
        bytes[0x1a] = 'E';
    }
    ByteWriter out;
    return out.zeros(164).append(bytes).take();
}

ByteVector lines(const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    char text[240];
    std::snprintf(text, sizeof text,
                  "$GPSINFO,0x0004,%04d.%02d.%02d %02d:%02d:%02d,%.5f,%.5f,%.1f,51,%.0f,0,0,\r"
                  "$GSNRINFO,%.2f,%.2f,%.2f",
                  time.year, time.month, time.day, time.hour, time.minute,
                  static_cast<int>(time.second),
                  second.fix ? latitudeMinutes(second) * (north(second) == 'S' ? -1 : 1) : 0,
                  second.fix ? longitudeMinutes(second) * (east(second) == 'W' ? -1 : 1) : 0,
                  second.speed, second.heading, second.right, second.forwards, second.up);
    return ByteWriter().text(text).u8(0).take();
}

ByteVector rows(const DriveSecond& second) {
    ByteWriter out;
    out.text({second.fix ? 'A' : 'V', north(second), east(second), '\0'});
    out.f32le(second.fix ? latitudeMinutes(second) : 0);
    out.f32le(second.fix ? longitudeMinutes(second) : 0);
    return out.f32le(second.speed / 1.852).f32le(second.heading).zeros(12).take();
}

} // namespace

std::span<const FamilyMaker> streamMakers() {
    constexpr std::string_view family = "transport stream";
    static const std::vector<FamilyMaker> makers = {
        {.name = "stream_row",
         .family = family,
         .make = stream<0x0300, row>,
         .places = PlaceGrid::floatMinutes,
         .extension = ".TS"},
        {.name = "stream_lines",
         .family = family,
         .make = stream<0x01e4, lines>,
         .extension = ".TS"},
        {.name = "stream_rows",
         .family = family,
         .make = stream<0x0e1b, rows>,
         .places = PlaceGrid::floatMinutes,
         .acceleration = Given::no,
         .clock = Given::no,
         .extension = ".TS"},
        {.name = "stream_ligo_cut", .family = family, .make = ligoCut, .extension = ".TS"},
        {.name = "stream_ligo_behind", .family = family, .make = ligoBehind, .extension = ".TS"},
    };
    return makers;
}

} // namespace velmorant::recordings::making

// Layouts of freeGPS blocks.
#include <algorithm>
#include <cstdio>

#include "telemetry/UtcTime.h"
#include "tools/recordings/FamilyMakers.h"
#include "tools/recordings/FreeGpsBlocks.h"
#include "tools/recordings/Rc4Text.h"

namespace velmorant::recordings::making {

namespace {

constexpr double kmhPerKnot = 1.852;

std::string letters(const DriveSecond& second) {
    if (!second.fix) {
        return {'V', '\0', '\0'};
    }
    return {'A', north(second), east(second)};
}

ByteWriter& floats(ByteWriter& out, const DriveSecond& second) {
    if (!second.fix) {
        return out.zeros(16);
    }
    return out.f32le(latitudeMinutes(second))
        .f32le(longitudeMinutes(second))
        .f32le(second.speed / kmhPerKnot)
        .f32le(second.heading);
}

ByteVector n1(const DriveSecond& s) {
    return freeGpsBlock(s, FreeGpsLayout::withAcceleration);
}
ByteVector n2(const DriveSecond& s) {
    return freeGpsBlock(s, FreeGpsLayout::withoutAcceleration);
}

ByteVector n2Integers(const DriveSecond& second) {
    ByteWriter out;
    out.text("IQS").padTo(0x20);
    date3(time3(out, second), second).text(letters(second)).u8(0);
    out.i32le(second.fix ? whole(second.latitude * 1e7) : 0);
    out.i32le(second.fix ? whole(second.longitude * 1e7) : 0);
    out.i32le(second.fix ? whole(second.speed / 3.6 * 100) : 0);
    return blockAround(0x10, out.take());
}

ByteVector n3(const DriveSecond& second) {
    ByteWriter out;
    date3(time3(out, second), second).text(letters(second)).u8(0);
    acceleration3(floats(out, second), second, 256);
    return blockAround(0x40, out.take());
}

ByteVector cipheredStrings(const DriveSecond& second, const std::string& key) {
    const auto coordinate = [&](double value) {
        char text[24];
        std::snprintf(text, sizeof text, "%.5f", value);
        std::string cipher = second.fix ? enciphered64(key, text) : std::string(16, 'A');
        cipher.resize(20, '\0');
        return cipher;
    };
    ByteWriter out;
    date3(time3(out, second), second).text(letters(second)).u8(0);
    out.text(coordinate(latitudeMinutes(second))).text(coordinate(longitudeMinutes(second)));
    out.f32le(second.speed / kmhPerKnot).f32le(second.heading);
    return blockAround(0x10, acceleration3(out, second, 256).take());
}

ByteVector n4(const DriveSecond& second) {
    return cipheredStrings(second, "luckychip gps");
}
ByteVector n4OtherKey(const DriveSecond& second) {
    return cipheredStrings(second, "customer nn gps");
}

ByteVector n5(const DriveSecond& second) {
    std::string text = enciphered(second);
    text.replace(0, 8, "\xaa\xaa\xf2\xe1\xf0\xee\x54\x54");
    return blockAround(0x12, ByteWriter().text(text).take());
}

ByteVector n6(const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds((second.time + 8 * 3600) * 1000);
    char digits[20];
    std::snprintf(digits, sizeof digits, "%04d%02d%02d%02d%02d%02d", time.year, time.month,
                  time.day, time.hour, time.minute, static_cast<int>(time.second));
    ByteWriter out;
    out.text(digits).padTo(0x10);
    acceleration3(out, second, 256).padTo(0x30).text(rmc(second)).text("\r\n");
    return blockAround(0x34, out.take());
}

ByteVector n7(const DriveSecond& second) {
    ByteWriter out;
    time3(out, second).text(second.fix ? "A" : "V").zeros(3);
    out.f32le(second.fix ? latitudeMinutes(second) : 0).text({north(second), '\0'}).zeros(2);
    out.f32le(second.fix ? longitudeMinutes(second) : 0).text({east(second), '\0'}).zeros(2);
    out.f32le(second.speed).f32le(second.heading);
    return blockAround(0x30, acceleration3(date3(out, second), second, 1000).take());
}

ByteVector doubles(const DriveSecond& second, std::size_t at) {
    ByteWriter out;
    time3(out, second).text(second.fix ? "A" : "V").zeros(3);
    out.f64le(second.fix ? latitudeMinutes(second) : 0).text({north(second), '\0'}).zeros(6);
    out.f64le(second.fix ? longitudeMinutes(second) : 0).text({east(second), '\0'}).zeros(6);
    out.f64le(second.speed / kmhPerKnot).f64le(second.heading);
    return blockAround(at, acceleration3(date3(out, second), second, 1000).take());
}

ByteVector n8(const DriveSecond& second) {
    return doubles(second, 0x30);
}
ByteVector n9(const DriveSecond& second) {
    return doubles(second, 0x10);
}

ByteVector n10(const DriveSecond& second) {
    ByteWriter out;
    out.text(letters(second)).u8(0);
    time3(date3(out, second), second);
    out.f32le(second.fix ? longitudeMinutes(second) : 0);
    out.f32le(second.fix ? latitudeMinutes(second) : 0);
    out.f32le(second.speed / kmhPerKnot).f32le(second.heading).f32le(second.altitude);
    return blockAround(0x40, acceleration3(out, second, 1000).take());
}

ByteVector n11(const DriveSecond& second) {
    ByteWriter out;
    out.text({second.fix ? 'A' : 'V', north(second), east(second), '\0'});
    return blockAround(0x10, floats(out, second).zeros(12).take());
}

ByteVector n12(const DriveSecond& second) {
    return blockAround(0x3c, ByteWriter().text(rmc(second, 16)).take());
}

ByteVector n14(const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    const double heading = second.heading > 180 ? second.heading - 360 : second.heading;
    ByteWriter out;
    out.u16be(static_cast<std::uint64_t>(whole(second.speed / 3.6 * 100)));
    out.i16be(whole(heading * 100)).u16be(static_cast<std::uint64_t>(time.year));
    out.u8(static_cast<std::uint64_t>(time.month)).u8(static_cast<std::uint64_t>(time.day));
    out.u8(static_cast<std::uint64_t>(time.hour)).u8(static_cast<std::uint64_t>(time.minute));
    out.u16be(static_cast<std::uint64_t>(time.second * 10)).u8(2);
    out.i32be(second.fix ? whole(second.latitude * 1e7) : 0);
    out.i32be(second.fix ? whole(second.longitude * 1e7) : 0);
    return blockAround(0x32, out.u8(16).zeros(10).take());
}

ByteVector n17(const DriveSecond& second) {
    ByteWriter out;
    out.i32le(second.fix ? whole(second.latitude * 1e7) : 0);
    out.i32le(second.fix ? whole(second.longitude * 1e7) : 0);
    return blockAround(31, out.zeros(12).text("VV").take());
}

// The digits that tell the layout are overwritten, and in every other block the marker too.
ByteVector n6Damaged(const DriveSecond& second) {
    ByteVector block = n6(second);
    std::fill(block.begin() + 0x34, block.begin() + 0x44, std::uint8_t{0x11});
    if (second.time % 2 == 1) {
        std::fill(block.begin() + 4, block.begin() + 12, std::uint8_t{0});
    }
    return block;
}

template <BlockOf block>
ByteVector indexed(const DriveSeconds& drive) {
    return withBlocks(drive, block);
}
template <BlockOf block>
ByteVector unindexed(const DriveSeconds& drive) {
    return withBlocks(drive, block, Mp4Plan::Index::none);
}
template <BlockOf block>
ByteVector halfIndexed(const DriveSeconds& drive) {
    return withBlocks(drive, block, Mp4Plan::Index::firstHalf);
}

} // namespace

std::span<const FamilyMaker> blockMakers() {
    constexpr auto grid = PlaceGrid::floatMinutes;
    constexpr auto no = Given::no;
    constexpr std::string_view family = "freeGPS blocks";
    static const std::vector<FamilyMaker> makers = {
        {.name = "freegps_letters_28", .family = family, .make = indexed<n1>, .places = grid},
        {.name = "freegps_without_index",
         .family = "freeGPS blocks without index",
         .make = unindexed<n1>,
         .places = grid},
        {.name = "freegps_half_index", .family = family, .make = halfIndexed<n1>, .places = grid},
        {.name = "freegps_letters_48",
         .family = family,
         .make = indexed<n2>,
         .places = grid,
         .acceleration = no},
        {.name = "freegps_integers_4c",
         .family = family,
         .make = indexed<n2Integers>,
         .heading = no,
         .acceleration = no},
        {.name = "freegps_letters_58", .family = family, .make = indexed<n3>, .places = grid},
        {.name = "freegps_ciphered_strings", .family = family, .make = indexed<n4>},
        {.name = "freegps_ciphered_strings_other_key",
         .family = family,
         .make = indexed<n4OtherKey>},
        {.name = "freegps_enciphered_text",
         .family = family,
         .make = indexed<n5>,
         .speedGrid = 1,
         .heading = no},
        {.name = "freegps_digits_34", .family = family, .make = indexed<n6>},
        {.name = "freegps_damaged_preamble",
         .family = family,
         .make = indexed<n6Damaged>,
         .acceleration = no},
        {.name = "freegps_spread_floats", .family = family, .make = indexed<n7>, .places = grid},
        {.name = "freegps_doubles_40", .family = family, .make = indexed<n8>},
        {.name = "freegps_doubles_20", .family = family, .make = indexed<n9>},
        {.name = "freegps_letters_40", .family = family, .make = indexed<n10>, .places = grid},
        {.name = "freegps_rows_10",
         .family = family,
         .make = indexed<n11>,
         .places = grid,
         .acceleration = no,
         .clock = no},
        {.name = "freegps_shifted_text",
         .family = family,
         .make = indexed<n12>,
         .acceleration = no},
        {.name = "freegps_rows_32", .family = family, .make = indexed<n14>, .acceleration = no},
        {.name = "freegps_vv",
         .family = family,
         .make = indexed<n17>,
         .speed = no,
         .heading = no,
         .acceleration = no,
         .clock = no},
    };
    return makers;
}

} // namespace velmorant::recordings::making

#include "telemetry/families/FreeGpsLayouts.h"

#include <array>
#include <string>

#include "telemetry/Geometry.h"
#include "telemetry/Nmea.h"
#include "telemetry/UtcTime.h"
#include "telemetry/families/CipheredStrings.h"
#include "telemetry/families/EncipheredText.h"

namespace velmorant::telemetry {

namespace {

bool oneOf(char c, std::string_view set) {
    return c != 0 && set.find(c) != std::string_view::npos;
}

bool lettersAt(Bytes block, std::size_t at) {
    return oneOf(block.character(at), "AV") && oneOf(block.character(at + 1), "NS") &&
           oneOf(block.character(at + 2), "EW");
}

struct ClockFields {
    std::int32_t hour, minute, second, year, month, day;
};

// Sets the time, or marks a good fix whose date no calendar has.
void setTime(Fix& fix, const ClockFields& fields, TimeBase base = TimeBase::utc) {
    CivilTime time;
    time.hour = fields.hour;
    time.minute = fields.minute;
    time.second = fields.second;
    time.year = fields.year >= 0 && fields.year < 100 ? 2000 + fields.year : fields.year;
    time.month = fields.month;
    time.day = fields.day;
    if (const auto milliseconds = toMilliseconds(time)) {
        fix.time = *milliseconds;
        fix.base = base;
    } else if (fix.state == FixState::good) {
        fix.state = FixState::badDate;
    }
}

// Hour, minute, second at one place, year, month and day at another; i32 each.
ClockFields clockAt(Bytes block, std::size_t time, std::size_t date) {
    return {block.i32le(time), block.i32le(time + 4), block.i32le(time + 8),
            block.i32le(date), block.i32le(date + 4), block.i32le(date + 8)};
}

// A clock that counts years from 0 is the satellites'; with full years it is the recorder's own.
TimeBase baseOf(const ClockFields& fields) {
    return fields.year >= 2000 ? TimeBase::camera : TimeBase::utc;
}

void setPlace(Fix& fix, double latitude, char north, double longitude, char east) {
    fix.latitude = fromDegreesMinutes(latitude) * (north == 'S' ? -1 : 1);
    fix.longitude = fromDegreesMinutes(longitude) * (east == 'W' ? -1 : 1);
}

double f32(Bytes block, std::size_t at) {
    return static_cast<double>(block.f32le(at));
}

// Letters in a row, behind one byte latitude, longitude, knots and heading.
void readFloats(Bytes block, std::size_t at, Fix& fix) {
    fix.state = block.character(at) == 'A' ? FixState::good : FixState::noFix;
    setPlace(fix, f32(block, at + 4), block.character(at + 1), f32(block, at + 8),
             block.character(at + 2));
    fix.speed = f32(block, at + 12) * kmhPerKnot;
    fix.heading = f32(block, at + 16);
}

void addAcceleration(Bytes block, std::size_t at, double countsPerG, Collector& collector) {
    bool zero = true;
    bool counting = true;
    bool filled = true; // with 255 on every axis: no sensor
    for (std::size_t i = 0; i < 6; ++i) {
        const std::uint16_t word = block.u16le(at + 2 * i);
        zero = zero && word == 0;
        counting = counting && word == i + 1;
        filled = filled && word == (i % 2 == 0 ? 255 : 0);
    }
    if (!zero && !counting && !filled && block.has(at, 12)) {
        collector.addToLast({block.i32le(at) / countsPerG, block.i32le(at + 4) / countsPerG,
                             block.i32le(at + 8) / countsPerG});
    }
}

// Clock, letters, floats and acceleration at fixed distances from one base.
void readRow(Bytes block, std::size_t base, Collector& collector) {
    Fix fix;
    readFloats(block, base + 0x18, fix);
    const ClockFields clock = clockAt(block, base, base + 12);
    setTime(fix, clock, baseOf(clock));
    collector.add(fix);
    addAcceleration(block, base + 0x2c, 256, collector);
}

void readLettersAt48(Bytes block, Collector& collector) {
    Fix fix;
    readFloats(block, 0x48, fix);
    const ClockFields clock = clockAt(block, 0x30, 0x3c);
    setTime(fix, clock, baseOf(clock));
    collector.add(fix);
}

void readIntegersAt4c(Bytes block, Collector& collector) {
    Fix fix;
    fix.state = block.character(0x48) == 'A' ? FixState::good : FixState::noFix;
    fix.latitude = block.i32le(0x4c) / 1e7;
    fix.longitude = block.i32le(0x50) / 1e7;
    if (block.character(0x49) == 'S') {
        fix.latitude = -std::abs(fix.latitude);
    }
    if (block.character(0x4a) == 'W') {
        fix.longitude = -std::abs(fix.longitude);
    }
    fix.speed = block.i32le(0x54) / 100.0 * kmhPerMetrePerSecond;
    const ClockFields clock = clockAt(block, 0x30, 0x3c);
    setTime(fix, clock, baseOf(clock));
    collector.add(fix);
}

void readCipheredStrings(Bytes block, Collector& collector) {
    Fix fix;
    fix.state = block.character(0x28) == 'A' ? FixState::good : FixState::noFix;
    if (const auto place = decipherPlace(block.text(0x2c, 20), block.text(0x40, 20))) {
        setPlace(fix, place->latitude, block.character(0x29), place->longitude,
                 block.character(0x2a));
    } else if (fix.state == FixState::good) {
        fix.state = FixState::enciphered;
    }
    fix.speed = f32(block, 0x54) * kmhPerKnot;
    fix.heading = f32(block, 0x58);
    setTime(fix, clockAt(block, 0x10, 0x1c));
    collector.add(fix);
    addAcceleration(block, 0x5c, 256, collector);
}

void readLettersAt40(Bytes block, Collector& collector) {
    Fix fix;
    fix.state = block.character(0x40) == 'A' ? FixState::good : FixState::noFix;
    setPlace(fix, f32(block, 0x60), block.character(0x41), f32(block, 0x5c), block.character(0x42));
    fix.speed = f32(block, 0x64) * kmhPerKnot;
    fix.heading = f32(block, 0x68);
    fix.altitude = f32(block, 0x6c);
    setTime(fix, clockAt(block, 0x50, 0x44));
    collector.add(fix);
    addAcceleration(block, 0x70, 1000, collector);
}

void readSpreadFloats(Bytes block, Collector& collector) {
    Fix fix;
    fix.state = block.character(0x3c) == 'A' ? FixState::good : FixState::noFix;
    setPlace(fix, f32(block, 0x40), block.character(0x44), f32(block, 0x48), block.character(0x4c));
    fix.speed = f32(block, 0x50);
    fix.heading = std::fmod(f32(block, 0x54) + (block.holds(0x10, "x.xx") ? 180 : 0), 360);
    setTime(fix, clockAt(block, 0x30, 0x58));
    collector.add(fix);
    addAcceleration(block, 0x64, 1000, collector);
}

// Doubles with their letters; the whole is the same at two places.
void readDoubles(Bytes block, std::size_t base, Collector& collector) {
    Fix fix;
    fix.state = block.character(base + 0x0c) == 'A' ? FixState::good : FixState::noFix;
    setPlace(fix, block.f64le(base + 0x10), block.character(base + 0x18), block.f64le(base + 0x20),
             block.character(base + 0x28));
    fix.speed = block.f64le(base + 0x30) * kmhPerKnot;
    fix.heading = block.f64le(base + 0x38);
    setTime(fix, clockAt(block, base, base + 0x40));
    collector.add(fix);
    addAcceleration(block, base + 0x4c, 1000, collector);
}

void readRowsFrom10(Bytes block, Collector& collector) {
    for (std::size_t at = 0x10; lettersAt(block, at) && block.has(at, 32); at += 32) {
        Fix fix;
        readFloats(block, at, fix);
        collector.add(fix);
    }
}

bool bigEndianRowAt(Bytes block, std::size_t at) {
    const std::uint16_t year = block.u16be(at + 4);
    return block.has(at, 32) && year >= 2000 && year < 2100 && block.u8(at + 6) >= 1 &&
           block.u8(at + 6) <= 12 && block.u8(at + 7) >= 1 && block.u8(at + 7) <= 31 &&
           block.u8(at + 8) < 24 && block.u8(at + 9) < 60 && block.u16be(at + 10) < 610;
}

void readRowsFrom32(Bytes block, Collector& collector) {
    for (std::size_t at = 0x32; bigEndianRowAt(block, at); at += 32) {
        Fix fix;
        fix.speed = block.u16be(at) / 100.0 * kmhPerMetrePerSecond;
        fix.heading = block.i16be(at + 2) / 100.0;
        const int tenths = block.u16be(at + 10);
        setTime(fix, {block.u8(at + 8), block.u8(at + 9), tenths / 10, block.u16be(at + 4),
                      block.u8(at + 6), block.u8(at + 7)});
        fix.time += fix.time == noTime ? 0 : tenths % 10 * 100;
        fix.latitude = block.i32be(at + 13) / 1e7;
        fix.longitude = block.i32be(at + 17) / 1e7;
        collector.add(fix);
    }
}

void readNothing(Bytes, Collector&) {}

void readText(Bytes block, Collector& collector) {
    if (const auto reading = readEncipheredText(block.from(0x12))) {
        collector.add(reading->fix);
        for (const Acceleration& acceleration : reading->accelerations) {
            collector.addToLast(acceleration);
        }
    }
}

bool digitsAt34(Bytes block) {
    return digits(block.text(0x34, 14), 0, 8) > 19800000 && digits(block.text(0x3c, 6), 0, 6) >= 0;
}

void readSentenceBehindDigits(Bytes block, Collector& collector) {
    bool found = false;
    readSentences(block.text(0x50), [&](const Fix& fix) {
        if (!found) {
            found = true;
            collector.add(fix);
        }
    });
    if (!found) {
        Fix fix;
        fix.state = FixState::noFix;
        const std::string_view text = block.text(0x34, 14);
        setTime(fix,
                {digits(text, 8, 2), digits(text, 10, 2), digits(text, 12, 2), digits(text, 0, 4),
                 digits(text, 4, 2), digits(text, 6, 2)},
                TimeBase::camera);
        collector.add(fix);
    }
    addAcceleration(block, 0x44, 256, collector);
}

void readSentenceAnywhere(Bytes block, Collector& collector) {
    bool found = false;
    readSentences(block.text(0x10), [&](const Fix& fix) {
        if (!found) {
            found = true;
            collector.add(fix);
        }
    });
}

void readShiftedText(Bytes block, Collector& collector) {
    std::string text(block.text(0x3c, 80));
    for (char& c : text) {
        c = static_cast<char>(static_cast<unsigned char>(c) - 16);
    }
    if (const auto fix = readRmc(text)) {
        collector.add(*fix);
    }
}

bool encipheredPlaces(Bytes block) {
    const std::uint32_t month = block.u32le(0x40);
    const std::uint32_t day = block.u32le(0x44);
    return lettersAt(block, 0x48) && month >= 1 && month <= 12 && day >= 1 && day <= 31 &&
           block.u8(0x4b) == 0 && block.u32le(0x4c) == 0 && block.u64le(0x50) != 0;
}

void readTimeAlone(Bytes block, Collector& collector) {
    Fix fix;
    fix.state = FixState::enciphered;
    setTime(fix, clockAt(block, 0x30, 0x3c), TimeBase::camera);
    collector.add(fix);
}

bool spreadLetters(Bytes block, std::size_t status, std::size_t north, std::size_t east) {
    return block.character(status) == 'A' && block.u8(status + 1) == 0 &&
           oneOf(block.character(north), "NS") && oneOf(block.character(east), "EW");
}

bool base64At(Bytes block, std::size_t at) {
    return isBase64(block.text(at, 20)) && isBase64(block.text(at + 20, 20));
}

constexpr std::array layouts = {
    FreeGpsLayout{[](Bytes b) { return readEncipheredText(b.from(0x12)).has_value(); }, readText},
    FreeGpsLayout{digitsAt34, readSentenceBehindDigits},
    FreeGpsLayout{[](Bytes b) { return lettersAt(b, 0x28) && base64At(b, 0x2c); },
                  readCipheredStrings},
    FreeGpsLayout{[](Bytes b) { return lettersAt(b, 0x28); },
                  [](Bytes b, Collector& c) { readRow(b, 0x10, c); }},
    FreeGpsLayout{[](Bytes b) { return lettersAt(b, 0x58) && !lettersAt(b, 0x48); },
                  [](Bytes b, Collector& c) { readRow(b, 0x40, c); }},
    FreeGpsLayout{[](Bytes b) { return lettersAt(b, 0x10) && b.u8(0x13) == 0; }, readRowsFrom10},
    FreeGpsLayout{[](Bytes b) { return b.holds(0x3c, "4W`b]S<"); }, readShiftedText},
    FreeGpsLayout{encipheredPlaces, readTimeAlone},
    FreeGpsLayout{[](Bytes b) { return lettersAt(b, 0x48) && b.holds(0x10, "IQS"); },
                  readIntegersAt4c},
    FreeGpsLayout{[](Bytes b) { return lettersAt(b, 0x48); }, readLettersAt48},
    FreeGpsLayout{[](Bytes b) { return lettersAt(b, 0x40) && b.u8(0x43) == 0; }, readLettersAt40},
    FreeGpsLayout{[](Bytes b) { return spreadLetters(b, 0x3c, 0x48, 0x58); },
                  [](Bytes b, Collector& c) { readDoubles(b, 0x30, c); }},
    FreeGpsLayout{[](Bytes b) { return spreadLetters(b, 0x3c, 0x44, 0x4c); }, readSpreadFloats},
    FreeGpsLayout{[](Bytes b) { return spreadLetters(b, 0x1c, 0x28, 0x38); },
                  [](Bytes b, Collector& c) { readDoubles(b, 0x10, c); }},
    FreeGpsLayout{[](Bytes b) { return b.holds(0x33, "VV"); }, readNothing, true},
    FreeGpsLayout{[](Bytes b) { return bigEndianRowAt(b, 0x32); }, readRowsFrom32},
};

constexpr std::array withoutFix = {
    FreeGpsLayout{[](Bytes b) { return b.character(0x28) == 'V'; },
                  [](Bytes b, Collector& c) { readRow(b, 0x10, c); }},
    FreeGpsLayout{[](Bytes b) { return b.character(0x48) == 'V'; }, readLettersAt48},
    FreeGpsLayout{holdsSentence, readSentenceAnywhere},
};

} // namespace

bool holdsSentence(Bytes block) {
    bool found = false;
    readSentences(block.text(0x10), [&](const Fix& fix) {
        found = found || known(fix.latitude) || fix.time != noTime;
    });
    return found;
}

std::span<const FreeGpsLayout> freeGpsLayouts() {
    return layouts;
}
std::span<const FreeGpsLayout> freeGpsLayoutsWithoutFix() {
    return withoutFix;
}

} // namespace velmorant::telemetry

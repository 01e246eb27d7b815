// The layouts of the body of a freeGPS block. Offsets count from the block's start; numbers are
// little-endian unless said; "clock" is hour minute second year-2000 month day, u32 each; "ddmm" is
// degrees and minutes in one number; A stands for the status letter ('A' good, 'V' none), N for
// 'N' or 'S', E for 'E' or 'W'. Acceleration is x y z, i32 each, in counts to the g.
//
//   letters at 0x28      clock 0x10, A N E 0x28, float ddmm latitude longitude knots heading 0x2c,
//                        acceleration 0x3c at 256
//   letters at 0x58      the same, 0x30 further; a year above 2000 means the recorder's own clock
//   ciphered strings     as the first, but latitude 0x2c and longitude 0x40 are 20 characters of
//                        base64 over RC4; knots 0x54, heading 0x58, acceleration 0x5c at 256
//   letters at 0x48      clock 0x30, A N E 0x48, floats 0x4c
//   integers at 0x4c     the same with "IQS" at 0x10: i32 degrees 1e7 twice, i32 metres/s times 100
//   letters at 0x40      A N E 0x40, year-2000 month day hour minute second 0x44, float longitude
//                        latitude knots heading altitude 0x5c, acceleration 0x70 at 1000
//   spread floats        hour minute second 0x30, A 0x3c, float ddmm 0x40 N 0x44, float ddmm 0x48
//                        E 0x4c, float km/h 0x50, heading 0x54 (turned by 180 where 0x10 reads
//                        "x.xx"), year month day 0x58, acceleration 0x64 at 1000
//   doubles at 0x40      hour minute second 0x30, A 0x3c, double ddmm 0x40 N 0x48, double ddmm 0x50
//                        E 0x58, double knots 0x60 heading 0x68, year-2000 month day 0x70,
//                        acceleration 0x7c at 1000
//   doubles at 0x20      hour minute second 0x10, A 0x1c, double ddmm 0x20 N 0x28, double ddmm 0x30
//                        E 0x38, double knots 0x40 heading 0x48, year-2000 month day 0x50,
//                        acceleration 0x5c at 1000
//   rows from 0x10       32 bytes each: A N E 0, float ddmm latitude longitude knots heading, then
//                        12 bytes of acceleration in unknown units, which are left out; no time
//   rows from 0x32       32 bytes each, big-endian: u16 metres/s times 100, i16 heading times 100,
//                        u16 year, u8 month day hour minute, u16 second times 10, u8, i32 degrees
//                        1e7 twice
//   "VV" at 0x33         i32 latitude at 31 and longitude at 35, their unit see VvPlaces.h; no
//   time;
//                        speed in unknown units
//   text from 0x12       each byte XOR 0xaa, see EncipheredText.h
//   digits at 0x34       the recorder's clock YYYYMMDDhhmmss 0x34, acceleration 0x44 at 256, an RMC
//                        sentence behind
//   shifted text 0x3c    an RMC sentence whose bytes are 16 too great
//   enciphered places    year month day 0x3c, A N E 0x48, five zeros: the positions' rule is
//   unknown,
//                        only the time is read
#pragma once

#include <span>

#include "telemetry/Bytes.h"
#include "telemetry/Collector.h"

namespace velmorant::telemetry {

struct FreeGpsLayout {
    bool (*matches)(Bytes block);
    // Adds the block's readings to the collector's sequence.
    void (*read)(Bytes block, Collector& collector);
    // The unit of the places is decided when all are known, see VvPlaces.h; `read` is not called.
    bool vvPlaces = false;
};

// In the order in which they are tried.
std::span<const FreeGpsLayout> freeGpsLayouts();
// For recordings that never had a fix: told by the status letter alone.
std::span<const FreeGpsLayout> freeGpsLayoutsWithoutFix();
// An RMC sentence somewhere in a block whose beginning is damaged.
bool holdsSentence(Bytes block);

} // namespace velmorant::telemetry

// Layouts in boxes and behind the last box.
#include <cmath>
#include <cstdio>

#include "telemetry/UtcTime.h"
#include "tools/recordings/FamilyMakers.h"
#include "tools/recordings/LigoCipherText.h"

namespace velmorant::recordings::making {

namespace {

constexpr double kmhPerMile = 1.609344;

ByteVector makeGpsBox(const DriveSeconds& drive) {
    ByteWriter records;
    for (std::size_t i = 0; i < drive.size(); ++i) {
        const DriveSecond& second = drive[i];
        if (second.written == 0) {
            continue;
        }
        records.u32le(1).u32le(second.fix ? 1 : 0);
        records.u32le(i);
        records.u32le(static_cast<std::uint64_t>(whole(second.speed * 1000)));
        const auto minutes = [](double value) {
            return static_cast<std::uint64_t>(whole(value * 1000));
        };
        records.text({north(second)}).u32le(minutes(latitudeMinutes(second)));
        records.text({east(second)}).u32le(minutes(longitudeMinutes(second)));
        records.zeros(10);
    }
    Mp4Plan plan = planOf(drive);
    plan.topBoxes.push_back(box("GPS ", records.zeros(36 * 10).take()));
    return buildMp4(plan);
}

ByteVector ligoText(const DriveSeconds& seconds) {
    const DriveSeconds drive = asWritten(seconds);
    ByteWriter out;
    out.text("LIGOGPSINFO").zeros(1).u32le(drive.size()).u32le(0);
    for (std::size_t i = 0; i < drive.size(); ++i) {
        const std::size_t end = out.size() + 0x84;
        out.u32le(i).text(ligoLine(drive[i])).padTo(end);
    }
    return out.take();
}

ByteVector makeLigoBox(const DriveSeconds& drive) {
    Mp4Plan plan = planOf(drive);
    plan.topBoxes.push_back(box("skip", ligoText(drive)));
    return buildMp4(plan);
}

ByteVector makeLigoTrailer(const DriveSeconds& drive) {
    Mp4Plan plan = planOf(drive);
    ByteWriter trailer;
    trailer.append(ligoText(drive)).text("&&&&").u32le(0);
    ByteVector bytes = trailer.take();
    const auto length = static_cast<std::uint32_t>(bytes.size());
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[bytes.size() - 4 + i] = static_cast<std::uint8_t>(length >> (8 * i));
    }
    plan.trailer = bytes;
    return buildMp4(plan);
}

ByteVector makeStarredLigoTrailer(const DriveSeconds& drive) {
    Mp4Plan plan = planOf(drive);
    ByteWriter trailer;
    trailer.text("****").append(ligoText(drive)).text("####");
    plan.trailer = trailer.u32be(trailer.size() + 4).take();
    return buildMp4(plan);
}

ByteVector ligoBlock(const DriveSecond& second) {
    return blockAround(0x30, ligoText({second}));
}
ByteVector makeLigoBlocks(const DriveSeconds& drive) {
    return withBlocks(drive, ligoBlock);
}
ByteVector ligoSample(const DriveSecond& second) {
    return ByteWriter().text("SKIP").append(ligoText({second})).take();
}
ByteVector makeLigoSsmd(const DriveSeconds& drive) {
    return withTrack(drive, "meta", "ssmd", ligoSample);
}

enum class LigoPlaces { plain, shifted };

ByteVector encipheredLigoText(const DriveSeconds& seconds, LigoPlaces places) {
    const DriveSeconds drive = asWritten(seconds);
    const bool shifted = places == LigoPlaces::shifted;
    ByteWriter out;
    out.text("LIGOGPSINFO").u8(0).u32be(shifted ? 5 : 1).u32le(drive.size());
    for (std::size_t i = 0; i < drive.size(); ++i) {
        DriveSecond second = drive[i];
        const double latitudeSign = second.latitude < 0 ? -1 : 1;
        const double longitudeSign = second.longitude < 0 ? -1 : 1;
        if (shifted) {
            const Place moved = shiftedLigo({second.latitude, second.longitude});
            second.latitude = moved.latitude * latitudeSign;
            second.longitude = moved.longitude * longitudeSign;
        }
        second.speed /= shifted ? 1.85407333 : 1.852;
        const std::string line = ligoLine(second);
        const std::string cipher = encipheredLigo(
            std::string{static_cast<char>(i), '\0', '\0', '\0'} + line.substr(0, line.find(" H:")));
        const std::size_t end = out.size() + 0x84;
        out.text("####").u32le(cipher.size()).text(cipher).padTo(end);
    }
    return out.take();
}

ByteVector encipheredLigoBlock(const DriveSecond& second) {
    return blockAround(0x50, encipheredLigoText({second}, LigoPlaces::plain));
}
ByteVector makeEncipheredLigo(const DriveSeconds& drive) {
    return withBlocks(drive, encipheredLigoBlock);
}

ByteVector makeShiftedLigo(const DriveSeconds& drive) {
    Mp4Plan plan = planOf(drive);
    plan.topBoxes.push_back(box("skip", encipheredLigoText(drive, LigoPlaces::shifted)));
    return buildMp4(plan);
}

ByteVector makeUuidBox(const DriveSeconds& drive) {
    constexpr double stepsPerDegree = 2147483648.0 / 180;
    ByteWriter out;
    out.text(
        std::string_view("\x9b\x63\x0f\x8d\x63\x74\x40\xec\x82\x04\xbc\x5f\xf5\x09\x17\x28", 16));
    out.zeros(17);
    for (const DriveSecond& second : asWritten(drive)) {
        out.u32be(static_cast<std::uint64_t>(second.time + 2082844800));
        out.u16be(static_cast<std::uint64_t>(whole(second.speed / kmhPerMile))).zeros(6);
        out.i32be(second.fix ? whole(second.latitude * stepsPerDegree) : INT32_MIN);
        out.i32be(second.fix ? whole(second.longitude * stepsPerDegree) : INT32_MIN);
    }
    Mp4Plan plan = planOf(drive);
    plan.topBoxes.push_back(box("uuid", out.take()));
    return buildMp4(plan);
}

ByteVector makeFreeBox(const DriveSeconds& drive) {
    constexpr std::int64_t zone = 8 * 3600;
    std::string lines;
    ByteWriter accelerations;
    for (std::size_t second = 0; second < drive.size(); ++second) {
        const DriveSecond& now = drive[second];
        for (int copy = 0; copy < now.written; ++copy) {
            const auto stamp = drive.front().time + static_cast<std::int64_t>(second);
            lines += "[" + std::to_string(stamp * 1000) + "]" + rmc(now) + "\r\n";
        }
        for (std::size_t i = 0; i < 9; ++i) {
            accelerations.u32be(second * 1000 + i * 110);
            accelerations.i16be(whole(now.right * 128)).i16be(whole(now.forwards * 128));
            accelerations.i16be(whole(now.up * 128));
        }
    }
    accelerations.u32be(UINT32_MAX).zeros(6);
    ByteWriter start;
    start.u64be(static_cast<std::uint64_t>((drive.front().time + zone) * 1000));
    ByteWriter content;
    content.append(box("cprt", ByteWriter().text("{}").take())).append(box("sttm", start.take()));
    content.append(box("gps ", ByteWriter().text(lines).take()));
    content.append(box("3gf ", accelerations.take()));
    Mp4Plan plan = planOf(drive);
    plan.topBoxes.push_back(box("free", content.take()));
    return buildMp4(plan);
}

enum class Gps0 { inUserData, behindMovie };

template <Gps0 where>
ByteVector makeGps0(const DriveSeconds& drive) {
    ByteWriter places;
    ByteWriter accelerations;
    for (const DriveSecond& second : asWritten(drive)) {
        const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
        const auto minutes = [&](double value, double degrees) {
            return second.fix ? std::copysign(value, degrees) : 4294967295.0;
        };
        places.f64le(minutes(latitudeMinutes(second), second.latitude));
        places.f64le(minutes(longitudeMinutes(second), second.longitude));
        places.i32le(static_cast<std::int64_t>(second.altitude));
        places.u16le(static_cast<std::uint64_t>(whole(second.speed)));
        for (const int part : {time.year - 2000, time.month, time.day, time.hour, time.minute,
                               static_cast<int>(time.second)}) {
            places.u8(static_cast<std::uint64_t>(part));
        }
        places.u8(static_cast<std::uint64_t>(second.heading / 2)).zeros(3);
        for (int i = 0; i < 5; ++i) {
            for (const double g : {second.right, second.forwards, second.up}) {
                accelerations.u8(static_cast<std::uint8_t>(whole(g * 16)));
            }
        }
    }
    Mp4Plan plan = planOf(drive);
    plan.userData = {box("gps0", places.take()), box("gsen", accelerations.take())};
    if (where == Gps0::behindMovie) {
        for (const ByteVector& data : plan.userData) {
            plan.trailer.insert(plan.trailer.end(), data.begin(), data.end());
        }
        plan.userData.clear();
    }
    return buildMp4(plan);
}

ByteVector makeEncipheredGps0(const DriveSeconds& drive) {
    ByteWriter out;
    for (const DriveSecond& second : asWritten(drive)) {
        std::string text = enciphered(second);
        text.replace(0, 8, std::string("\0\0\xf2\xe1\xf0\xee\x54\x54", 8));
        out.text(text);
    }
    Mp4Plan plan = planOf(drive);
    plan.userData = {box("gps0", out.take())};
    return buildMp4(plan);
}

} // namespace

std::span<const FamilyMaker> boxMakers() {
    constexpr auto no = Given::no;
    constexpr std::string_view ligo = "LIGOGPSINFO text";
    static const std::vector<FamilyMaker> makers = {
        {.name = "gps_box",
         .family = "GPS box",
         .make = makeGpsBox,
         .placeGrid = 1.86,
         .heading = no,
         .acceleration = no,
         .clock = no},
        {.name = "ligo_skip_box", .family = ligo, .make = makeLigoBox},
        {.name = "ligo_trailer", .family = ligo, .make = makeLigoTrailer},
        {.name = "ligo_starred_trailer", .family = ligo, .make = makeStarredLigoTrailer},
        {.name = "ligo_blocks", .family = ligo, .make = makeLigoBlocks},
        {.name = "ligo_enciphered", .family = "LIGOGPSINFO text", .make = makeEncipheredLigo},
        {.name = "ligo_shifted", .family = "LIGOGPSINFO text", .make = makeShiftedLigo},
        {.name = "ligo_ssmd", .family = "packed records", .make = makeLigoSsmd},
        {.name = "uuid_box",
         .family = "uuid box",
         .make = makeUuidBox,
         .speedGrid = kmhPerMile,
         .heading = no,
         .acceleration = no},
        {.name = "free_box", .family = "stamped lines", .make = makeFreeBox},
        {.name = "gps0_binary",
         .family = "packed records in a box",
         .make = makeGps0<Gps0::inUserData>,
         .speedGrid = 1,
         .accelerationGrid = 1.0 / 16},
        {.name = "gps0_behind_movie",
         .family = "packed records in a box",
         .make = makeGps0<Gps0::behindMovie>,
         .speedGrid = 1,
         .accelerationGrid = 1.0 / 16},
        {.name = "gps0_enciphered",
         .family = "packed records in a box",
         .make = makeEncipheredGps0,
         .speedGrid = 1,
         .heading = no},
    };
    return makers;
}

} // namespace velmorant::recordings::making

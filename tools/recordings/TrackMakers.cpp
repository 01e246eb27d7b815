// Layouts in the samples of tracks.
#include <cmath>
#include <cstdio>
#include <functional>

#include "telemetry/UtcTime.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::recordings::making {

namespace {

constexpr double gravity = 9.80665;
constexpr double kmhPerMile = 1.609344;

ByteVector lengthAnd(const std::string& text) {
    return ByteWriter().u16be(text.size()).text(text).take();
}

ByteVector gsensoriText(const DriveSecond& second) {
    char text[80];
    std::snprintf(text, sizeof text, "gsensori,4,512,%ld,%ld,%ld;", whole(second.right * 128),
                  whole(second.forwards * 128), whole(second.up * 128));
    return lengthAnd(text + rmc(second).substr(1) + ";CAR,0,0,0,0.0,0,0,0,0,0");
}

ByteVector sentenceText(const DriveSecond& second) {
    return lengthAnd(rmc(second) + "\r\n");
}

ByteVector nbmt(const DriveSecond& second) {
    ByteWriter out;
    out.zeros(4).text("20240612103045").u16be(2);
    for (int i = 0; i < 12; ++i) {
        out.i16be(1000 + i);
    }
    return out.text(rmc(second)).text("\r\n").take();
}

ByteVector pndm(const DriveSecond& second) {
    ByteWriter out;
    out.text("PNDM").zeros(4).u16be(static_cast<std::uint64_t>(whole(second.speed / kmhPerMile)));
    constexpr double stepsPerDegree = 2147483648.0 / 180;
    out.zeros(2).i32be(second.fix ? whole(second.latitude * stepsPerDegree) : 0);
    return out.i32be(second.fix ? whole(second.longitude * stepsPerDegree) : 0).take();
}

ByteVector encipheredText(const DriveSecond& second) {
    std::string text = enciphered(second);
    text.replace(0, 8, std::string("\0\0\xf2\xe1\xf0\xee\x54\x54", 8));
    return ByteWriter().text(text).take();
}

ByteVector ssmd32(const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    ByteWriter out;
    const auto minutes = [&](double value, double degrees) {
        return second.fix ? std::copysign(value, degrees) : 4294967295.0;
    };
    out.f64le(minutes(latitudeMinutes(second), second.latitude));
    out.f64le(minutes(longitudeMinutes(second), second.longitude));
    out.i32le(static_cast<std::int64_t>(second.altitude));
    out.u16le(static_cast<std::uint64_t>(whole(second.speed / 1.852)));
    for (const int part : {time.year - 2000, time.month, time.day, time.hour, time.minute,
                           static_cast<int>(time.second)}) {
        out.u8(static_cast<std::uint64_t>(part));
    }
    return out.u8(static_cast<std::uint64_t>(second.heading / 2)).padTo(32).take();
}

ByteVector ssmd32WithoutHeading(const DriveSecond& second) {
    ByteVector record = ssmd32(second);
    record[28] = 0xff;
    return record;
}

ByteVector rvmiPlace(const DriveSecond& second) {
    ByteWriter out;
    out.text("gReV").i32le(second.fix ? whole(second.latitude * 1e6) : 0);
    out.i32le(second.fix ? whole(second.longitude * 1e6) : 0).i16le(whole(second.speed * 10));
    return out.u16le(static_cast<std::uint64_t>(second.heading / 2)).take();
}

ByteVector rvmiSensor(const DriveSecond& second) {
    ByteWriter out;
    out.text("sReV").i16le(whole(second.right * 1000)).i16le(whole(second.forwards * 1000));
    return out.i16le(whole(second.up * 1000)).take();
}

ByteVector makeRvmi(const DriveSeconds& drive) {
    Mp4Plan plan = planOf(drive);
    TrackPlan places;
    places.handler = "meta";
    places.format = "RVMI";
    TrackPlan sensors = places;
    addSamples(drive, rvmiPlace, places);
    addSamples(drive, rvmiSensor, sensors);
    plan.tracks = {places, sensors};
    return buildMp4(plan);
}

ByteVector tvxt(const DriveSecond& second) {
    ByteWriter out;
    out.zeros(40).f32le(second.right).f32le(second.forwards).f32le(second.up);
    out.f32le(second.speed / 1.852);
    const double known = second.fix ? 1 : 0;
    out.f32le(std::copysign(latitudeMinutes(second), second.latitude) * known);
    out.f32le(std::copysign(longitudeMinutes(second), second.longitude) * known);
    return out.u32le(static_cast<std::uint64_t>(second.time)).padTo(72).take();
}

ByteVector ssmd40(const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    ByteWriter out;
    out.f64le(second.fix ? second.latitude : 0).f64le(second.fix ? second.longitude : 0);
    out.u16le(static_cast<std::uint64_t>(second.altitude)).zeros(4);
    const int month = second.fix ? time.month : time.month - 1;
    for (const int part : {time.year - 1900, month, time.day, time.hour, time.minute,
                           static_cast<int>(time.second)}) {
        out.u8(static_cast<std::uint64_t>(part));
    }
    return out.u8(static_cast<std::uint64_t>(second.heading / 2)).padTo(40).take();
}

ByteVector floatG(const DriveSecond& second) {
    return ByteWriter().f32le(second.right).f32le(second.forwards).f32le(second.up).take();
}

ByteVector makeSsmd32(const DriveSeconds& drive) {
    Mp4Plan plan = planOf(drive);
    TrackPlan places;
    places.handler = "meta";
    places.format = "ssmd";
    TrackPlan accelerations = places;
    addSamples(drive, ssmd32, places);
    addSamples(drive, floatG, accelerations);
    plan.tracks = {places, accelerations};
    return buildMp4(plan);
}

// A record of GPMF: key, type, size of a row, rows; padded to four bytes.
ByteVector klv(std::string_view key, char type, std::size_t rowSize, const ByteVector& data) {
    ByteWriter out;
    out.text(key).u8(static_cast<unsigned char>(type)).u8(rowSize).u16be(data.size() / rowSize);
    out.append(data);
    return out.padTo((out.size() + 3) / 4 * 4).take();
}

ByteVector nested(std::string_view key, const ByteVector& content) {
    return klv(key, '\0', 1, content);
}

ByteVector accelerationStream(const DriveSecond& second) {
    ByteWriter rows;
    for (int i = 0; i < 200; ++i) {
        rows.i16be(whole(second.forwards * gravity * 418)); // Y
        rows.i16be(whole(-second.right * gravity * 418));   // the reversed X
        rows.i16be(whole(second.up * gravity * 418));       // Z
    }
    ByteWriter stream;
    stream.append(klv("SCAL", 's', 2, ByteWriter().i16be(418).take()));
    stream.append(klv("ORIN", 'c', 1, ByteWriter().text("YxZ").take()));
    return nested("STRM", stream.append(klv("ACCL", 's', 6, rows.bytes())).take());
}

ByteVector gps5Stream(const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    char utc[32];
    std::snprintf(utc, sizeof utc, "%02d%02d%02d%02d%02d%02d.000", time.year % 100, time.month,
                  time.day, time.hour, time.minute, static_cast<int>(time.second));
    ByteWriter scale;
    scale.i32be(10000000).i32be(10000000).i32be(1000).i32be(1000).i32be(100);
    ByteWriter row;
    row.i32be(whole(second.latitude * 1e7)).i32be(whole(second.longitude * 1e7));
    row.i32be(whole(second.altitude * 1000)).i32be(whole(second.speed / 3.6 * 1000));
    row.i32be(whole(second.speed / 3.6 * 100));
    ByteWriter stream;
    stream.append(klv("GPSF", 'L', 4, ByteWriter().u32be(second.fix ? 3 : 0).take()));
    stream.append(klv("GPSU", 'U', 16, ByteWriter().text(utc).take()));
    stream.append(klv("SCAL", 'l', 4, scale.bytes()));
    return nested("STRM", stream.append(klv("GPS5", 'l', 20, row.bytes())).take());
}

ByteVector gps9Stream(const DriveSecond& second) {
    const std::int64_t since2000 = second.time - 946684800;
    ByteWriter scale;
    scale.i32be(10000000).i32be(10000000).i32be(1000).i32be(1000).i32be(100);
    scale.i32be(1).i32be(1000).i32be(100).i32be(1);
    ByteWriter row;
    row.i32be(whole(second.latitude * 1e7)).i32be(whole(second.longitude * 1e7));
    row.i32be(whole(second.altitude * 1000)).i32be(whole(second.speed / 3.6 * 1000));
    row.i32be(whole(second.speed / 3.6 * 100));
    row.i32be(since2000 / 86400).i32be(since2000 % 86400 * 1000);
    row.u16be(150).u16be(second.fix ? 3 : 0);
    ByteWriter stream;
    stream.append(klv("SCAL", 'l', 4, scale.bytes()));
    stream.append(klv("TYPE", 'c', 1, ByteWriter().text("lllllllSS").take()));
    return nested("STRM", stream.append(klv("GPS9", '?', 32, row.bytes())).take());
}

ByteVector gpmf5(const DriveSecond& second) {
    ByteWriter device;
    device.append(klv("DVNM", 'c', 1, ByteWriter().text("Hero7 Black").take()));
    device.append(accelerationStream(second)).append(gps5Stream(second));
    return nested("DEVC", device.take());
}

ByteVector gpmf9(const DriveSecond& second) {
    ByteWriter device;
    device.append(klv("DVNM", 'c', 1, ByteWriter().text("Hero11 Black").take()));
    device.append(accelerationStream(second)).append(gps5Stream(second));
    return nested("DEVC", device.append(gps9Stream(second)).take());
}

ByteVector camm(const DriveSecond& second) {
    constexpr double pi = 3.14159265358979323846;
    ByteWriter out;
    out.u16le(0).u16le(3).f32le(second.right * gravity).f32le(second.forwards * gravity);
    out.f32le(second.up * gravity);
    out.u16le(0).u16le(6).f64le(static_cast<double>(second.time - 315964800 + 18));
    out.u32le(second.fix ? 3 : 0).f64le(second.latitude).f64le(second.longitude);
    out.f32le(second.altitude).f32le(3).f32le(5);
    out.f32le(second.speed / 3.6 * std::sin(second.heading * pi / 180));
    out.f32le(second.speed / 3.6 * std::cos(second.heading * pi / 180));
    return out.f32le(0).f32le(1).take();
}

ByteVector fmas(const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    ByteWriter out;
    out.text("FMAS")
        .padTo(0x48)
        .text("OFNIMMASSAMM")
        .u8(1)
        .padTo(0x60)
        .u16le(static_cast<std::uint64_t>(time.year));
    for (const int part :
         {time.month, time.day, time.hour, time.minute, static_cast<int>(time.second), 0}) {
        out.u8(static_cast<std::uint64_t>(part));
    }
    out.padTo(0x6c).f32le(second.up).f32le(second.right).f32le(second.forwards);
    out.text({second.fix ? 'A' : 'V', east(second), north(second)});
    const auto angle = [&](double degrees) {
        const auto units = static_cast<std::uint64_t>(whole(std::abs(degrees) * 60 * 6000));
        out.u8(units / 360000).u8(units / 6000 % 60);
        return units % 6000;
    };
    const std::uint64_t longitude = angle(second.longitude);
    out.u8(0).u16le(longitude);
    const std::uint64_t latitude = angle(second.latitude);
    out.u16le(latitude).u16le(static_cast<std::uint64_t>(whole(second.speed / kmhPerMile)));
    return out.u16le(static_cast<std::uint64_t>(whole(second.heading))).padTo(0xa0).take();
}

ByteVector gpmdPairs(const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    ByteWriter out;
    const auto pair = [&](std::size_t at, double value, std::int64_t scale) {
        out.padTo(at).i64le(whole(value * static_cast<double>(scale))).i64le(scale);
    };
    const double known = second.fix ? 1 : 0;
    pair(0x48, second.speed / 1.852, 100);
    pair(0x58, second.heading, 100);
    out.padTo(0x68).u32le(static_cast<std::uint64_t>(time.day));
    out.u32le(static_cast<std::uint64_t>(time.month)).u32le(static_cast<std::uint64_t>(time.year));
    out.padTo(0x88).text("0000000000000000MADE").padTo(0xa0);
    time3(out, second);
    pair(0xb0, std::copysign(latitudeMinutes(second), second.latitude) * known, 100000);
    pair(0xc0, std::copysign(longitudeMinutes(second), second.longitude) * known, 100000);
    pair(0xe8, second.altitude, 10);
    return out.padTo(0x150).take();
}

template <BlockOf sample>
ByteVector inGpmd(const DriveSeconds& drive) {
    return withTrack(drive, "meta", "gpmd", sample);
}
template <BlockOf sample>
ByteVector inText(const DriveSeconds& drive) {
    return withTrack(drive, "text", "text", sample);
}

} // namespace

std::span<const FamilyMaker> trackMakers() {
    constexpr auto no = Given::no;
    static const std::vector<FamilyMaker> makers = {
        {.name = "gpmf_gps5", .family = "GPMF", .make = inGpmd<gpmf5>, .heading = no},
        {.name = "gpmf_gps9", .family = "GPMF", .make = inGpmd<gpmf9>, .heading = no},
        {.name = "camm",
         .family = "camera motion metadata",
         .make = [](const DriveSeconds& d) { return withTrack(d, "meta", "camm", camm); }},
        {.name = "ssmd_32", .family = "packed records", .make = makeSsmd32, .speedGrid = 1.852},
        {.name = "ssmd_32_without_heading",
         .family = "packed records",
         .make =
             [](const DriveSeconds& d) {
                 return withTrack(d, "meta", "ssmd", ssmd32WithoutHeading);
             },
         .speedGrid = 1.852,
         .heading = no,
         .acceleration = no},
        {.name = "rvmi",
         .family = "fixed records",
         .make = makeRvmi,
         .placeGrid = 0.12,
         .speedGrid = 0.1,
         .clock = no},
        {.name = "tvxt",
         .family = "fixed records",
         .make = [](const DriveSeconds& d) { return withTrack(d, "tvxt", "mp4s", tvxt); },
         .places = PlaceGrid::floatMinutes,
         .heading = no},
        {.name = "ssmd_40",
         .family = "packed records",
         .make = [](const DriveSeconds& d) { return withTrack(d, "meta", "ssmd", ssmd40); },
         .speed = no,
         .acceleration = no},
        {.name = "text_gsensori", .family = "text track", .make = inText<gsensoriText>},
        {.name = "text_sentences_sbtl",
         .family = "text track",
         .make = [](const DriveSeconds& d) { return withTrack(d, "sbtl", "tx3g", sentenceText); },
         .acceleration = no},
        {.name = "text_pndm",
         .family = "text track",
         .make = inText<pndm>,
         .speedGrid = kmhPerMile,
         .heading = no,
         .acceleration = no,
         .clock = no},
        {.name = "text_enciphered",
         .family = "text track",
         .make = inText<encipheredText>,
         .speedGrid = 1,
         .heading = no},
        {.name = "sentence_track",
         .family = "sentence track",
         .make = [](const DriveSeconds& d) { return withTrack(d, "meta", "nbmt", nbmt); },
         .acceleration = no},
        {.name = "gpmd_fmas",
         .family = "records in gpmd",
         .make = inGpmd<fmas>,
         .speedGrid = kmhPerMile},
        {.name = "gpmd_pairs",
         .family = "records in gpmd",
         .make = inGpmd<gpmdPairs>,
         .acceleration = no},
        {.name = "gpmd_enciphered",
         .family = "records in gpmd",
         .make = inGpmd<encipheredText>,
         .speedGrid = 1,
         .heading = no},
        {.name = "gpmd_sentences",
         .family = "records in gpmd",
         .make = inGpmd<sentenceText>,
         .acceleration = no},
    };
    return makers;
}

} // namespace velmorant::recordings::making

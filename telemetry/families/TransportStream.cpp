#include "telemetry/families/TransportStream.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>

#include "telemetry/Geometry.h"
#include "telemetry/Nmea.h"
#include "telemetry/UtcTime.h"
#include "telemetry/families/FreeGpsLayouts.h"
#include "telemetry/families/LigoText.h"

namespace velmorant::telemetry {

namespace {

constexpr std::size_t packetSize = 188;
constexpr std::uint8_t syncByte = 0x47;
constexpr std::size_t longestUnit = 65536;

// The distance from one packet to the next and where the first starts.
struct Framing {
    std::size_t stride = 0;
    std::size_t first = 0;
};

Framing framingOf(Input& input) {
    const Bytes head = input.peek(0, 1024);
    for (const auto& [stride, first] : {Framing{188, 0}, Framing{192, 4}}) {
        bool all = head.size() > first + 2 * stride;
        for (std::size_t i = 0; all && i < 3; ++i) {
            all = head.u8(first + i * stride) == syncByte;
        }
        if (all) {
            return {stride, first};
        }
    }
    return {};
}

bool privateStream(unsigned pid) {
    return pid == 0x0300 || pid == 0x01e4 || pid == 0x0e1a || pid == 0x0e1b;
}

bool lettersAt(Bytes unit, std::size_t at) {
    const auto one = [&](std::size_t i, char a, char b) {
        return unit.character(i) == a || unit.character(i) == b;
    };
    return one(at, 'A', 'V') && one(at + 1, 'N', 'S') && one(at + 2, 'E', 'W');
}

// The row lies in a freeGPS block behind 16 bytes; so that one reader serves both, they are put in
// front of it.
bool readRow(Bytes unit, Collector& collector) {
    constexpr std::size_t blockHeader = 0x10;
    constexpr std::size_t rowLength = 0x38;
    for (const std::size_t start : {std::size_t{0}, std::size_t{164}}) {
        if (!lettersAt(unit, start + 0x18) || !unit.has(start, rowLength)) {
            continue;
        }
        std::array<std::uint8_t, blockHeader + rowLength + 0x20> block{};
        std::copy_n(unit.from(start).span().begin(), rowLength, block.begin() + blockHeader);
        const Bytes bytes{std::span<const std::uint8_t>(block)};
        for (const FreeGpsLayout& layout : freeGpsLayouts()) {
            if (layout.matches(bytes)) {
                layout.read(bytes, collector);
                return true;
            }
        }
    }
    return false;
}

bool readRows(Bytes unit, Collector& collector) {
    bool found = false;
    for (std::size_t at = 0; lettersAt(unit, at) && unit.u8(at + 3) == 0 && unit.has(at, 32);
         at += 32) {
        Fix fix;
        fix.state = unit.character(at) == 'A' ? FixState::good : FixState::noFix;
        fix.latitude = fromDegreesMinutes(static_cast<double>(unit.f32le(at + 4)));
        fix.longitude = fromDegreesMinutes(static_cast<double>(unit.f32le(at + 8)));
        fix.latitude *= unit.character(at + 1) == 'S' ? -1 : 1;
        fix.longitude *= unit.character(at + 2) == 'W' ? -1 : 1;
        fix.speed = static_cast<double>(unit.f32le(at + 12)) * kmhPerKnot;
        fix.heading = static_cast<double>(unit.f32le(at + 16));
        collector.add(fix);
        found = true;
    }
    return found;
}

bool readInfoLines(std::string_view text, Collector& collector) {
    bool found = false;
    if (const std::size_t at = text.find("$GPSINFO,"); at != std::string_view::npos) {
        const std::string_view line = text.substr(at, text.find_first_of("\r\n", at) - at);
        const std::string_view date = field(line, 2);
        Fix fix;
        CivilTime time;
        time.year = digits(date, 0, 4);
        time.month = digits(date, 5, 2);
        time.day = digits(date, 8, 2);
        time.hour = digits(date, 11, 2);
        time.minute = digits(date, 14, 2);
        time.second = digits(date, 17, 2);
        fix.latitude = fromDegreesMinutes(decimal(field(line, 3)));
        fix.longitude = fromDegreesMinutes(decimal(field(line, 4)));
        fix.speed = decimal(field(line, 5));
        fix.heading = decimal(field(line, 7));
        fix.time = toMilliseconds(time).value_or(noTime);
        fix.base = fix.time == noTime ? TimeBase::none : TimeBase::camera;
        collector.add(fix);
        found = true;
    }
    if (const std::size_t at = text.find("$GSNRINFO,"); at != std::string_view::npos && found) {
        const std::string_view line =
            text.substr(at, text.find_first_of(std::string_view("\r\n\0", 3), at) - at);
        const Acceleration acceleration{decimal(field(line, 1)), decimal(field(line, 2)),
                                        decimal(field(line, 3))};
        if (std::isfinite(acceleration.x + acceleration.y + acceleration.z)) {
            collector.addToLast(acceleration);
        }
    }
    return found;
}

// What stands behind the header of an elementary stream's packet.
Bytes withoutStreamHeader(Bytes unit) {
    if (unit.u8(0) != 0 || unit.u8(1) != 0 || unit.u8(2) != 1) {
        return unit;
    }
    const std::uint8_t stream = unit.u8(3);
    constexpr std::uint8_t privateStream2 = 0xbf; // has no optional fields
    return unit.from(stream == privateStream2 ? 6 : 9 + std::size_t{unit.u8(8)});
}

// Seconds of the 33-bit time stamp that a picture's packet may open with, or unknown.
double pictureTime(Bytes payload) {
    const bool picture = payload.u8(0) == 0 && payload.u8(1) == 0 && payload.u8(2) == 1 &&
                         (payload.u8(3) & 0xf0U) == 0xe0U;
    if (!picture || (payload.u8(7) & 0x80U) == 0 || !payload.has(9, 5)) {
        return unknown;
    }
    const std::uint64_t upper = payload.u8(9) >> 1U & 7U;
    const std::uint64_t middle = payload.u16be(10) >> 1U;
    const std::uint64_t lower = payload.u16be(12) >> 1U;
    constexpr double perSecond = 90000;
    return static_cast<double>(upper << 30U | middle << 15U | lower) / perSecond;
}

constexpr unsigned fourCameras = 0x0102; // the text's packets beside sound on other recorders

class Demultiplexer {
  public:
    Demultiplexer(Input& input, Collector& collector) : input_(input), collector_(collector) {}

    void packet(Bytes packet) {
        const bool hasPayload = (packet.u8(3) & 0x10U) != 0;
        if (packet.u8(0) != syncByte || !hasPayload) {
            return;
        }
        const unsigned pid = packet.u16be(1) & 0x1fffU;
        const bool adapted = (packet.u8(3) & 0x20U) != 0;
        const bool starts = (packet.u8(1) & 0x40U) != 0;
        if (!privateStream(pid) && pid != fourCameras && !starts) {
            return;
        }
        const Bytes payload = packet.from(adapted ? 5 + std::size_t{packet.u8(4)} : 4);
        if (starts) {
            keepTime(pictureTime(payload));
        }
        if (!privateStream(pid) && (pid != fourCameras || !carriesText(payload, starts))) {
            return;
        }
        Unit& unit = units_[pid];
        if (starts) {
            finish(unit);
            unit.time = time_;
        }
        if (unit.bytes.size() + payload.size() <= longestUnit) {
            unit.bytes.insert(unit.bytes.end(), payload.span().begin(), payload.span().end());
        }
    }

    void finishAll() {
        for (auto& [pid, unit] : units_) {
            finish(unit);
        }
        readHeld();
    }

  private:
    struct Unit {
        std::vector<std::uint8_t> bytes;
        double time = 0; // of the picture when it began, in seconds from the first
    };

    void keepTime(double time) {
        if (!known(time)) {
            return;
        }
        first_ = known(first_) ? first_ : time;
        if (time >= first_) {
            time_ = time - first_;
        }
    }

    static bool marked(Bytes bytes) {
        return bytes.text(0, 256).find("LIGOGPSINFO") != std::string_view::npos;
    }

    bool carriesText(Bytes payload, bool starts) {
        if (starts) {
            const std::span<const std::uint8_t> before(units_[fourCameras].bytes);
            inText_ = marked(payload) || marked(before) || !held_.bytes.empty();
        }
        return inText_;
    }

    void finish(Unit& unit) {
        const Bytes bytes = withoutStreamHeader(std::span<const std::uint8_t>(unit.bytes));
        collector_.comesAt(unit.time);
        if (marked(bytes)) {
            readHeld();
            held_ = {std::vector<std::uint8_t>(bytes.span().begin(), bytes.span().end()),
                     unit.time};
            if (holdsPlainLigo(bytes)) {
                readHeld();
            }
        } else if (!readBehindHeld(bytes) && !readRow(bytes, collector_) &&
                   !readRows(bytes, collector_)) {
            readInfoLines(bytes.text(0), collector_);
        }
        unit.bytes.clear();
    }

    // A text's marker and its record may stand in neighbouring packets, and what follows the marker
    // in its own look enciphered though the next packet has the plain text.
    bool readBehindHeld(Bytes bytes) {
        if (held_.bytes.empty()) {
            return false;
        }
        std::vector<std::uint8_t> joined = held_.bytes;
        joined.insert(joined.end(), bytes.span().begin(), bytes.span().end());
        const Bytes both{std::span<const std::uint8_t>(joined)};
        if (!holdsPlainLigo(both)) {
            readHeld();
            return false;
        }
        collector_.comesAt(held_.time);
        readPlainLigo(both, collector_);
        held_.bytes.clear();
        return true;
    }

    void readHeld() {
        if (!held_.bytes.empty()) {
            collector_.comesAt(held_.time);
            readLigoText(input_, std::span<const std::uint8_t>(held_.bytes), collector_);
            held_.bytes.clear();
        }
    }

    Input& input_;
    Collector& collector_;
    std::map<unsigned, Unit> units_;
    Unit held_;
    bool inText_ = false;
    double first_ = unknown;
    double time_ = 0;
};

} // namespace

bool isTransportStream(Input& input) {
    return framingOf(input).stride != 0;
}

bool readTransportStream(Recording& recording, Collector& collector) {
    Input& input = recording.input;
    const Framing framing = framingOf(input);
    if (framing.stride == 0) {
        return false;
    }
    constexpr std::size_t packetsAtOnce = 2048;
    std::vector<std::uint8_t> buffer(framing.stride * packetsAtOnce);
    Demultiplexer demultiplexer(input, collector);
    for (std::uint64_t at = 0; at < input.size() && !input.stopped(); at += buffer.size()) {
        input.progress(at);
        input.source().announce(at + buffer.size(), buffer.size());
        const std::size_t got = input.source().readAt(at, buffer);
        const Bytes bytes{std::span<const std::uint8_t>(buffer.data(), got)};
        for (std::size_t i = framing.first; bytes.has(i, packetSize); i += framing.stride) {
            demultiplexer.packet(bytes.from(i, packetSize));
        }
    }
    demultiplexer.finishAll();
    return !collector.empty();
}

} // namespace velmorant::telemetry

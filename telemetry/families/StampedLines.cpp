#include "telemetry/families/StampedLines.h"

#include <algorithm>

#include "telemetry/Nmea.h"
#include "telemetry/families/CardTable.h"

namespace velmorant::telemetry {

namespace {

constexpr std::size_t longestText = 4 << 20;
constexpr std::size_t longestRecords = 2 << 20;
constexpr std::size_t mostPerSecond = 1000; // accelerations between two sentences

// "[1718188245123]" at the line's beginning, or unknown.
double stampOf(std::string_view line) {
    const std::size_t end = line.find(']');
    return !line.empty() && line[0] == '[' && end != std::string_view::npos
               ? decimal(line.substr(1, end - 1)) / 1000
               : unknown;
}

template <class Visit>
void forEachLine(std::string_view text, Visit visit) {
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        visit(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

// Where the first stamp lies in the recording. The two clocks may differ by a time zone, which is a
// whole number of quarters of an hour.
double firstPlace(double firstStamp, double start) {
    constexpr double quarter = 900;
    if (!known(start)) {
        return 0;
    }
    const double place = std::remainder(firstStamp - start, quarter);
    return place >= 0 && place < 180 ? place : 0;
}

// "$GSENSORD,0.060,-0.120,1.010": g. Recorders that write whole numbers count in a unit that
// nothing tells.
std::optional<Acceleration> readGsensor(std::string_view sentence) {
    if (!sentence.starts_with("$GSENSORD,") || sentence.find('.') == std::string_view::npos) {
        return std::nullopt;
    }
    sentence = sentence.substr(0, sentence.find('*'));
    const Acceleration g{decimal(field(sentence, 1)), decimal(field(sentence, 2)),
                         decimal(field(sentence, 3))};
    return std::isfinite(g.x + g.y + g.z) ? std::optional(g) : std::nullopt;
}

void readLines(std::string_view text, double start, Collector& collector) {
    double first = unknown;
    double offset = 0;
    std::optional<Fix> held;
    double altitude = unknown;
    std::vector<Acceleration> accelerations; // since the sentence that is held
    const auto flush = [&] {
        if (held) {
            held->altitude = altitude;
            collector.add(*held);
            for (const Acceleration& acceleration : accelerations) {
                if (known(held->mediaTime)) {
                    collector.add(held->mediaTime, acceleration);
                } else {
                    collector.addToLast(acceleration);
                }
            }
        }
        accelerations.clear();
        held.reset();
        altitude = unknown;
    };
    forEachLine(text, [&](std::string_view line) {
        const double stamp = stampOf(line);
        const std::string_view sentence =
            line.substr(line.find('$') == std::string_view::npos ? 0 : line.find('$'));
        if (auto fix = readRmc(sentence)) {
            flush();
            if (known(stamp) && !known(first)) {
                first = stamp;
                offset = firstPlace(stamp, start);
            }
            fix->mediaTime = known(stamp) ? stamp - first + offset : unknown;
            held = fix;
        } else if (const auto gga = readGga(sentence)) {
            altitude = gga->altitude;
        } else if (const auto acceleration = readGsensor(sentence);
                   acceleration && accelerations.size() < mostPerSecond) {
            accelerations.push_back(*acceleration);
        }
    });
    flush();
}

void readAccelerations(Bytes records, Collector& collector) {
    constexpr double countsPerG = 128;
    for (std::size_t at = 0; records.has(at, 10); at += 10) {
        const std::uint32_t milliseconds = records.u32be(at);
        if (milliseconds == UINT32_MAX) {
            return;
        }
        collector.add(milliseconds / 1000.0,
                      {records.i16be(at + 4) / countsPerG, records.i16be(at + 6) / countsPerG,
                       records.i16be(at + 8) / countsPerG});
    }
}

struct Parts {
    std::optional<Box> lines, accelerations;
    double start = unknown;
};

std::optional<Parts> partsOf(Input& input, const Box& box) {
    Parts parts;
    BoxWalker walker(input, box.payload, box.end(), "free");
    while (const auto child = walker.next()) {
        if (child->type == code("gps ")) {
            parts.lines = child;
        } else if (child->type == code("3gf ")) {
            parts.accelerations = child;
        } else if (child->type == code("sttm") && child->payloadSize >= 8) {
            parts.start = static_cast<double>(input.peek(child->payload, 8).u64be(0)) / 1000;
        }
    }
    return parts.lines ? std::optional(parts) : std::nullopt;
}

std::vector<std::uint8_t> wholeOf(ByteSource& source, std::size_t limit) {
    std::vector<std::uint8_t> bytes(
        static_cast<std::size_t>(std::min<std::uint64_t>(source.size(), limit)));
    bytes.resize(source.readAt(0, bytes));
    return bytes;
}

} // namespace

bool readFreeBox(Recording& recording, Collector& collector) {
    Input& input = recording.input;
    for (const Box& box : recording.boxes) {
        if (box.type != code("free") || box.payloadSize < 16) {
            continue;
        }
        const auto parts = partsOf(input, box);
        if (!parts) {
            continue;
        }
        const auto text = input.read(parts->lines->payload, parts->lines->payloadSize, longestText);
        readLines(Bytes{std::span<const std::uint8_t>(text)}.text(0), parts->start, collector);
        if (parts->accelerations) {
            const auto records = input.read(parts->accelerations->payload,
                                            parts->accelerations->payloadSize, longestRecords);
            readAccelerations(std::span<const std::uint8_t>(records), collector);
        }
        return true;
    }
    return false;
}

bool readSidecars(Recording& recording, Collector& collector) {
    if (recording.siblings == nullptr) {
        return false;
    }
    for (const char* extension : {".gps", ".nmea"}) {
        if (const auto lines = recording.siblings->withExtension(extension)) {
            const auto text = wholeOf(*lines, longestText);
            readLines(Bytes{std::span<const std::uint8_t>(text)}.text(0), unknown, collector);
            break;
        }
    }
    if (const auto records = recording.siblings->withExtension(".3gf")) {
        readAccelerations(std::span<const std::uint8_t>(wholeOf(*records, longestRecords)),
                          collector);
    }
    return !collector.empty() || readCardTables(recording, collector);
}

} // namespace velmorant::telemetry

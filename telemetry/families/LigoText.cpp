#include "telemetry/families/LigoText.h"

#include <algorithm>

#include "telemetry/Geometry.h"
#include "telemetry/Nmea.h"
#include "telemetry/PictureTimes.h"
#include "telemetry/Scan.h"
#include "telemetry/UtcTime.h"
#include "telemetry/families/LigoCipher.h"

namespace velmorant::telemetry {

namespace {

constexpr std::string_view marker = "LIGOGPSINFO";
constexpr std::size_t longestText = 4 << 20;

// The number behind "key:" in a record, or unknown.
double valueOf(std::string_view record, std::string_view key) {
    const std::size_t at = record.find(key);
    if (at == std::string_view::npos) {
        return unknown;
    }
    const std::string_view rest = record.substr(at + key.size());
    return decimal(rest.substr(0, rest.find_first_of(std::string_view(" \0\r\n", 4))));
}

// One coordinate without its sign, and the sign.
struct Coordinate {
    double value = unknown;
    double sign = 1;
};

Coordinate coordinateOf(std::string_view record, std::string_view positive,
                        std::string_view negative) {
    Coordinate found;
    const bool opposite = record.find(positive) == std::string_view::npos;
    const double value = valueOf(record, opposite ? negative : positive);
    found.value = std::abs(value);
    found.sign = opposite || value < 0 ? -1 : 1;
    return found;
}

// How the records of a text are written.
struct RecordForm {
    bool enciphered = false;
    bool shifted = false;
};

// Sets the place and tells whether the record had it in degrees and minutes.
bool setPlace(std::string_view record, const RecordForm& form, Fix& fix) {
    const Coordinate north = coordinateOf(record, " N:", " S:");
    const Coordinate east = coordinateOf(record, " E:", " W:");
    LigoPlace place{north.value, east.value};
    constexpr double beyondDegrees = 100;
    const bool minutes = form.enciphered && north.value >= beyondDegrees;
    if (minutes) {
        place = {fromDegreesMinutes(place.latitude), fromDegreesMinutes(place.longitude)};
    }
    if (form.shifted) {
        place = unshifted(place);
    }
    fix.latitude = place.latitude * north.sign;
    fix.longitude = place.longitude * east.sign;
    if (!known(fix.latitude) || !known(fix.longitude)) {
        fix.state = FixState::noFix;
    }
    return minutes;
}

double speedUnit(const RecordForm& form, bool minutes) {
    constexpr double shiftedSpeed = 1.85407333;
    if (!form.enciphered || minutes) {
        return 1;
    }
    return form.shifted ? shiftedSpeed : kmhPerKnot;
}

// "YYYY/MM/DD hh:mm:ss" at the text's beginning.
std::optional<CivilTime> dateAt(std::string_view text) {
    if (text.size() < 19 || text[4] != '/' || text[7] != '/' || text[13] != ':' ||
        text[16] != ':') {
        return std::nullopt;
    }
    CivilTime time;
    time.year = digits(text, 0, 4);
    time.month = digits(text, 5, 2);
    time.day = digits(text, 8, 2);
    time.hour = digits(text, 11, 2);
    time.minute = digits(text, 14, 2);
    time.second = digits(text, 17, 2);
    return time.year < 0 || time.month < 0 || time.day < 0 ? std::nullopt : std::optional(time);
}

void readRecord(std::string_view record, const CivilTime& time, const RecordForm& form,
                Collector& collector) {
    Fix fix;
    const bool minutes = setPlace(record, form, fix);
    if (const std::size_t unit = record.find(" km/h"); unit != std::string_view::npos) {
        const std::size_t start = record.rfind(' ', unit - 1);
        fix.speed = decimal(record.substr(start + 1, unit - start - 1)) * speedUnit(form, minutes);
    }
    fix.heading = valueOf(record, " A:");
    fix.altitude = valueOf(record, " H:");
    judge(fix);
    if (const auto milliseconds = toMilliseconds(time)) {
        fix.time = *milliseconds;
        fix.base = TimeBase::camera;
    } else if (fix.state == FixState::good) {
        fix.state = FixState::badDate;
    }
    collector.add(fix);
    const Acceleration acceleration{valueOf(record, " x:"), valueOf(record, " y:"),
                                    valueOf(record, " z:")};
    if (known(acceleration.x) && known(acceleration.y) && known(acceleration.z)) {
        collector.addToLast(acceleration);
    }
}

void noteOnce(Input& input, const char* reason) {
    const auto same = [&](const Error& note) { return note.reason == reason; };
    if (std::none_of(input.notes().begin(), input.notes().end(), same)) {
        input.note(input.error(std::string(marker), 0, reason));
    }
}

// The records behind the marker; false where none of them is enciphered.
bool readEnciphered(Input& input, Bytes text, Collector& collector) {
    constexpr std::size_t kindAt = 0x0c;
    constexpr std::size_t firstRecord = 0x14;
    constexpr std::size_t recordLength = 0x84;
    constexpr std::size_t counterLength = 4;
    const std::uint32_t kind = text.u32be(kindAt);
    const RecordForm form{true, kind != 1 && kind != 20};
    bool enciphered = false;
    for (std::size_t at = firstRecord; text.has(at, counterLength); at += recordLength) {
        if (!text.holds(at, "####")) {
            continue; // empty records stand between others
        }
        enciphered = true;
        auto plain = decipherLigo(text.from(at, recordLength));
        const auto time = plain && plain->size() > counterLength
                              ? dateAt(std::string_view(*plain).substr(counterLength))
                              : std::nullopt;
        if (!time) {
            noteOnce(input, "records are enciphered by a rule that is not known");
            continue;
        }
        std::replace(plain->begin(), plain->end(), '\t', ' ');
        const std::string_view record = std::string_view(*plain).substr(counterLength);
        readRecord(record.substr(0, record.find('\0')), *time, form, collector);
        if (form.shifted) {
            noteOnce(input, "the recorder shifts its places on purpose; they were moved back by "
                            "the commonest of three scales and may be wrong");
        }
    }
    return enciphered;
}

bool readPart(Input& input, std::uint64_t offset, std::uint64_t length, Collector& collector) {
    const auto content =
        input.read(offset, std::min<std::uint64_t>(length, longestText), longestText);
    const Bytes bytes{std::span<const std::uint8_t>(content)};
    // The marker stands near the beginning of whatever carries the text.
    return bytes.text(0, 256).find(marker) != std::string_view::npos &&
           readLigoText(input, bytes, collector);
}

// "&&&&" and the length u32le, or "####" and the length u32be behind a text that "****" opens; that
// length may leave its own eight bytes out.
bool readTrailer(Recording& recording, Collector& collector) {
    Input& input = recording.input;
    constexpr std::uint64_t endLength = 8;
    if (input.size() < endLength) {
        return false;
    }
    const Bytes end = input.peek(input.size() - endLength, endLength);
    if (end.holds(0, "&&&&")) {
        const std::uint64_t length = end.u32le(4);
        return length <= input.size() && readPart(input, input.size() - length, length, collector);
    }
    const std::uint64_t length = end.holds(0, "####") ? end.u32be(4) : 0;
    for (const std::uint64_t whole : {length, length + endLength}) {
        if (length < endLength || whole > input.size()) {
            continue;
        }
        const auto content = input.read(input.size() - whole,
                                        std::min<std::uint64_t>(whole, longestText), longestText);
        const Bytes bytes{std::span<const std::uint8_t>(content)};
        if (bytes.holds(0, "****")) {
            return readLigoText(input, bytes.from(0, whole - endLength), collector);
        }
    }
    return false;
}

bool readBlocks(Recording& recording, Collector& collector) {
    bool found = false;
    for (const Box& box : recording.movie ? recording.movie->children : std::vector<Box>{}) {
        if (box.type != code("gps ") || box.payloadSize < 8) {
            continue;
        }
        collector.askContainer([&recording](std::span<const std::uint64_t> offsets) {
            return pictureTimes(recording, offsets);
        });
        const std::uint64_t claimed = recording.input.peek(box.payload, 8).u32be(4);
        const std::uint64_t count = std::min(claimed, (box.payloadSize - 8) / 8);
        for (std::uint64_t i = 0; i < count && !recording.input.stopped(); ++i) {
            const std::uint64_t offset = recording.input.peek(box.payload + 8 + 8 * i, 8).u32be(0);
            collector.comesFrom(offset);
            found = readPart(recording.input, offset, 0x200, collector) || found;
            if (!found) {
                return false; // the first block speaks for all
            }
        }
    }
    return found;
}

} // namespace

bool readLigoText(Input& input, Bytes bytes, Collector& collector) {
    const std::string_view text = bytes.text(0);
    const std::size_t head = text.find(marker);
    if (head != std::string_view::npos && readEnciphered(input, bytes.from(head), collector)) {
        return true;
    }
    return readPlainLigo(bytes, collector);
}

bool holdsPlainLigo(Bytes bytes) {
    const std::string_view text = bytes.text(0);
    for (std::size_t slash = text.find('/'); slash != std::string_view::npos;
         slash = text.find('/', slash + 1)) {
        if (slash >= 4 && dateAt(text.substr(slash - 4)) &&
            text.substr(slash, 128).find("km/h") != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

bool readPlainLigo(Bytes bytes, Collector& collector) {
    const std::string_view text = bytes.text(0);
    bool found = false;
    for (std::size_t slash = text.find('/'); slash != std::string_view::npos;
         slash = text.find('/', slash + 1)) {
        if (slash < 4) {
            continue;
        }
        const std::size_t at = slash - 4;
        if (const auto time = dateAt(text.substr(at))) {
            constexpr std::size_t textLength = 0x80;
            const std::string_view record = text.substr(at, textLength);
            readRecord(record.substr(0, record.find('\0')), *time, {}, collector);
            found = true;
            slash = at + 19;
        }
    }
    return found;
}

bool readLigo(Recording& recording, Collector& collector) {
    if (readBlocks(recording, collector) || readTrailer(recording, collector)) {
        return true;
    }
    std::vector<Box> boxes = recording.boxes;
    if (recording.movie) {
        boxes.insert(boxes.end(), recording.movie->userData.begin(),
                     recording.movie->userData.end());
        boxes.insert(boxes.end(), recording.movie->children.begin(),
                     recording.movie->children.end());
    }
    return std::any_of(boxes.begin(), boxes.end(), [&](const Box& box) {
        return box.type == code("skip") &&
               readPart(recording.input, box.payload, box.payloadSize, collector);
    });
}

} // namespace velmorant::telemetry

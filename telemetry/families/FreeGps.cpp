#include "telemetry/families/FreeGps.h"

#include <algorithm>
#include <array>

#include "telemetry/Geometry.h"
#include "telemetry/SampleTable.h"
#include "telemetry/UtcTime.h"

namespace velmorant::telemetry {

namespace {

constexpr std::size_t neededOfBlock = 0x200;

struct Reading {
    Fix fix;
    std::optional<Acceleration> acceleration;
};

struct Layout {
    bool (*matches)(Bytes block);
    void (*read)(Bytes block, Reading& reading);
};

bool oneOf(char c, std::string_view set) {
    return c != 0 && set.find(c) != std::string_view::npos;
}

// Hour, minute, second, year, month and day, u32 each.
void readClock(Bytes block, std::size_t at, Fix& fix) {
    CivilTime time;
    time.hour = block.i32le(at);
    time.minute = block.i32le(at + 4);
    time.second = block.i32le(at + 8);
    const std::int32_t year = block.i32le(at + 12);
    time.year = year >= 0 && year < 100 ? 2000 + year : year;
    time.month = block.i32le(at + 16);
    time.day = block.i32le(at + 20);
    if (const auto milliseconds = toMilliseconds(time)) {
        fix.time = *milliseconds;
        fix.base = TimeBase::utc;
    } else if (fix.state == FixState::good) {
        fix.state = FixState::badDate;
    }
}

// Status and hemisphere letters in a row, then behind one byte latitude, longitude, knots, heading.
void readPosition(Bytes block, std::size_t at, Fix& fix) {
    if (block.character(at) != 'A') {
        fix.state = FixState::noFix;
    }
    const double latitude = fromDegreesMinutes(static_cast<double>(block.f32le(at + 4)));
    const double longitude = fromDegreesMinutes(static_cast<double>(block.f32le(at + 8)));
    fix.latitude = block.character(at + 1) == 'S' ? -latitude : latitude;
    fix.longitude = block.character(at + 2) == 'W' ? -longitude : longitude;
    fix.speed = static_cast<double>(block.f32le(at + 12)) * kmhPerKnot;
    fix.heading = static_cast<double>(block.f32le(at + 16));
}

std::optional<Acceleration> readAcceleration(Bytes block, std::size_t at, double countsPerG) {
    bool zero = true;
    bool counting = true;
    for (std::size_t i = 0; i < 6; ++i) {
        const std::uint16_t word = block.u16le(at + 2 * i);
        zero = zero && word == 0;
        counting = counting && word == i + 1;
    }
    if (zero || counting) {
        return std::nullopt;
    }
    return Acceleration{block.i32le(at) / countsPerG, block.i32le(at + 4) / countsPerG,
                        block.i32le(at + 8) / countsPerG};
}

bool lettersAt(Bytes block, std::size_t at) {
    return oneOf(block.character(at), "AV") && oneOf(block.character(at + 1), "NS") &&
           oneOf(block.character(at + 2), "EW");
}

constexpr std::array layouts = {
    Layout{[](Bytes block) { return lettersAt(block, 0x28); },
           [](Bytes block, Reading& reading) {
               readPosition(block, 0x28, reading.fix);
               readClock(block, 0x10, reading.fix);
               reading.acceleration = readAcceleration(block, 0x3c, 256);
           }},
    Layout{[](Bytes block) { return lettersAt(block, 0x48); },
           [](Bytes block, Reading& reading) {
               readPosition(block, 0x48, reading.fix);
               readClock(block, 0x30, reading.fix);
           }},
};

// The blocks that an index names, read one after the other into one buffer.
class IndexedBlocks {
  public:
    IndexedBlocks(Input& input, const Box& index)
        : input_(input), entries_(input, index.payload + 8, 8, entryCount(input, index)) {}

    std::uint64_t count() const { return entries_.count(); }

    // The first bytes of the block; empty where the index names no block.
    Bytes block(std::uint64_t number) {
        const Bytes entry = entries_.entry(number);
        const std::uint64_t offset = entry.u32be(0);
        const std::size_t length =
            std::min<std::size_t>(neededOfBlock, std::max<std::uint32_t>(entry.u32be(4), 16));
        const std::size_t got = input_.source().readAt(offset, std::span(buffer_.data(), length));
        const Bytes bytes(std::span<const std::uint8_t>(buffer_.data(), got));
        if (!bytes.holds(4, "freeGPS ")) {
            noteOnce(offset, bytes.size() < 16 ? "the index names a block beyond the file's end"
                                               : "the index names a place that holds no block");
            return {};
        }
        return bytes;
    }

  private:
    static std::uint64_t entryCount(Input& input, const Box& index) {
        const std::uint64_t claimed = input.peek(index.payload, 8).u32be(4);
        const std::uint64_t room = index.payloadSize < 8 ? 0 : (index.payloadSize - 8) / 8;
        if (claimed > room) {
            input.note(input.error("moov/gps ", index.offset,
                                   "the index claims " + std::to_string(claimed) +
                                       " blocks, its box has room for " + std::to_string(room)));
        }
        return std::min(claimed, room);
    }
    void noteOnce(std::uint64_t offset, const char* reason) {
        if (!noted_) {
            noted_ = true;
            input_.note(input_.error("moov/gps ", offset, reason));
        }
    }

    Input& input_;
    TableWindow entries_;
    std::array<std::uint8_t, neededOfBlock> buffer_{};
    bool noted_ = false;
};

// Blocks without a fix may lack the letters that tell the layouts apart, so the first block that
// has them speaks for all.
const Layout* findLayout(Input& input, IndexedBlocks& blocks) {
    for (std::uint64_t i = 0; i < blocks.count() && !input.stopped(); ++i) {
        const Bytes block = blocks.block(i);
        for (const Layout& layout : layouts) {
            if (block.size() > 0 && layout.matches(block)) {
                return &layout;
            }
        }
    }
    return nullptr;
}

} // namespace

bool readFreeGps(Recording& recording, Collector& collector) {
    if (!recording.movie) {
        return false;
    }
    const auto& children = recording.movie->children;
    const auto index = std::find_if(children.begin(), children.end(),
                                    [](const Box& box) { return box.type == code("gps "); });
    if (index == children.end()) {
        return false;
    }
    IndexedBlocks blocks(recording.input, *index);
    const Layout* layout = findLayout(recording.input, blocks);
    if (layout == nullptr) {
        return false;
    }
    for (std::uint64_t i = 0; i < blocks.count() && !recording.input.stopped(); ++i) {
        const Bytes block = blocks.block(i);
        if (block.size() == 0) {
            continue;
        }
        Reading reading;
        layout->read(block, reading);
        collector.add(reading.fix);
        if (reading.acceleration) {
            collector.addToLast(*reading.acceleration);
        }
    }
    return true;
}

} // namespace velmorant::telemetry

#include "telemetry/families/FreeGps.h"

#include <algorithm>
#include <array>

#include "telemetry/PictureTimes.h"
#include "telemetry/SampleTable.h"
#include "telemetry/Scan.h"
#include "telemetry/families/FreeGpsLayouts.h"
#include "telemetry/families/VvPlaces.h"

namespace velmorant::telemetry {

namespace {

constexpr std::string_view marker = "freeGPS ";

// Takes blocks in file order. Blocks without a fix may lack the letters that tell the layouts
// apart, so they wait until the first block that has them speaks for all.
class BlockReader {
  public:
    BlockReader(Input& input, Collector& collector) : input_(input), collector_(collector) {}

    // False where the file holds no block at the offset.
    bool take(std::uint64_t offset) {
        collector_.comesFrom(offset);
        const Bytes block = read(offset);
        // The place comes from an index or a marker; of what stands there the beginning may be
        // damaged and a sentence behind it whole.
        if (!block.holds(4, marker) && !holdsSentence(block)) {
            return false;
        }
        if (layout_ == nullptr) {
            layout_ = matching(block, freeGpsLayouts());
            if (layout_ == nullptr) {
                if (waiting_.size() < Collector::mostSeconds) {
                    waiting_.push_back(offset);
                }
                return true;
            }
            readWaiting();
            collector_.comesFrom(offset);
            readBlock(read(offset), offset);
            return true;
        }
        readBlock(block, offset);
        return true;
    }

    bool finish() {
        if (layout_ == nullptr && !waiting_.empty()) {
            constexpr std::size_t enough = 16;
            for (std::size_t i = 0; i < std::min(enough, waiting_.size()); ++i) {
                layout_ = layout_ != nullptr
                              ? layout_
                              : matching(read(waiting_[i]), freeGpsLayoutsWithoutFix());
            }
            if (layout_ == nullptr) {
                input_.note(input_.error("freeGPS", waiting_.front(),
                                         "the blocks have a layout that is not known"));
                return false;
            }
            readWaiting();
        }
        addVvPlaces();
        return layout_ != nullptr;
    }

  private:
    static const FreeGpsLayout* matching(Bytes block, std::span<const FreeGpsLayout> layouts) {
        for (const FreeGpsLayout& layout : layouts) {
            if (layout.matches(block)) {
                return &layout;
            }
        }
        return nullptr;
    }
    Bytes read(std::uint64_t offset) {
        const std::size_t got = input_.source().readAt(offset, buffer_);
        return {std::span<const std::uint8_t>(buffer_.data(), got)};
    }
    void readWaiting() {
        for (const std::uint64_t offset : waiting_) {
            collector_.comesFrom(offset);
            readBlock(read(offset), offset);
        }
        waiting_.clear();
    }
    void readBlock(Bytes block, std::uint64_t offset) {
        if (!layout_->vvPlaces) {
            layout_->read(block, collector_);
        } else if (vvPlaces_.size() < Collector::mostSeconds) {
            vvPlaces_.push_back({offset, block.i32le(31), block.i32le(35)});
        }
    }
    void addVvPlaces() {
        if (vvPlaces_.empty()) {
            return;
        }
        const VvDecision decision = decideVvUnit(vvPlaces_);
        input_.note(input_.error("freeGPS", vvPlaces_.front().block, decision.reason));
        for (const VvPlace& place : vvPlaces_) {
            collector_.comesFrom(place.block);
            Fix fix;
            fix.latitude = vvDegrees(place.latitude, decision.unit);
            fix.longitude = vvDegrees(place.longitude, decision.unit);
            collector_.add(fix);
        }
        vvPlaces_.clear();
    }

    Input& input_;
    Collector& collector_;
    const FreeGpsLayout* layout_ = nullptr;
    std::vector<std::uint64_t> waiting_;
    std::vector<VvPlace> vvPlaces_;
    std::array<std::uint8_t, 0x200> buffer_{}; // all that any layout needs
};

// The entries of the index; more are claimed now and then than its box has room for.
TableWindow openIndex(Input& input, const Box& index) {
    const std::uint64_t claimed = input.peek(index.payload, 8).u32be(4);
    const std::uint64_t room = index.payloadSize < 8 ? 0 : (index.payloadSize - 8) / 8;
    if (claimed > room) {
        input.note(input.error("moov/gps ", index.offset,
                               "the index claims " + std::to_string(claimed) +
                                   " blocks, its box has room for " + std::to_string(room)));
    }
    return {input, index.payload + 8, 8, std::min(claimed, room)};
}

// Counts the blocks that the index names rightly. Announcing the blocks ahead lets the disk fetch
// them together.
std::uint64_t readIndexed(Input& input, const Box& index, BlockReader& reader) {
    TableWindow entries = openIndex(input, index);
    std::uint64_t good = 0;
    std::uint64_t last = 0;
    bool noted = false;
    for (std::uint64_t i = 0; i < entries.count() && !input.stopped(); ++i) {
        const std::uint64_t offset = entries.entry(i).u32be(0);
        if (offset > last && reader.take(offset)) {
            ++good;
            last = offset;
        } else if (!noted) {
            noted = true;
            input.note(input.error("moov/gps ", offset,
                                   "the index names a place without a block, or one block twice"));
        }
    }
    return good;
}

void scanForBlocks(Input& input, std::uint64_t begin, bool mayBeAbsent, BlockReader& reader) {
    // Where a recorder writes blocks, one comes within the first seconds; a recording without any
    // is not searched to its end.
    constexpr std::uint64_t firstWithin = 8 << 20;
    std::uint64_t end = input.size();
    bool any = false;
    const auto found = [&](std::uint64_t offset) -> std::optional<std::uint64_t> {
        if (offset >= 4 && reader.take(offset - 4)) {
            any = true;
        }
        return offset + marker.size();
    };
    if (mayBeAbsent) {
        const std::uint64_t probe = std::min(end, begin + firstWithin);
        std::uint64_t firstBlock = probe;
        scan(input, begin, probe, marker,
             [&](std::uint64_t offset) -> std::optional<std::uint64_t> {
                 firstBlock = offset;
                 any = true;
                 return std::nullopt;
             });
        if (!any) {
            return;
        }
        begin = firstBlock;
    }
    scan(input, begin, end, marker, found);
}

const Box* indexOf(const Recording& recording) {
    if (recording.movie) {
        for (const Box& box : recording.movie->children) {
            if (box.type == code("gps ")) {
                return &box;
            }
        }
    }
    return nullptr;
}

void askPicture(Recording& recording, Collector& collector) {
    collector.askContainer([&recording](std::span<const std::uint64_t> offsets) {
        return pictureTimes(recording, offsets);
    });
}

// Far fewer blocks than seconds: the index is not whole.
bool tooFew(std::uint64_t blocks, double seconds) {
    return static_cast<double>(blocks) + 3 < 0.9 * seconds;
}

} // namespace

bool readFreeGps(Recording& recording, Collector& collector) {
    const Box* index = indexOf(recording);
    if (index == nullptr) {
        return false;
    }
    askPicture(recording, collector);
    BlockReader reader(recording.input, collector);
    const std::uint64_t good = readIndexed(recording.input, *index, reader);
    if (reader.finish() && !tooFew(good, recording.movie->duration)) {
        return true;
    }
    Collector searched;
    if (searchFreeGps(recording, searched) && searched.readings() > collector.readings()) {
        collector = std::move(searched);
    }
    return !collector.empty();
}

bool searchFreeGps(Recording& recording, Collector& collector) {
    const auto media = std::find_if(recording.boxes.begin(), recording.boxes.end(),
                                    [](const Box& box) { return box.type == code("mdat"); });
    if (media == recording.boxes.end()) {
        return false;
    }
    askPicture(recording, collector);
    BlockReader reader(recording.input, collector);
    scanForBlocks(recording.input, media->payload, recording.movie.has_value(), reader);
    return reader.finish();
}

} // namespace velmorant::telemetry

#include "telemetry/SampleTable.h"

#include <cmath>

namespace velmorant::telemetry {

namespace {

// A table behind `fields` bytes of header; the claimed count must fit the box.
std::optional<Error> openTable(Input& input, const std::string& path, const std::optional<Box>& box,
                               const char* name, std::uint32_t entrySize, TableWindow& table) {
    const std::string where = path + "/mdia/minf/stbl/" + name;
    if (!box) {
        return input.error(where, 0, "the track has no such table");
    }
    constexpr std::uint64_t fields = 8;
    if (box->payloadSize < fields) {
        return input.error(where, box->offset, "the table is shorter than its own header");
    }
    const std::uint64_t claimed = input.peek(box->payload, fields).u32be(4);
    const std::uint64_t room = (box->payloadSize - fields) / entrySize;
    if (claimed > room) {
        return input.error(where, box->offset,
                           "the table claims " + std::to_string(claimed) +
                               " entries, its box has room for " + std::to_string(room));
    }
    table = TableWindow(input, box->payload + fields, entrySize, claimed);
    return std::nullopt;
}

} // namespace

Bytes TableWindow::entry(std::uint64_t index) {
    if (index >= count_) {
        return {};
    }
    if (index < first_ || index >= first_ + held_) {
        const std::uint64_t fit = window_.size() / entrySize_;
        first_ = index;
        const std::uint64_t wanted = std::min(fit, count_ - index);
        const std::size_t got = input_->source().readAt(
            start_ + index * entrySize_,
            std::span(window_.data(), static_cast<std::size_t>(wanted * entrySize_)));
        held_ = got / entrySize_;
        if (held_ == 0) {
            return {};
        }
    }
    const Bytes window(std::span<const std::uint8_t>(window_.data(), window_.size()));
    return window.from(static_cast<std::size_t>((index - first_) * entrySize_), entrySize_);
}

Result<SampleTable> SampleTable::open(Input& input, const MediaTrack& track) {
    SampleTable table(input, track);
    if (auto error = table.openSizes()) {
        return *error;
    }
    if (auto error = table.openTables()) {
        return *error;
    }
    return table;
}

std::optional<Error> SampleTable::openSizes() {
    const bool compact = !track_->sampleSizes && track_->compactSizes;
    const std::string where = track_->path + "/mdia/minf/stbl/" + (compact ? "stz2" : "stsz");
    const std::optional<Box>& box = compact ? track_->compactSizes : track_->sampleSizes;
    if (!box) {
        return input_->error(where, 0, "the track has no such table");
    }
    if (box->payloadSize < 12) {
        return input_->error(where, box->offset, "the table is shorter than its own header");
    }
    const Bytes header = input_->peek(box->payload, 12);
    sampleCount_ = header.u32be(8);
    if (compact) {
        sizeBits_ = header.u8(7);
        if (sizeBits_ != 4 && sizeBits_ != 8 && sizeBits_ != 16) {
            return input_->error(where, box->offset,
                                 "sizes of " + std::to_string(sizeBits_) + " bits do not exist");
        }
    } else {
        fixedSize_ = header.u32be(4);
    }
    // With a fixed size no table bounds the count: the file's own length does.
    const std::uint64_t room =
        fixedSize_ != 0 ? input_->size() / fixedSize_ : (box->payloadSize - 12) * 8 / sizeBits_;
    if (sampleCount_ > room) {
        return input_->error(where, box->offset,
                             "the table claims " + std::to_string(sampleCount_) +
                                 " samples, there is room for " + std::to_string(room));
    }
    const std::uint64_t bytes = (sampleCount_ * sizeBits_ + 7) / 8;
    const std::uint32_t width = sizeBits_ >= 8 ? sizeBits_ / 8 : 1;
    sizes_ = TableWindow(*input_, box->payload + 12, width, bytes / width);
    return std::nullopt;
}

std::optional<Error> SampleTable::openTables() {
    wideOffsets_ = !track_->chunkOffsets && track_->chunkOffsets64;
    if (auto error = openTable(*input_, track_->path,
                               wideOffsets_ ? track_->chunkOffsets64 : track_->chunkOffsets,
                               wideOffsets_ ? "co64" : "stco", wideOffsets_ ? 8 : 4, chunks_)) {
        return error;
    }
    if (auto error =
            openTable(*input_, track_->path, track_->sampleToChunk, "stsc", 12, chunkRuns_)) {
        return error;
    }
    return openTable(*input_, track_->path, track_->timeToSample, "stts", 8, timeRuns_);
}

std::uint32_t SampleTable::sizeOf(std::uint64_t index) {
    if (fixedSize_ != 0) {
        return fixedSize_;
    }
    switch (sizeBits_) {
    case 4: {
        const std::uint8_t pair = sizes_.entry(index / 2).u8(0);
        return index % 2 == 0 ? pair >> 4 : pair & 15;
    }
    case 8:
        return sizes_.entry(index).u8(0);
    case 16:
        return sizes_.entry(index).u16be(0);
    default:
        return sizes_.entry(index).u32be(0);
    }
}

bool SampleTable::enterChunk() {
    while (leftInChunk_ == 0 && !input_->stopped()) {
        const Bytes offset = chunks_.entry(chunk_);
        if (offset.size() == 0) {
            return false;
        }
        ++chunk_;
        nextOffset_ = wideOffsets_ ? offset.u64be(0) : offset.u32be(0);
        // The run with the greatest first chunk not behind this one rules.
        while (chunkRun_ + 1 < chunkRuns_.count() &&
               chunkRuns_.entry(chunkRun_ + 1).u32be(0) <= chunk_) {
            ++chunkRun_;
        }
        leftInChunk_ = chunkRuns_.entry(chunkRun_).u32be(4);
    }
    return leftInChunk_ > 0;
}

void SampleTable::advanceTime(SampleLocation& sample) {
    while (leftInTimeRun_ == 0 && timeRun_ < timeRuns_.count()) {
        const Bytes run = timeRuns_.entry(timeRun_++);
        leftInTimeRun_ = run.u32be(0);
        delta_ = run.u32be(4);
    }
    if (leftInTimeRun_ > 0) {
        --leftInTimeRun_;
    } else {
        timesMissing_ = true;
    }
    const double scale = track_->timescale == 0 ? 1 : track_->timescale;
    sample.time = static_cast<double>(time_) / scale;
    sample.duration = static_cast<double>(delta_) / scale;
    time_ += delta_;
}

bool SampleTable::next(SampleLocation& sample) {
    while (sample_ < sampleCount_ && !input_->stopped() && enterChunk()) {
        sample.size = sizeOf(sample_);
        sample.offset = nextOffset_;
        advanceTime(sample);
        nextOffset_ += sample.size;
        --leftInChunk_;
        ++sample_;
        if (sample.offset <= input_->size() && sample.size <= input_->size() - sample.offset) {
            return true;
        }
        if (!notedMissing_) {
            notedMissing_ = true;
            input_->note(input_->error(track_->path, sample.offset,
                                       "sample " + std::to_string(sample_) + " of " +
                                           std::to_string(sampleCount_) +
                                           " lies beyond the file's end"));
        }
    }
    noteContradictions();
    return false;
}

// Tables that were read to their ends and do not fit together: what was read may be misplaced.
void SampleTable::noteContradictions() {
    if (notedContradictions_ || input_->stopped()) {
        return;
    }
    notedContradictions_ = true;
    const auto note = [&](const char* reason) {
        input_->note(input_->error(track_->path + "/mdia/minf/stbl", 0, reason));
    };
    if (sampleCount_ == 0) {
        note("the track has no samples");
    } else if (sample_ < sampleCount_) {
        note("the chunks hold fewer samples than there are sizes");
    } else if (leftInChunk_ > 0 || chunk_ < chunks_.count()) {
        note("the chunks hold more samples than there are sizes");
    }
    const double length = static_cast<double>(track_->duration);
    const double scale = track_->timescale == 0 ? 1 : track_->timescale;
    const double most = 2.0 * scale;
    if (track_->movieLength > 0 &&
        std::abs(length / scale - track_->movieLength) > 5 + 0.1 * track_->movieLength) {
        note("the track is not as long as the recording");
    }
    if (timesMissing_ || leftInTimeRun_ > 0 || timeRun_ < timeRuns_.count() ||
        std::abs(static_cast<double>(time_) - length) > most) {
        note("the times of the samples do not add up to the track's length");
    }
}

} // namespace velmorant::telemetry

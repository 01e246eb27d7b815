// A track's samples in file order, one after the other, from the tables of its "stbl" box. The
// tables are read through small windows, so their length costs no memory.
//
//   stts = version/flags:u32 count:u32 (samples:u32 delta:u32)*
//   stsc = version/flags:u32 count:u32 (firstChunk:u32 samplesPerChunk:u32 description:u32)*
//   stsz = version/flags:u32 size:u32 count:u32 [size:u32* when size == 0]
//   stz2 = version/flags:u32 reserved:u24 fieldSize:u8 count:u32 (fieldSize bits)*
//   stco = version/flags:u32 count:u32 (offset:u32)*          co64 the same with offset:u64
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "telemetry/Movie.h"

namespace velmorant::telemetry {

struct SampleLocation {
    std::uint64_t offset = 0; // in the file
    std::uint32_t size = 0;
    double time = 0;     // seconds from the recording's start
    double duration = 0; // seconds
};

// Entries of one fixed width behind a box's header fields.
class TableWindow {
  public:
    TableWindow() = default;
    TableWindow(Input& input, std::uint64_t start, std::uint32_t entrySize, std::uint64_t count)
        : input_(&input), start_(start), entrySize_(entrySize), count_(count) {}

    std::uint64_t count() const { return count_; }
    // The entry's bytes; empty where the file cannot be read.
    Bytes entry(std::uint64_t index);

  private:
    Input* input_ = nullptr;
    std::uint64_t start_ = 0;
    std::uint32_t entrySize_ = 1;
    std::uint64_t count_ = 0;
    std::array<std::uint8_t, 2048> window_{};
    std::uint64_t first_ = 0;
    std::uint64_t held_ = 0;
};

class SampleTable {
  public:
    // Refuses tables that claim more entries than their box, or more samples than the file, can
    // hold.
    static Result<SampleTable> open(Input& input, const MediaTrack& track);

    std::uint64_t count() const { return sampleCount_; }
    // False at the end. Samples that lie beyond the file's end are passed over; the first of them
    // is noted with the input.
    bool next(SampleLocation& sample);

  private:
    SampleTable(Input& input, const MediaTrack& track) : input_(&input), track_(&track) {}
    std::optional<Error> openSizes();
    std::optional<Error> openTables();
    std::uint32_t sizeOf(std::uint64_t index);
    bool enterChunk();
    void advanceTime(SampleLocation& sample);
    void noteContradictions();

    Input* input_;
    const MediaTrack* track_;
    TableWindow sizes_, chunks_, chunkRuns_, timeRuns_;
    std::uint32_t fixedSize_ = 0;
    std::uint32_t sizeBits_ = 32;
    bool wideOffsets_ = false;
    std::uint64_t sampleCount_ = 0;

    bool notedMissing_ = false;
    bool notedContradictions_ = false;
    bool timesMissing_ = false;
    std::uint64_t sample_ = 0;
    std::uint64_t chunk_ = 0; // number of chunks entered
    std::uint64_t leftInChunk_ = 0;
    std::uint64_t chunkRun_ = 0;
    std::uint64_t nextOffset_ = 0;
    std::uint64_t timeRun_ = 0;
    std::uint32_t leftInTimeRun_ = 0;
    std::uint32_t delta_ = 0;
    std::uint64_t time_ = 0;
};

} // namespace velmorant::telemetry

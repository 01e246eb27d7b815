// The "moov" box: what a reader of telemetry needs of it. Sample tables stay in the file; only
// where they lie is kept, so the picture's own tables cost nothing.
//
//   moov = mvhd trak* [udta] [other boxes, such as "gps "]
//   mvhd = version:u8 flags:u24 creation modification timescale:u32 duration   (u32, version 1:
//   u64) trak = tkhd mdia(mdhd hdlr minf(stbl(stsd stts stsc stsz|stz2 stco|co64)))
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "telemetry/Box.h"

namespace velmorant::telemetry {

struct MediaTrack {
    std::string path; // "moov/trak[3]"
    FourCharacterCode handler = 0;
    FourCharacterCode format = 0; // of the first sample entry
    std::uint32_t timescale = 0;  // units per second; 0 when the track does not say
    std::uint64_t duration = 0;   // in units of the timescale
    double movieLength = 0;       // seconds of the whole recording; 0 when unknown
    std::optional<Box> timeToSample, sampleToChunk, sampleSizes, compactSizes, chunkOffsets,
        chunkOffsets64;
};

struct Movie {
    Box box;
    std::uint64_t creation = 0; // seconds since 1904-01-01, 0 when unknown
    double duration = 0;        // seconds, of the picture where there is one; 0 when unknown
    double longest = 0;         // seconds that the samples and the file's size allow
    std::vector<MediaTrack> tracks;
    std::vector<Box> children; // of moov, without trak and mvhd
    std::vector<Box> userData; // children of moov/udta
};

// Reads the structure; what is wrong inside one track is noted with the input and costs that track
// alone. An error where no track could be read.
Result<Movie> readMovie(Input& input, const Box& moov);

} // namespace velmorant::telemetry

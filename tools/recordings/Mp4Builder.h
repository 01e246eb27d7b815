// Makes small MP4 files in memory, in every shape that the boxes allow.
#pragma once

#include <string_view>
#include <vector>

#include "tools/recordings/ByteWriter.h"

namespace velmorant::recordings {

// size and type in front of the content.
ByteVector box(std::string_view type, const ByteVector& content);

struct TrackSample {
    ByteVector bytes;
    std::uint32_t duration = 1000; // in units of the track's timescale
};

struct TrackPlan {
    std::string_view handler = "vide";
    std::string_view format = "avc1";
    std::uint32_t timescale = 1000;
    std::vector<TrackSample> samples;
    int samplesPerChunk = 1;
};

// One placed piece of media data that no track knows of.
struct LooseBlock {
    ByteVector bytes;
    std::size_t beforeSecond = 0; // written in front of the samples of this second
};

struct Mp4Plan {
    std::int64_t creation = 1718188245; // seconds since 1970
    double seconds = 60;                // length of the picture
    std::vector<TrackPlan> tracks;      // besides the picture, which is made here
    std::vector<LooseBlock> blocks;
    std::vector<ByteVector> topBoxes; // whole boxes between "ftyp" and the rest
    std::vector<ByteVector> userData; // whole boxes inside moov/udta
    ByteVector trailer;               // behind the last box
    std::uint32_t blockAlignment = 0x1000;
    std::size_t pictureBytes = 64; // of each second of picture

    enum class Order { mediaFirst, movieFirst } order = Order::mediaFirst;
    enum class Offsets { narrow, wide } offsets = Offsets::narrow; // stco or co64
    enum class Sizes { full, compact } sizes = Sizes::full;        // stsz or stz2
    enum class MediaSize { narrow, wide, toTheEnd } mediaSize = MediaSize::narrow;
    enum class Index { none, whole, firstHalf } index = Index::none; // of the loose blocks
    enum class Movie { present, missing } movie = Movie::present;
};

ByteVector buildMp4(const Mp4Plan& plan);

} // namespace velmorant::recordings

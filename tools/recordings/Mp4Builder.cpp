#include "tools/recordings/Mp4Builder.h"

#include <algorithm>
#include <cmath>

namespace velmorant::recordings {

namespace {

constexpr std::int64_t from1904 = 2082844800;

std::uint64_t secondsSince1904(const Mp4Plan& plan) {
    return static_cast<std::uint64_t>(plan.creation + from1904);
}

struct PlacedTrack {
    const TrackPlan* plan = nullptr;
    std::vector<std::uint64_t> chunks;
};

struct Media {
    ByteWriter bytes;
    std::vector<PlacedTrack> tracks;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> blocks; // offset and size
};

TrackPlan pictureTrack(const Mp4Plan& plan) {
    TrackPlan picture;
    double left = plan.seconds;
    for (int i = 0; left > 0; ++i, left -= 1) {
        TrackSample sample;
        sample.bytes.assign(plan.pictureBytes, static_cast<std::uint8_t>(i));
        sample.duration = static_cast<std::uint32_t>(std::lround(std::min(left, 1.0) * 1000));
        picture.samples.push_back(std::move(sample));
    }
    return picture;
}

double startOf(const TrackPlan& track, std::size_t sample) {
    double time = 0;
    for (std::size_t i = 0; i < sample; ++i) {
        time += track.samples[i].duration;
    }
    return time / track.timescale;
}

// Samples of one track that lie together, or a loose block.
struct Chunk {
    double time = 0;
    std::size_t track = 0; // the number of tracks for a loose block
    std::size_t first = 0;
    std::size_t count = 0;
};

std::vector<Chunk> chunksByTime(const Mp4Plan& plan, const std::vector<TrackPlan>& tracks) {
    std::vector<Chunk> chunks;
    for (std::size_t t = 0; t < tracks.size(); ++t) {
        const auto per = static_cast<std::size_t>(tracks[t].samplesPerChunk);
        for (std::size_t s = 0; s < tracks[t].samples.size(); s += per) {
            chunks.push_back(
                {startOf(tracks[t], s), t, s, std::min(per, tracks[t].samples.size() - s)});
        }
    }
    for (std::size_t b = 0; b < plan.blocks.size(); ++b) {
        chunks.push_back(
            {static_cast<double>(plan.blocks[b].beforeSecond) - 0.001, tracks.size(), b, 1});
    }
    std::stable_sort(chunks.begin(), chunks.end(),
                     [](const Chunk& a, const Chunk& b) { return a.time < b.time; });
    return chunks;
}

// Interleaves all by time; `base` is the file offset of the first byte.
Media placeMedia(const Mp4Plan& plan, const std::vector<TrackPlan>& tracks, std::uint64_t base) {
    Media media;
    media.tracks.resize(tracks.size());
    for (std::size_t t = 0; t < tracks.size(); ++t) {
        media.tracks[t].plan = &tracks[t];
    }
    for (const Chunk& chunk : chunksByTime(plan, tracks)) {
        if (chunk.track == tracks.size()) {
            const std::uint64_t at = base + media.bytes.size();
            const std::uint64_t rest = plan.blockAlignment - at % plan.blockAlignment;
            media.bytes.zeros(rest % plan.blockAlignment);
            media.blocks.emplace_back(base + media.bytes.size(),
                                      plan.blocks[chunk.first].bytes.size());
            media.bytes.append(plan.blocks[chunk.first].bytes);
            continue;
        }
        media.tracks[chunk.track].chunks.push_back(base + media.bytes.size());
        for (std::size_t s = 0; s < chunk.count; ++s) {
            media.bytes.append(tracks[chunk.track].samples[chunk.first + s].bytes);
        }
    }
    return media;
}

ByteVector timeTable(const TrackPlan& track) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> runs;
    for (const TrackSample& sample : track.samples) {
        if (runs.empty() || runs.back().second != sample.duration) {
            runs.emplace_back(0, sample.duration);
        }
        ++runs.back().first;
    }
    ByteWriter out;
    out.u32be(0).u32be(runs.size());
    for (const auto& [count, duration] : runs) {
        out.u32be(count).u32be(duration);
    }
    return box("stts", out.take());
}

ByteVector chunkRuns(const TrackPlan& track) {
    const auto per = static_cast<std::size_t>(track.samplesPerChunk);
    const std::size_t whole = track.samples.size() / per;
    const std::size_t rest = track.samples.size() % per;
    ByteWriter out;
    out.u32be(0).u32be((whole > 0 ? 1 : 0) + (rest > 0 ? 1 : 0));
    if (whole > 0) {
        out.u32be(1).u32be(per).u32be(1);
    }
    if (rest > 0) {
        out.u32be(whole + 1).u32be(rest).u32be(1);
    }
    return box("stsc", out.take());
}

ByteVector sizeTable(const TrackPlan& track, Mp4Plan::Sizes sizes) {
    ByteWriter out;
    if (sizes == Mp4Plan::Sizes::full) {
        out.u32be(0).u32be(0).u32be(track.samples.size());
        for (const TrackSample& sample : track.samples) {
            out.u32be(sample.bytes.size());
        }
        return box("stsz", out.take());
    }
    out.u32be(0).u32be(16).u32be(track.samples.size());
    for (const TrackSample& sample : track.samples) {
        out.u16be(sample.bytes.size());
    }
    return box("stz2", out.take());
}

ByteVector chunkTable(const PlacedTrack& track, Mp4Plan::Offsets offsets) {
    ByteWriter out;
    out.u32be(0).u32be(track.chunks.size());
    for (const std::uint64_t chunk : track.chunks) {
        offsets == Mp4Plan::Offsets::wide ? out.u64be(chunk) : out.u32be(chunk);
    }
    return box(offsets == Mp4Plan::Offsets::wide ? "co64" : "stco", out.take());
}

std::uint64_t milliseconds(const Mp4Plan& plan) {
    return static_cast<std::uint64_t>(std::llround(plan.seconds * 1000));
}

ByteVector join(std::initializer_list<ByteVector> parts) {
    ByteWriter out;
    for (const ByteVector& part : parts) {
        out.append(part);
    }
    return out.take();
}

ByteVector trackBox(const Mp4Plan& plan, const PlacedTrack& placed, std::size_t number) {
    const TrackPlan& track = *placed.plan;
    const auto duration =
        static_cast<std::uint64_t>(startOf(track, track.samples.size()) * track.timescale + 0.5);
    ByteWriter header;
    header.u32be(7).u32be(0).u32be(0).u32be(number).u32be(0).u32be(milliseconds(plan)).zeros(60);
    ByteWriter media;
    media.u32be(0).u32be(secondsSince1904(plan)).u32be(secondsSince1904(plan));
    media.u32be(track.timescale).u32be(duration).u16be(0x55c4).u16be(0);
    ByteWriter handler;
    handler.u32be(0).u32be(0).text(track.handler).zeros(12).text("made").u8(0);
    ByteWriter entry;
    entry.u32be(0).u32be(1).u32be(track.handler == "vide" ? 86 : 16).text(track.format);
    entry.zeros(6).u16be(1).zeros(track.handler == "vide" ? 70 : 0);
    const ByteVector table =
        box("stbl", join({box("stsd", entry.take()), timeTable(track), chunkRuns(track),
                          sizeTable(track, plan.sizes), chunkTable(placed, plan.offsets)}));
    return box("trak",
               join({box("tkhd", header.take()),
                     box("mdia", join({box("mdhd", media.take()), box("hdlr", handler.take()),
                                       box("minf", table)}))}));
}

ByteVector indexBox(const Mp4Plan& plan, const Media& media) {
    const std::size_t count =
        plan.index == Mp4Plan::Index::firstHalf ? media.blocks.size() / 2 : media.blocks.size();
    ByteWriter out;
    out.u32be(0x101).u32be(count);
    for (std::size_t i = 0; i < count; ++i) {
        out.u32be(media.blocks[i].first).u32be(media.blocks[i].second);
    }
    return box("gps ", out.take());
}

ByteVector movieBox(const Mp4Plan& plan, const Media& media) {
    ByteWriter header;
    header.u32be(0).u32be(secondsSince1904(plan)).u32be(secondsSince1904(plan)).u32be(1000);
    header.u32be(milliseconds(plan)).zeros(80);
    ByteWriter out;
    out.append(box("mvhd", header.take()));
    for (std::size_t t = 0; t < media.tracks.size(); ++t) {
        out.append(trackBox(plan, media.tracks[t], t + 1));
    }
    if (plan.index != Mp4Plan::Index::none) {
        out.append(indexBox(plan, media));
    }
    if (!plan.userData.empty()) {
        ByteWriter user;
        for (const ByteVector& data : plan.userData) {
            user.append(data);
        }
        out.append(box("udta", user.take()));
    }
    return box("moov", out.take());
}

ByteVector mediaHeader(const Mp4Plan& plan, std::uint64_t size) {
    ByteWriter out;
    switch (plan.mediaSize) {
    case Mp4Plan::MediaSize::narrow:
        return out.u32be(size + 8).text("mdat").take();
    case Mp4Plan::MediaSize::wide:
        return out.u32be(1).text("mdat").u64be(size + 16).take();
    case Mp4Plan::MediaSize::toTheEnd:
        return out.u32be(0).text("mdat").take();
    }
    return {};
}

} // namespace

ByteVector box(std::string_view type, const ByteVector& content) {
    ByteWriter out;
    out.u32be(content.size() + 8).text(type).append(content);
    return out.take();
}

ByteVector buildMp4(const Mp4Plan& plan) {
    std::vector<TrackPlan> tracks = {pictureTrack(plan)};
    tracks.insert(tracks.end(), plan.tracks.begin(), plan.tracks.end());
    ByteWriter out;
    out.append(box("ftyp", ByteWriter().text("isom").u32be(0x200).text("isomavc1").take()));
    for (const ByteVector& extra : plan.topBoxes) {
        out.append(extra);
    }
    const bool movieFirst =
        plan.order == Mp4Plan::Order::movieFirst || plan.mediaSize == Mp4Plan::MediaSize::toTheEnd;
    const bool withMovie = plan.movie == Mp4Plan::Movie::present;
    const std::size_t headerSize = mediaHeader(plan, 0).size();
    // The movie's length does not depend on the offsets in it, so a first pass measures it.
    std::uint64_t base = out.size() + headerSize;
    if (movieFirst && withMovie) {
        base += movieBox(plan, placeMedia(plan, tracks, 0)).size();
    }
    const Media media = placeMedia(plan, tracks, base);
    const ByteVector movie = withMovie ? movieBox(plan, media) : ByteVector{};
    if (movieFirst) {
        out.append(movie);
    }
    out.append(mediaHeader(plan, media.bytes.size())).append(media.bytes.bytes());
    if (!movieFirst) {
        out.append(movie);
    }
    return out.append(plan.trailer).take();
}

} // namespace velmorant::recordings

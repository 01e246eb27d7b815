#include "benchmarks/extractor/LargeRecording.h"

#include <fcntl.h>
#include <functional>
#include <unistd.h>
#include <vector>

#include "tools/recordings/FamilyMakers.h"
#include "tools/recordings/FreeGpsBlocks.h"

namespace velmorant::recordings {

namespace {

constexpr std::uint64_t seconds = 3600;
constexpr std::uint64_t distance = 290 * 1024; // between two blocks: a gigabyte in all
constexpr std::uint64_t firstBlock = 0x10000;

ByteVector join(const std::vector<ByteVector>& parts) {
    ByteWriter out;
    for (const ByteVector& part : parts) {
        out.append(part);
    }
    return out.take();
}

ByteVector track(std::string_view handler, std::string_view format, std::uint64_t samples,
                 std::uint32_t timescale, const std::function<std::uint64_t(std::uint64_t)>& size,
                 const std::function<std::uint64_t(std::uint64_t)>& offset) {
    ByteWriter media, kind, entry, times, runs, sizes, chunks;
    media.u32be(0).u32be(0).u32be(0).u32be(timescale).u32be(seconds * timescale).u32be(0);
    kind.u32be(0).u32be(0).text(handler).zeros(13);
    entry.u32be(0).u32be(1).u32be(16).text(format).zeros(8);
    times.u32be(0).u32be(1).u32be(samples).u32be(seconds * timescale / samples);
    runs.u32be(0).u32be(1).u32be(1).u32be(1).u32be(1);
    sizes.u32be(0).u32be(0).u32be(samples);
    chunks.u32be(0).u32be(samples);
    for (std::uint64_t i = 0; i < samples; ++i) {
        sizes.u32be(size(i));
        chunks.u32be(offset(i));
    }
    const ByteVector table = box("stbl", join({box("stsd", entry.take()), box("stts", times.take()),
                                               box("stsc", runs.take()), box("stsz", sizes.take()),
                                               box("stco", chunks.take())}));
    return box("trak", box("mdia", join({box("mdhd", media.take()), box("hdlr", kind.take()),
                                         box("minf", table)})));
}

void put(int file, std::uint64_t offset, const ByteVector& bytes) {
    if (::pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(offset)) !=
        static_cast<ssize_t>(bytes.size())) {
        std::abort();
    }
}

const FamilyMaker& gpmfMaker() {
    for (const FamilyMaker& maker : familyMakers()) {
        if (maker.name == "gpmf_gps5") {
            return maker;
        }
    }
    std::abort();
}

// The payload of one second, cut out of a recording of that second alone.
ByteVector gpmfPayload(const DriveSecond& second) {
    const ByteVector recording = gpmfMaker().make({second});
    const std::string_view text(reinterpret_cast<const char*>(recording.data()), recording.size());
    const std::size_t start = text.find("DEVC");
    const std::size_t length = 8 + (std::size_t{recording[start + 6]} << 8 | recording[start + 7]);
    return {recording.begin() + static_cast<std::ptrdiff_t>(start),
            recording.begin() + static_cast<std::ptrdiff_t>(start + length)};
}

} // namespace

void writeLargeRecording(LargeKind kind, const std::string& path) {
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0644);
    const auto drive = Driver({}, 65, 3).drive(1718188245, static_cast<int>(seconds));
    std::vector<std::uint64_t> ranges = {0, 64};
    std::vector<std::uint64_t> sizes;
    const auto place = [](std::uint64_t i) { return firstBlock + i * distance; };
    for (std::uint64_t i = 0; i < seconds; ++i) {
        const ByteVector block = kind == LargeKind::freeGps
                                     ? freeGpsBlock(drive[i], FreeGpsLayout::withAcceleration)
                                     : gpmfPayload(drive[i]);
        put(file, place(i), block);
        sizes.push_back(block.size());
        ranges.push_back(place(i));
        ranges.push_back(kind == LargeKind::freeGps ? 0x200 : block.size());
    }
    const std::uint64_t mediaEnd = place(seconds);
    ByteWriter head;
    head.append(box("ftyp", ByteWriter().text("isom").u32be(0).take()));
    head.u32be(mediaEnd - head.size()).text("mdat");
    put(file, 0, head.take());
    ByteWriter header;
    header.u32be(0).u32be(3801032981).u32be(3801032981).u32be(1000).u32be(seconds * 1000).zeros(80);
    std::vector<ByteVector> movie = {
        box("mvhd", header.take()),
        track(
            "vide", "avc1", seconds * 30, 90000, [](std::uint64_t) { return 9000; },
            [](std::uint64_t i) { return firstBlock + 0x8000 + i * 9000; })};
    if (kind == LargeKind::gpmf) {
        movie.push_back(track(
            "meta", "gpmd", seconds, 1000, [&](std::uint64_t i) { return sizes[i]; }, place));
    } else {
        ByteWriter index;
        index.u32be(0x101).u32be(seconds);
        for (std::uint64_t i = 0; i < seconds; ++i) {
            index.u32be(place(i)).u32be(0x4000);
        }
        movie.push_back(box("gps ", index.take()));
    }
    const ByteVector moov = box("moov", join(movie));
    put(file, mediaEnd, moov);
    // The movie's own head, and the tables of the telemetry at its end.
    constexpr std::uint64_t tables = seconds * 8 + 0x400;
    ranges.insert(ranges.end(), {mediaEnd, 0x400, mediaEnd + moov.size() - tables, tables});
    ::fsync(file);
    ::close(file);
    const int list = ::open((path + ".ranges").c_str(), O_RDWR | O_CREAT | O_TRUNC, 0644);
    const ByteVector bytes(reinterpret_cast<const std::uint8_t*>(ranges.data()),
                           reinterpret_cast<const std::uint8_t*>(ranges.data() + ranges.size()));
    put(list, 0, bytes);
    ::close(list);
}

} // namespace velmorant::recordings

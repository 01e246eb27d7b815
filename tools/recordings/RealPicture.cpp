#include "tools/recordings/RealPicture.h"

#include <algorithm>
#include <string_view>

#include "telemetry/Bytes.h"
#include "tools/recordings/Mp4Builder.h"

namespace velmorant::recordings {

namespace {

using telemetry::Bytes;

// A box, header included; empty for one that is not there.
struct Span {
    std::size_t begin = 0, end = 0;

    bool empty() const { return end == begin; }
    std::size_t content() const { return begin + 8; }
};

// The first box of that type between two offsets.
Span find(const ByteVector& file, std::size_t begin, std::size_t end, std::string_view type) {
    const Bytes bytes(file);
    for (std::size_t at = begin; at + 8 <= end;) {
        const std::size_t size = bytes.u32be(at);
        if (size < 8 || size > end - at) {
            break;
        }
        if (bytes.text(at + 4, 4) == type) {
            return {at, at + size};
        }
        at += size;
    }
    return {};
}

Span findInside(const ByteVector& file, Span parent, std::string_view type) {
    return parent.empty() ? Span{} : find(file, parent.content(), parent.end, type);
}

ByteVector part(const ByteVector& file, std::size_t begin, std::size_t end) {
    return {file.begin() + static_cast<std::ptrdiff_t>(begin),
            file.begin() + static_cast<std::ptrdiff_t>(end)};
}

void put32(ByteVector& bytes, std::size_t at, std::uint64_t value) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
    }
}

struct Movie {
    Span media, movie, header, track;

    bool whole() const {
        return !media.empty() && media.end <= movie.begin && !header.empty() && !track.empty();
    }
};

Movie movieOf(const ByteVector& file) {
    Movie found;
    found.media = find(file, 0, file.size(), "mdat");
    found.movie = find(file, 0, file.size(), "moov");
    found.header = findInside(file, found.movie, "mvhd");
    found.track = findInside(file, found.movie, "trak");
    return found;
}

// The picture's track, its media data moved to `place`; empty where it has no 32-bit offsets.
ByteVector movedTrack(const ByteVector& picture, const Movie& parts, std::size_t place) {
    Span table = parts.track;
    for (const std::string_view type : {"mdia", "minf", "stbl", "stco"}) {
        table = findInside(picture, table, type);
    }
    if (table.empty()) {
        return {};
    }
    ByteVector moved = part(picture, parts.track.begin, parts.track.end);
    const std::size_t count = Bytes(picture).u32be(table.content() + 4);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = table.content() + 8 + 4 * i;
        put32(moved, at - parts.track.begin,
              Bytes(picture).u32be(at) + place - parts.media.content());
    }
    return moved;
}

} // namespace

std::optional<ByteVector> withPicture(const ByteVector& recording, const ByteVector& picture) {
    const Movie made = movieOf(recording);
    const Movie real = movieOf(picture);
    if (!made.whole() || !real.whole()) {
        return std::nullopt;
    }
    const ByteVector track = movedTrack(picture, real, made.movie.begin + 8);
    if (track.empty()) {
        return std::nullopt;
    }
    // The picture's header has the matrix that players ask for, the recording's the times:
    // creation, modification, timescale and duration.
    ByteVector header = part(picture, real.header.begin, real.header.end);
    std::copy_n(recording.begin() + static_cast<std::ptrdiff_t>(made.header.content()) + 4, 16,
                header.begin() + 12);
    ByteWriter movie;
    movie.append(header).append(track);
    movie.append(part(recording, made.track.end, made.movie.end));
    ByteWriter out;
    out.append(part(recording, 0, made.movie.begin));
    out.append(part(picture, real.media.begin, real.media.end));
    out.append(box("moov", movie.take()));
    return out.append(part(recording, made.movie.end, recording.size())).take();
}

} // namespace velmorant::recordings

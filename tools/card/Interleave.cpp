#include "tools/card/Interleave.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string_view>

#include "telemetry/Bytes.h"
#include "tools/recordings/Mp4Builder.h"

namespace velmorant::recordings {

namespace {

using telemetry::Bytes;

struct Span {
    std::size_t begin = 0; // of the header
    std::size_t end = 0;
    std::size_t content() const { return begin + 8; }
};

using Visit = std::function<void(std::string_view type, Span span)>;

void walk(Bytes file, std::size_t begin, std::size_t end, const Visit& visit) {
    for (std::size_t at = begin; at + 8 <= end;) {
        const std::size_t size = file.u32be(at);
        if (size < 8 || size > end - at) {
            return;
        }
        const std::string_view type = file.text(at + 4, 4);
        visit(type, {at, at + size});
        if (type == "moov" || type == "trak" || type == "mdia" || type == "minf" ||
            type == "stbl") {
            walk(file, at + 8, at + size, visit);
        }
        at += size;
    }
}

void put32(ByteVector& bytes, std::size_t at, std::uint64_t value) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
    }
}

struct Shape {
    Span media, movie;
    std::vector<std::size_t> offsetFields; // where in the file a chunk offset stands
};

Shape shapeOf(const ByteVector& mp4) {
    Shape shape;
    const Bytes file(mp4);
    walk(file, 0, mp4.size(), [&](std::string_view type, Span span) {
        if (type == "mdat") {
            shape.media = span;
        } else if (type == "moov") {
            shape.movie = span;
        } else if (type == "stco") {
            const std::size_t count = file.u32be(span.content() + 4);
            for (std::size_t i = 0; i < count; ++i) {
                shape.offsetFields.push_back(span.content() + 8 + 4 * i);
            }
        }
    });
    return shape;
}

} // namespace

std::optional<ByteVector> interleave(const ByteVector& mp4, const std::vector<ByteVector>& blocks) {
    const Shape shape = shapeOf(mp4);
    const Bytes file(mp4);
    if (shape.media.end == 0 || shape.movie.begin < shape.media.end || shape.offsetFields.empty()) {
        return std::nullopt;
    }
    std::vector<std::uint64_t> chunks;
    for (const std::size_t field : shape.offsetFields) {
        chunks.push_back(file.u32be(field));
    }
    std::sort(chunks.begin(), chunks.end());
    ByteWriter out;
    ByteWriter index;
    index.u32be(0x101).u32be(blocks.size());
    std::map<std::uint64_t, std::uint64_t> moved; // old chunk offset to new
    out.append(ByteVector(mp4.begin(), mp4.begin() + static_cast<std::ptrdiff_t>(chunks[0])));
    std::size_t written = 0;
    for (std::size_t c = 0; c < chunks.size(); ++c) {
        while (written < blocks.size() && written * chunks.size() <= c * blocks.size()) {
            out.padTo((out.size() + 0xfff) / 0x1000 * 0x1000);
            index.u32be(out.size()).u32be(blocks[written].size());
            out.append(blocks[written++]);
        }
        const std::uint64_t end = c + 1 < chunks.size() ? chunks[c + 1] : shape.media.end;
        moved[chunks[c]] = out.size();
        out.append(ByteVector(mp4.begin() + static_cast<std::ptrdiff_t>(chunks[c]),
                              mp4.begin() + static_cast<std::ptrdiff_t>(end)));
    }
    const std::size_t mediaEnd = out.size();
    ByteVector movie(mp4.begin() + static_cast<std::ptrdiff_t>(shape.movie.begin),
                     mp4.begin() + static_cast<std::ptrdiff_t>(shape.movie.end));
    for (const std::size_t field : shape.offsetFields) {
        put32(movie, field - shape.movie.begin, moved[file.u32be(field)]);
    }
    const ByteVector indexBox = blocks.empty() ? ByteVector{} : box("gps ", index.take());
    put32(movie, 0, movie.size() + indexBox.size());
    out.append(movie).append(indexBox);
    ByteVector result = out.take();
    put32(result, shape.media.begin, mediaEnd - shape.media.begin);
    return result;
}

ByteVector cutOff(const ByteVector& mp4, double share) {
    const Shape shape = shapeOf(mp4);
    const auto length = static_cast<double>(shape.media.end - shape.media.begin) * share;
    return {mp4.begin(), mp4.begin() + static_cast<std::ptrdiff_t>(shape.media.begin) +
                             static_cast<std::ptrdiff_t>(length)};
}

void setCreation(ByteVector& mp4, std::int64_t creation) {
    constexpr std::int64_t from1904 = 2082844800;
    std::vector<std::size_t> fields;
    walk(Bytes(mp4), 0, mp4.size(), [&](std::string_view type, Span span) {
        if (type == "mvhd" || type == "tkhd" || type == "mdhd") {
            fields.push_back(span.content() + 4);
        }
    });
    for (const std::size_t field : fields) {
        put32(mp4, field, static_cast<std::uint64_t>(creation + from1904));
        put32(mp4, field + 4, static_cast<std::uint64_t>(creation + from1904));
    }
}

} // namespace velmorant::recordings

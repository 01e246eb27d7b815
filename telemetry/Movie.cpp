#include "telemetry/Movie.h"

#include <algorithm>
#include <cmath>

namespace velmorant::telemetry {

namespace {

constexpr std::size_t mostChildren = 1024; // a list beyond this is no recorder's work

struct MediaHeader {
    std::uint64_t creation = 0;
    std::uint32_t timescale = 0;
    std::uint64_t duration = 0;
};

MediaHeader readMediaHeader(Input& input, const Box& box) {
    const Bytes bytes = input.peek(
        box.payload, static_cast<std::size_t>(std::min<std::uint64_t>(box.payloadSize, 36)));
    const bool wide = bytes.u8(0) == 1;
    MediaHeader header;
    header.creation = wide ? bytes.u64be(4) : bytes.u32be(4);
    header.timescale = bytes.u32be(wide ? 20 : 12);
    header.duration = wide ? bytes.u64be(24) : bytes.u32be(16);
    const std::uint64_t unknown = wide ? UINT64_MAX : UINT32_MAX;
    if (header.duration == unknown) {
        header.duration = 0;
    }
    return header;
}

// Four letters; the copyright sign opens the types of annotations.
bool isText(FourCharacterCode type) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto byte = static_cast<unsigned char>(type >> shift);
        if ((byte < 0x20 || byte > 0x7e) && byte != 0xa9) {
            return false;
        }
    }
    return true;
}

// Calls `visit` for each child and notes a child that lies about its size.
template <class Visit>
void forEachChild(Input& input, const Box& parent, const std::string& path, Visit visit) {
    BoxWalker walker(input, parent.payload, parent.end(), path);
    for (std::size_t count = 0; count < mostChildren; ++count) {
        const auto child = walker.next();
        if (!child) {
            break;
        }
        if (child->cut) {
            input.note(input.error(path + "/" + codeText(child->type), child->offset,
                                   "the box claims more bytes than the box around it has left"));
        }
        if (!isText(child->type)) {
            input.note(input.error(path + "/" + codeText(child->type), child->offset,
                                   "the box's type is no text: it is damaged"));
        }
        visit(*child);
    }
    if (walker.error()) {
        input.note(*walker.error());
    }
}

void readSampleTableBoxes(Input& input, const Box& stbl, MediaTrack& track) {
    const std::string path = track.path + "/mdia/minf/stbl";
    forEachChild(input, stbl, path, [&](const Box& box) {
        switch (box.type) {
        case code("stsd"):
            // version and flags, entry count, then the first entry's size and format
            track.format = input.peek(box.payload, 16).u32be(12);
            break;
        case code("stts"):
            track.timeToSample = box;
            break;
        case code("stsc"):
            track.sampleToChunk = box;
            break;
        case code("stsz"):
            track.sampleSizes = box;
            break;
        case code("stz2"):
            track.compactSizes = box;
            break;
        case code("stco"):
            track.chunkOffsets = box;
            break;
        case code("co64"):
            track.chunkOffsets64 = box;
            break;
        default:
            break;
        }
    });
}

void readMedia(Input& input, const Box& mdia, MediaTrack& track) {
    forEachChild(input, mdia, track.path + "/mdia", [&](const Box& box) {
        if (box.type == code("mdhd")) {
            const MediaHeader header = readMediaHeader(input, box);
            track.timescale = header.timescale;
            track.duration = header.duration;
        } else if (box.type == code("hdlr")) {
            track.handler = input.peek(box.payload, 12).u32be(8);
        } else if (box.type == code("minf")) {
            forEachChild(input, box, track.path + "/mdia/minf", [&](const Box& inner) {
                if (inner.type == code("stbl")) {
                    readSampleTableBoxes(input, inner, track);
                }
            });
        }
    });
}

double seconds(std::uint64_t units, std::uint32_t timescale) {
    return timescale == 0 ? 0 : static_cast<double>(units) / timescale;
}

// How many samples the track's own table can hold; nothing where it has none.
std::optional<std::uint64_t> sampleCount(Input& input, const MediaTrack& track) {
    const auto& box = track.sampleSizes ? track.sampleSizes : track.compactSizes;
    if (!box) {
        return std::nullopt;
    }
    // version and flags, the size of all samples (or none, or the width of an entry), their number
    const Bytes head = input.peek(box->payload, 12);
    const std::uint64_t claimed = head.u32be(8);
    const std::uint32_t size = head.u32be(4);
    std::uint64_t most = input.size();
    if (track.sampleSizes && size > 0) {
        most = input.size() / size;
    } else if (track.sampleSizes) {
        most = box->payloadSize / 4;
    } else {
        most = box->payloadSize * 2; // entries of half a byte
    }
    return std::min(claimed, most);
}

// The longest that the recording can be, in seconds, by what it holds. A header is a few bytes, and
// one wrong bit among them makes a clip of a minute last for hours.
double longestPossible(Input& input, const Movie& movie) {
    constexpr double bytesPerSecond = 16;   // no picture is smaller
    constexpr double secondsPerSample = 10; // no recorder takes pictures more slowly
    double longest = static_cast<double>(input.size()) / bytesPerSecond;
    std::optional<std::uint64_t> samples;
    for (const MediaTrack& track : movie.tracks) {
        if (const auto count = sampleCount(input, track)) {
            samples = std::max(samples.value_or(0), *count);
        }
    }
    if (samples) {
        longest = std::min(longest, static_cast<double>(*samples) * secondsPerSample);
    }
    return longest;
}

// The picture's length is the recording's; a header of the whole often disagrees by the length of
// its longest side track. What cannot be is passed over.
double lengthOf(Input& input, const Movie& movie, double headerLength) {
    const auto possible = [&](double length) { return length > 0 && length <= movie.longest; };
    double longest = possible(headerLength) ? headerLength : 0;
    double refused = headerLength - longest;
    for (const MediaTrack& track : movie.tracks) {
        const double length = seconds(track.duration, track.timescale);
        if (!possible(length)) {
            refused = std::max(refused, length);
        } else if (track.handler == code("vide")) {
            longest = length;
            break;
        } else {
            longest = std::max(longest, length);
        }
    }
    if (refused > 0) {
        input.note(input.error("moov", movie.box.offset,
                               "a header claims " + std::to_string(std::llround(refused)) +
                                   " s, more than the samples and the file's size allow"));
    }
    return longest;
}

} // namespace

Result<Movie> readMovie(Input& input, const Box& moov) {
    Movie movie;
    movie.box = moov;
    double headerLength = 0;
    forEachChild(input, moov, "moov", [&](const Box& box) {
        if (box.type == code("mvhd")) {
            const MediaHeader header = readMediaHeader(input, box);
            movie.creation = header.creation;
            headerLength = seconds(header.duration, header.timescale);
        } else if (box.type == code("trak")) {
            MediaTrack track;
            track.path = "moov/trak[" + std::to_string(movie.tracks.size() + 1) + "]";
            forEachChild(input, box, track.path, [&](const Box& inner) {
                if (inner.type == code("mdia")) {
                    readMedia(input, inner, track);
                }
            });
            if (!isText(track.handler) || !isText(track.format)) {
                input.note(
                    input.error(track.path, box.offset, "the track does not tell what it holds"));
            }
            movie.tracks.push_back(std::move(track));
        } else {
            movie.children.push_back(box);
            if (box.type == code("udta")) {
                forEachChild(input, box, "moov/udta",
                             [&](const Box& inner) { movie.userData.push_back(inner); });
            }
        }
    });
    if (movie.tracks.empty()) {
        return input.error("moov", moov.offset, "the movie header holds no track");
    }
    movie.longest = longestPossible(input, movie);
    movie.duration = lengthOf(input, movie, headerLength);
    for (MediaTrack& track : movie.tracks) {
        track.movieLength = movie.duration;
    }
    return movie;
}

} // namespace velmorant::telemetry

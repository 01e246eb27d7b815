#include "telemetry/families/LigoCipher.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmorant::telemetry {

namespace {

constexpr std::size_t longestRecord = 0x84;
constexpr unsigned flipped = 0x20;

// What follows a steering byte: for each byte the bits that the steering byte keeps for it, and in
// front of which byte a blank stands.
struct Group {
    std::size_t bytes;
    std::array<unsigned, 4> kept;
    std::size_t blankBefore;
};

constexpr std::size_t noBlank = 5;

constexpr Group fourBytes = {4, {0x01, 0x02, 0x0c, 0x30}, noBlank};
constexpr std::array threeBytes = {
    Group{3, {0x01, 0x06, 0x18}, 0},
    Group{3, {0x03, 0x04, 0x18}, 1},
    Group{3, {0x03, 0x0c, 0x10}, 2},
    Group{3, {0x01, 0x06, 0x18}, 3},
};

void append(std::string& out, unsigned byte) {
    out.push_back(static_cast<char>(byte & 0xffU));
}

void appendGroup(std::string& out, const Group& group, unsigned steering, Bytes enciphered) {
    for (std::size_t i = 0; i < group.bytes; ++i) {
        if (group.blankBefore == i) {
            append(out, ' ');
        }
        const unsigned byte = enciphered.u8(i);
        const unsigned kept = steering & group.kept[i];
        // The last of four keeps its bits as they are in the plain text.
        append(out, i == 3 ? (byte ^ flipped) | kept : (byte | kept) ^ flipped);
    }
    if (group.blankBefore == group.bytes) {
        append(out, ' ');
    }
}

double tensOf(double degrees) {
    return std::trunc(degrees / 10) * 10;
}

} // namespace

std::optional<std::string> decipherLigo(Bytes record) {
    const std::size_t length = std::min<std::size_t>(record.u32le(4), longestRecord);
    if (!record.holds(0, "####") || length < 4) {
        return std::nullopt;
    }
    const Bytes enciphered = record.from(8, length);
    std::string plain;
    for (std::size_t at = 0; at < enciphered.size();) {
        const unsigned steering = enciphered.u8(at++);
        const unsigned kind = steering >> 5;
        if (kind == 0 && enciphered.has(at, 1)) {
            constexpr unsigned keptOfOne = 0x13;
            append(plain, enciphered.u8(at) | (steering & keptOfOne));
            at += 1;
        } else if (kind < 2) {
            return std::nullopt;
        } else {
            const Group& group = kind >= 6 ? fourBytes : threeBytes[kind - 2];
            if (!enciphered.has(at, group.bytes)) {
                return std::nullopt;
            }
            appendGroup(plain, group, steering, enciphered.from(at, group.bytes));
            at += group.bytes;
        }
    }
    return plain;
}

LigoPlace unshifted(const LigoPlace& shifted) {
    constexpr double scale = 1.524855137;
    const double latitude = tensOf(shifted.latitude);
    const double longitude = tensOf(shifted.longitude);
    return {latitude + (shifted.longitude - longitude) * scale,
            longitude + (shifted.latitude - latitude) * scale};
}

} // namespace velmorant::telemetry

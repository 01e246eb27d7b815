#include "tools/recordings/LigoCipherText.h"

#include <cmath>

namespace velmorant::recordings {

namespace {

char byteOf(unsigned value) {
    return static_cast<char>(value);
}

// Four characters without a blank among them.
std::string fourWithout(const std::string& four) {
    unsigned steering = 0xc0;
    std::string bytes;
    const unsigned kept[] = {0x01, 0x02, 0x0c};
    for (std::size_t i = 0; i < 3; ++i) {
        const unsigned flipped = static_cast<unsigned char>(four[i]) ^ 0x20U;
        steering |= flipped & kept[i];
        bytes += byteOf(flipped & ~kept[i]);
    }
    const auto last = static_cast<unsigned char>(four[3]);
    steering |= last & 0x30U;
    bytes += byteOf((last & ~0x30U) ^ 0x20U);
    return byteOf(steering) + bytes;
}

// Four characters, the one at `blank` a blank.
std::string fourWith(const std::string& four, std::size_t blank) {
    const unsigned kept[4][3] = {
        {0x01, 0x06, 0x18}, {0x03, 0x04, 0x18}, {0x03, 0x0c, 0x10}, {0x01, 0x06, 0x18}};
    auto steering = static_cast<unsigned>(0x40 + 0x20 * blank);
    std::string bytes;
    std::size_t taken = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        if (i != blank) {
            const unsigned flipped = static_cast<unsigned char>(four[i]) ^ 0x20U;
            steering |= flipped & kept[blank][taken];
            bytes += byteOf(flipped & ~kept[blank][taken++]);
        }
    }
    return byteOf(steering) + bytes;
}

} // namespace

std::string encipheredLigo(const std::string& plain) {
    std::string out;
    std::size_t at = 0;
    for (; at + 4 <= plain.size(); at += 4) {
        const std::string four = plain.substr(at, 4);
        const std::size_t blank = four.find(' ');
        out += blank == std::string::npos ? fourWithout(four) : fourWith(four, blank);
    }
    for (; at < plain.size(); ++at) {
        const auto letter = static_cast<unsigned char>(plain[at]);
        out += byteOf(letter & 0x13U);
        out += byteOf(letter & ~0x13U);
    }
    return out;
}

Place shiftedLigo(const Place& place) {
    constexpr double scale = 1.524855137;
    const double latitude = std::abs(place.latitude);
    const double longitude = std::abs(place.longitude);
    const double latitudeTens = std::floor(latitude / 10) * 10;
    const double longitudeTens = std::floor(longitude / 10) * 10;
    return {latitudeTens + (longitude - longitudeTens) / scale,
            longitudeTens + (latitude - latitudeTens) / scale};
}

} // namespace velmorant::recordings

#include "telemetry/families/CipheredStrings.h"

#include <array>
#include <cstdint>
#include <numeric>
#include <string>

#include "telemetry/Nmea.h"

namespace velmorant::telemetry {

namespace {

int valueOf(char c) {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::size_t at = alphabet.find(c);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

std::string decodeBase64(std::string_view text) {
    std::string out;
    unsigned held = 0;
    int bits = 0;
    for (const char c : text) {
        const int value = valueOf(c);
        if (value < 0) {
            break;
        }
        held = (held << 6 | static_cast<unsigned>(value)) & 0xffffU;
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            out.push_back(static_cast<char>(held >> bits & 0xffU));
        }
    }
    return out;
}

// RC4 enciphers and deciphers alike.
void applyRc4(std::string_view key, std::string& text) {
    std::array<std::uint8_t, 256> state{};
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    std::size_t j = 0;
    for (std::size_t i = 0; i < 256; ++i) {
        j = (j + state[i] + static_cast<unsigned char>(key[i % key.size()])) % 256;
        std::swap(state[i], state[j]);
    }
    std::size_t i = 0;
    j = 0;
    for (char& c : text) {
        i = (i + 1) % 256;
        j = (j + state[i]) % 256;
        std::swap(state[i], state[j]);
        const std::size_t sum = (state[i] + state[j]) % 256U;
        c = static_cast<char>(static_cast<unsigned char>(c) ^ state[sum]);
    }
}

// A wrong key makes no number, so that the right one betrays itself.
double decipheredNumber(std::string_view key, std::string text) {
    applyRc4(key, text);
    text.resize(text.find('\0') == std::string::npos ? text.size() : text.find('\0'));
    return decimal(text);
}

std::optional<CipheredPlace> decipherWith(std::string_view key, const std::string& latitude,
                                          const std::string& longitude) {
    const CipheredPlace place{decipheredNumber(key, latitude), decipheredNumber(key, longitude)};
    return known(place.latitude) && known(place.longitude) ? std::optional(place) : std::nullopt;
}

} // namespace

bool isBase64(std::string_view text) {
    std::size_t letters = 0;
    while (letters < text.size() && valueOf(text[letters]) >= 0) {
        ++letters;
    }
    const std::size_t end = text.find_last_not_of(std::string_view("=\0", 2));
    return letters >= 8 && end != std::string_view::npos && end + 1 == letters;
}

std::optional<CipheredPlace> decipherPlace(std::string_view latitude, std::string_view longitude) {
    const std::string first = decodeBase64(latitude);
    const std::string second = decodeBase64(longitude);
    if (const auto place = decipherWith("luckychip gps", first, second)) {
        return place;
    }
    std::string key = "customer XX gps";
    for (char letter = 'a'; letter <= 't'; ++letter) {
        key[9] = key[10] = letter;
        if (const auto place = decipherWith(key, first, second)) {
            return place;
        }
    }
    return std::nullopt;
}

} // namespace velmorant::telemetry

#include "tools/recordings/Rc4Text.h"

#include <utility>

namespace velmorant::recordings {

namespace {

std::string rc4(const std::string& key, const std::string& plain) {
    unsigned char box[256];
    for (int i = 0; i < 256; ++i) {
        box[i] = static_cast<unsigned char>(i);
    }
    for (int i = 0, j = 0; i < 256; ++i) {
        j = (j + box[i] +
             static_cast<unsigned char>(key[static_cast<std::size_t>(i) % key.size()])) &
            255;
        std::swap(box[i], box[j]);
    }
    std::string cipher;
    int i = 0;
    int j = 0;
    for (const char c : plain) {
        i = (i + 1) & 255;
        j = (j + box[i]) & 255;
        std::swap(box[i], box[j]);
        cipher += static_cast<char>(static_cast<unsigned char>(c) ^ box[(box[i] + box[j]) & 255]);
    }
    return cipher;
}

} // namespace

std::string enciphered64(const std::string& key, const std::string& plain) {
    const std::string bytes = rc4(key, plain);
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    unsigned held = 0;
    int bits = 0;
    for (const char c : bytes) {
        held = held << 8 | static_cast<unsigned char>(c);
        bits += 8;
        while (bits >= 6) {
            bits -= 6;
            text += alphabet[held >> bits & 63U];
        }
    }
    if (bits > 0) {
        text += alphabet[held << (6 - bits) & 63U];
    }
    while (text.size() % 4 != 0) {
        text += '=';
    }
    return text;
}

} // namespace velmorant::recordings

#include "telemetry/XmlText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace velmorant::telemetry {

namespace {

// Length in bytes of the character that starts the text, 0 where the bytes are none that XML may
// hold: overlong forms, surrogates, control characters, U+FFFE and U+FFFF.
std::size_t xmlCharacterLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    if (first < 0x80) {
        return first >= 0x20 || first == '\t' || first == '\n' || first == '\r' ? 1 : 0;
    }
    const std::size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || text.size() < length) {
        return 0;
    }
    std::uint32_t value = first & (0xffU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0U) != 0x80) {
            return 0;
        }
        value = value << 6 | (byte(i) & 0x3fU);
    }
    constexpr std::array<std::uint32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = value >= 0xd800 && value <= 0xdfff;
    const bool allowed = value >= least[length] && value <= 0x10ffff && !surrogate &&
                         value != 0xfffe && value != 0xffff;
    return allowed ? length : 0;
}

} // namespace

bool isXmlText(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = xmlCharacterLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

void appendXmlText(std::string& out, std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = xmlCharacterLength(text);
        switch (length == 1 ? text[0] : '\0') {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\'':
            out += "&apos;";
            break;
        case '\t':
            out += "&#9;";
            break;
        case '\n':
            out += "&#10;";
            break;
        case '\r':
            out += "&#13;";
            break;
        default:
            out += length == 0 ? std::string_view("\xef\xbf\xbd") : text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
}

std::string percentEncoded(std::string_view bytes) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string out;
    while (!bytes.empty()) {
        const std::size_t length = xmlCharacterLength(bytes);
        if (length == 0 || bytes[0] == '%') {
            const auto value = static_cast<unsigned char>(bytes[0]);
            out += '%';
            out += digits[value >> 4];
            out += digits[value & 15];
            bytes.remove_prefix(1);
        } else {
            out += bytes.substr(0, length);
            bytes.remove_prefix(length);
        }
    }
    return out;
}

void appendInteger(std::string& out, std::int64_t value) {
    if (value >= 0 && value < 100) {
        if (value >= 10) {
            out += static_cast<char>('0' + value / 10);
        }
        out += static_cast<char>('0' + value % 10);
        return;
    }
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    out.append(digits.data(), end);
}

void appendFixed(std::string& out, double value, int decimals) {
    constexpr double widest = 1e9; // beyond it the scaled number would leave 64 bits
    if (!(std::abs(value) < widest)) {
        value = 0;
    }
    std::int64_t power = 1;
    for (int i = 0; i < decimals; ++i) {
        power *= 10;
    }
    const std::int64_t scaled = std::llround(value * static_cast<double>(power));
    const std::int64_t magnitude = scaled < 0 ? -scaled : scaled;
    if (scaled < 0) {
        out += '-';
    }
    appendInteger(out, magnitude / power);
    if (decimals > 0) {
        std::array<char, 12> digits{};
        std::int64_t rest = magnitude % power;
        for (int i = decimals; i-- > 0;) {
            digits[static_cast<std::size_t>(i)] = static_cast<char>('0' + rest % 10);
            rest /= 10;
        }
        out += '.';
        out.append(digits.data(), static_cast<std::size_t>(decimals));
    }
}

} // namespace velmorant::telemetry

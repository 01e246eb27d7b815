#include "common/textRules.h"

#include "common/StepError.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace velmorant {

namespace {

char asciiLower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

char asciiUpper(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool parseDouble(std::string_view text, double& value) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && (text.front() == '-' || text.front() == '+'))
            return false;
    }
    // from_chars also takes "inf" and "nan", which do not count as numbers here.
    if (text.empty() || text.find_first_of("iInN") != std::string_view::npos)
        return false;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc{} && result.ptr == text.data() + text.size();
}

template <typename Integer>
Integer rounded(double value) {
    const double nearest = std::nearbyint(value);
    if (!(nearest >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
          nearest <= static_cast<double>(std::numeric_limits<Integer>::max())))
        throw StepError("Overflow");
    return static_cast<Integer>(nearest);
}

/// The byte offset after the first `count` characters; the text's size when it has fewer.
std::size_t offsetOfCharacter(std::string_view text, std::size_t count) {
    std::size_t offset = 0;
    while (count > 0 && offset < text.size()) {
        const auto lead = static_cast<unsigned char>(text[offset]);
        std::size_t length = 1;
        if (lead >= 0xf0)
            length = 4;
        else if (lead >= 0xe0)
            length = 3;
        else if (lead >= 0xc0)
            length = 2;
        std::size_t valid = 1;
        while (valid < length && offset + valid < text.size() &&
               (static_cast<unsigned char>(text[offset + valid]) & 0xc0) == 0x80)
            ++valid;
        offset += valid == length ? length : 1;
        --count;
    }
    return offset;
}

} // namespace

std::int16_t toInt16(double value) {
    return rounded<std::int16_t>(value);
}

std::int32_t toInt32(double value) {
    return rounded<std::int32_t>(value);
}

double toDouble(std::string_view text) {
    double value = 0.0;
    if (!parseDouble(text, value))
        throw StepError("Type mismatch: \"" + leftCharacters(text, 40) + "\" is not a number");
    return value;
}

std::int16_t toInt16(std::string_view text) {
    return toInt16(toDouble(text));
}

std::int32_t toInt32(std::string_view text) {
    return toInt32(toDouble(text));
}

bool isNumber(std::string_view text) {
    double value = 0.0;
    return parseDouble(text, value);
}

std::string numberText(double value) {
    std::array<char, 400> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed);
    std::string text(buffer.data(), result.ptr);
    return text == "-0" ? "0" : text;
}

std::string zeroPadded(std::int64_t value, int digits) {
    std::array<char, 64> buffer{};
    const bool negative = value < 0;
    const auto magnitude =
        negative ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    std::snprintf(buffer.data(), buffer.size(), "%s%0*llu", negative ? "-" : "", digits,
                  static_cast<unsigned long long>(magnitude));
    return buffer.data();
}

std::string twoDecimals(double value) {
    std::array<char, 400> buffer{};
    // The display rounds the decimal value that it shows, so 0.125 becomes 0.13.
    const double scaled = std::round(value * 100.0) / 100.0;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), scaled,
                                      std::chars_format::fixed, 2);
    std::string text(buffer.data(), result.ptr);
    return text == "-0.00" ? "0.00" : text;
}

std::string digitPattern(std::string_view text, std::string_view pattern) {
    double value = 0.0;
    if (!parseDouble(text, value) || std::fabs(value) > 9.0e15)
        return std::string(text);
    const double nearest = std::nearbyint(value);
    std::string digits = nearest == 0.0 ? "" : numberText(std::fabs(nearest));
    std::string reversed;
    std::size_t last = pattern.find_first_of("0#");
    for (std::size_t i = pattern.size(); i-- > 0;) {
        const char place = pattern[i];
        if (place != '0' && place != '#') {
            reversed.push_back(place);
            continue;
        }
        if (!digits.empty()) {
            reversed.push_back(digits.back());
            digits.pop_back();
        } else if (place == '0') {
            reversed.push_back('0');
        }
        if (i == last) {
            reversed.append(digits.rbegin(), digits.rend());
            digits.clear();
        }
    }
    if (nearest < 0.0)
        reversed.push_back('-');
    return {reversed.rbegin(), reversed.rend()};
}

std::string fixedWidth(std::string_view text, std::size_t width) {
    std::string result = leftCharacters(text, width);
    const std::size_t count = characterCount(result);
    if (count < width)
        result.append(width - count, ' ');
    return result;
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    while (!text.empty()) {
        text.remove_prefix(offsetOfCharacter(text, 1));
        ++count;
    }
    return count;
}

std::string leftCharacters(std::string_view text, std::size_t count) {
    return std::string(text.substr(0, offsetOfCharacter(text, count)));
}

std::string withoutLastCharacters(std::string_view text, std::size_t count) {
    const std::size_t total = characterCount(text);
    return total <= count ? std::string() : leftCharacters(text, total - count);
}

bool equalsIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return asciiLower(a) == asciiLower(b); });
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), asciiLower);
    return result;
}

std::string upperCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), asciiUpper);
    return result;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find(separator, start);
        parts.emplace_back(text.substr(start, end - start));
        if (end == std::string_view::npos)
            return parts;
        start = end + 1;
    }
}

} // namespace velmorant

// Writes text and numbers into memory that the caller knows to be large enough.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace velmorant::telemetry {

class DigitCursor {
  public:
    explicit DigitCursor(char* at) : at_(at) {}

    char* end() const { return at_; }

    // Literals have a length that the compiler knows, so each is a few moves.
    template <std::size_t size>
    void text(const char (&literal)[size]) {
        std::memcpy(at_, literal, size - 1);
        at_ += size - 1;
    }
    void text(std::string_view text) {
        std::memcpy(at_, text.data(), text.size());
        at_ += text.size();
    }
    void character(char c) { *at_++ = c; }

    void integer(std::uint64_t value) {
        std::array<char, 20> digits{};
        std::size_t first = digits.size();
        for (; value >= 10; value /= 10) {
            digits[--first] = static_cast<char>('0' + value % 10);
        }
        digits[--first] = static_cast<char>('0' + value);
        text(std::string_view(digits.data() + first, digits.size() - first));
    }

    // Exactly so many digits, zeros in front; the number must have no more.
    template <int width>
    void padded(std::uint64_t value) {
        for (int i = width; i-- > 0; value /= 10) {
            at_[i] = static_cast<char>('0' + value % 10);
        }
        at_ += width;
    }

    // Rounds half away from zero. No number, and what is beyond a thousand million, becomes 0.
    template <int decimals>
    void fixed(double value) {
        constexpr double widest = 1e9;
        if (!(std::abs(value) < widest)) {
            value = 0;
        }
        constexpr std::uint64_t power = powerOfTen(decimals);
        const double scaled = std::abs(value) * static_cast<double>(power);
        auto magnitude = static_cast<std::uint64_t>(scaled);
        magnitude += scaled - static_cast<double>(magnitude) >= 0.5 ? 1 : 0;
        if (value < 0 && magnitude > 0) {
            character('-');
        }
        integer(magnitude / power);
        character('.');
        padded<decimals>(magnitude % power);
    }

  private:
    static constexpr std::uint64_t powerOfTen(int exponent) {
        std::uint64_t power = 1;
        for (int i = 0; i < exponent; ++i) {
            power *= 10;
        }
        return power;
    }

    char* at_;
};

} // namespace velmorant::telemetry

// A bounds-checked view of bytes in memory. Reading beyond the end yields zero and never touches
// memory outside the view; callers ask has() where the difference matters.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace velmorant::telemetry {

class Bytes {
  public:
    Bytes() = default;
    Bytes(std::span<const std::uint8_t> data) : data_(data) {}

    std::size_t size() const { return data_.size(); }
    bool has(std::size_t at, std::size_t length) const {
        return at <= data_.size() && length <= data_.size() - at;
    }
    // The part that starts at `at`, cut at this view's end.
    Bytes from(std::size_t at, std::size_t length = SIZE_MAX) const {
        if (at >= data_.size()) {
            return {};
        }
        const std::size_t rest = data_.size() - at;
        return data_.subspan(at, length < rest ? length : rest);
    }
    std::string_view text(std::size_t at, std::size_t length = SIZE_MAX) const {
        const Bytes part = from(at, length);
        return {reinterpret_cast<const char*>(part.data_.data()), part.size()};
    }
    bool holds(std::size_t at, std::string_view marker) const {
        return has(at, marker.size()) && text(at, marker.size()) == marker;
    }
    std::span<const std::uint8_t> span() const { return data_; }

    std::uint8_t u8(std::size_t at) const {
        return at < data_.size() ? data_[at] : std::uint8_t{0};
    }
    char character(std::size_t at) const { return static_cast<char>(u8(at)); }

    std::uint16_t u16be(std::size_t at) const {
        return has(at, 2) ? static_cast<std::uint16_t>(data_[at] << 8 | data_[at + 1])
                          : std::uint16_t{0};
    }
    std::uint32_t u32be(std::size_t at) const { return static_cast<std::uint32_t>(big(at, 4)); }
    std::uint64_t u64be(std::size_t at) const { return big(at, 8); }
    std::int16_t i16be(std::size_t at) const { return static_cast<std::int16_t>(u16be(at)); }
    std::int32_t i32be(std::size_t at) const { return static_cast<std::int32_t>(u32be(at)); }
    float f32be(std::size_t at) const { return std::bit_cast<float>(u32be(at)); }
    double f64be(std::size_t at) const { return std::bit_cast<double>(u64be(at)); }

    std::uint16_t u16le(std::size_t at) const { return static_cast<std::uint16_t>(little(at, 2)); }
    std::uint32_t u32le(std::size_t at) const { return static_cast<std::uint32_t>(little(at, 4)); }
    std::uint64_t u64le(std::size_t at) const { return little(at, 8); }
    std::int8_t i8(std::size_t at) const { return static_cast<std::int8_t>(u8(at)); }
    std::int16_t i16le(std::size_t at) const { return static_cast<std::int16_t>(u16le(at)); }
    std::int32_t i32le(std::size_t at) const { return static_cast<std::int32_t>(u32le(at)); }
    std::int64_t i64le(std::size_t at) const { return static_cast<std::int64_t>(u64le(at)); }
    float f32le(std::size_t at) const { return std::bit_cast<float>(u32le(at)); }
    double f64le(std::size_t at) const { return std::bit_cast<double>(u64le(at)); }

  private:
    std::uint64_t big(std::size_t at, std::size_t width) const {
        if (!has(at, width)) {
            return 0;
        }
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < width; ++i) {
            value = value << 8 | data_[at + i];
        }
        return value;
    }
    std::uint64_t little(std::size_t at, std::size_t width) const {
        if (!has(at, width)) {
            return 0;
        }
        std::uint64_t value = 0;
        for (std::size_t i = width; i-- > 0;) {
            value = value << 8 | data_[at + i];
        }
        return value;
    }

    std::span<const std::uint8_t> data_;
};

} // namespace velmorant::telemetry

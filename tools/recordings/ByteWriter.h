// Builds binary structures in memory, in either byte order.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

namespace velmorant::recordings {

using ByteVector = std::vector<std::uint8_t>;

class ByteWriter {
  public:
    std::size_t size() const { return m_bytes.size(); }
    const ByteVector& bytes() const { return m_bytes; }
    // Leaves the writer empty.
    ByteVector take() { return std::move(m_bytes); }

    ByteWriter& u8(std::uint64_t value) { return big(value, 1); }
    ByteWriter& u16be(std::uint64_t value) { return big(value, 2); }
    ByteWriter& u32be(std::uint64_t value) { return big(value, 4); }
    ByteWriter& u64be(std::uint64_t value) { return big(value, 8); }
    ByteWriter& i16be(std::int64_t value) { return big(static_cast<std::uint64_t>(value), 2); }
    ByteWriter& i32be(std::int64_t value) { return big(static_cast<std::uint64_t>(value), 4); }
    ByteWriter& u16le(std::uint64_t value) { return little(value, 2); }
    ByteWriter& u32le(std::uint64_t value) { return little(value, 4); }
    ByteWriter& u64le(std::uint64_t value) { return little(value, 8); }
    ByteWriter& i16le(std::int64_t value) { return little(static_cast<std::uint64_t>(value), 2); }
    ByteWriter& i32le(std::int64_t value) { return little(static_cast<std::uint64_t>(value), 4); }
    ByteWriter& i64le(std::int64_t value) { return little(static_cast<std::uint64_t>(value), 8); }
    ByteWriter& f32le(double value) {
        return little(std::bit_cast<std::uint32_t>(static_cast<float>(value)), 4);
    }
    ByteWriter& f64le(double value) { return little(std::bit_cast<std::uint64_t>(value), 8); }
    ByteWriter& f32be(double value) {
        return big(std::bit_cast<std::uint32_t>(static_cast<float>(value)), 4);
    }
    ByteWriter& text(std::string_view value);
    ByteWriter& text(std::initializer_list<char> letters);
    ByteWriter& append(const ByteVector& value);
    ByteWriter& zeros(std::size_t count) {
        m_bytes.resize(m_bytes.size() + count);
        return *this;
    }
    // Goes on writing at an absolute place that lies ahead; what is between is zero.
    ByteWriter& padTo(std::size_t place) {
        if (place > m_bytes.size()) {
            m_bytes.resize(place);
        }
        return *this;
    }

  private:
    ByteWriter& big(std::uint64_t value, int width);
    ByteWriter& little(std::uint64_t value, int width);

    ByteVector m_bytes;
};

} // namespace velmorant::recordings

#include "tools/recordings/ByteWriter.h"

namespace velmorant::recordings {

ByteWriter& ByteWriter::text(std::string_view value) {
    m_bytes.insert(m_bytes.end(), value.begin(), value.end());
    return *this;
}

ByteWriter& ByteWriter::text(std::initializer_list<char> letters) {
    m_bytes.insert(m_bytes.end(), letters.begin(), letters.end());
    return *this;
}

ByteWriter& ByteWriter::append(const ByteVector& value) {
    m_bytes.insert(m_bytes.end(), value.begin(), value.end());
    return *this;
}

ByteWriter& ByteWriter::big(std::uint64_t value, int width) {
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) {
        m_bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    return *this;
}

ByteWriter& ByteWriter::little(std::uint64_t value, int width) {
    for (int i = 0; i < width; ++i) {
        m_bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    return *this;
}

} // namespace velmorant::recordings

#include "telemetry/Box.h"

#include <algorithm>

namespace velmorant::telemetry {

std::string codeText(FourCharacterCode value) {
    std::string text(4, '.');
    for (std::size_t i = 0; i < 4; ++i) {
        const auto byte = static_cast<unsigned char>(value >> (24 - 8 * i));
        if (byte >= 0x20 && byte < 0x7f) {
            text[i] = static_cast<char>(byte);
        }
    }
    return text;
}

std::optional<Box> BoxWalker::fail(const Box& box, const std::string& reason) {
    const std::string separator = path_.empty() ? "" : "/";
    error_ = input_.error(path_ + separator + codeText(box.type), box.offset, reason);
    return end();
}

std::optional<Box> BoxWalker::end() {
    at_ = end_;
    return std::nullopt;
}

std::optional<Box> BoxWalker::next() {
    const std::uint64_t space = at_ < end_ ? end_ - at_ : 0;
    const Bytes header = space < 8 ? Bytes() : input_.peek(at_, 16);
    if (header.size() < 8) {
        // Up to seven stray bytes end many "udta" boxes (a 32-bit zero) and do no harm.
        return end();
    }
    Box box;
    box.offset = at_;
    box.type = header.u32be(4);
    std::uint64_t size = header.u32be(0);
    std::uint64_t headerSize = 8;
    if (size == 1) {
        if (space < 16 || header.size() < 16) {
            return fail(box, "the box is cut off inside its 64-bit size");
        }
        size = header.u64be(8);
        headerSize = 16;
    } else if (size == 0 && !path_.empty()) {
        // A zero word pads the end of lists that come from other containers.
        return end();
    } else if (size == 0) {
        size = space;
    }
    if (size < headerSize) {
        return fail(box, "the box claims a size of " + std::to_string(size) +
                             " bytes, less than its own header");
    }
    box.cut = size > space;
    size = std::min(size, space);
    box.payload = at_ + headerSize;
    box.payloadSize = size - headerSize;
    at_ += size;
    return box;
}

} // namespace velmorant::telemetry

#include "telemetry/Box.h"

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
    at_ = end_;
    return std::nullopt;
}

std::optional<Box> BoxWalker::next() {
    if (at_ >= end_) {
        return std::nullopt;
    }
    Box box;
    box.offset = at_;
    const std::uint64_t space = end_ - at_;
    const Bytes header = input_.peek(at_, 16);
    if (space < 8 || header.size() < 8) {
        // Up to seven stray bytes end many "udta" boxes (a 32-bit zero) and do no harm.
        at_ = end_;
        return std::nullopt;
    }
    std::uint64_t size = header.u32be(0);
    box.type = header.u32be(4);
    std::uint64_t headerSize = 8;
    if (size == 1) {
        if (space < 16 || header.size() < 16) {
            return fail(box, "the box is cut off inside its 64-bit size");
        }
        size = header.u64be(8);
        headerSize = 16;
    } else if (size == 0) {
        if (!path_.empty()) {
            // A zero word pads the end of lists that come from other containers.
            at_ = end_;
            return std::nullopt;
        }
        size = space;
    }
    if (size < headerSize) {
        return fail(box, "the box claims a size of " + std::to_string(size) +
                             " bytes, less than its own header");
    }
    if (size > space) {
        box.cut = true;
        size = space;
    }
    box.payload = at_ + headerSize;
    box.payloadSize = size - headerSize;
    at_ += size;
    return box;
}

} // namespace velmorant::telemetry

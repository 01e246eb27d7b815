#include "telemetry/Input.h"

namespace velmorant::telemetry {

Bytes Input::peek(std::uint64_t offset, std::size_t length) {
    length = std::min(length, windowSize);
    const bool inside = offset >= windowStart_ && offset - windowStart_ <= windowLength_ &&
                        length <= windowLength_ - (offset - windowStart_);
    if (!inside) {
        windowStart_ = offset;
        windowLength_ = source_.readAt(offset, window_);
    }
    const Bytes window(std::span<const std::uint8_t>(window_.data(), windowLength_));
    return window.from(static_cast<std::size_t>(offset - windowStart_), length);
}

std::vector<std::uint8_t> Input::read(std::uint64_t offset, std::uint64_t length,
                                      std::size_t limit) {
    if (length > limit || offset >= size()) {
        return {};
    }
    std::vector<std::uint8_t> bytes(
        static_cast<std::size_t>(std::min<std::uint64_t>(length, size() - offset)));
    bytes.resize(source_.readAt(offset, bytes));
    return bytes;
}

bool Input::stopped() {
    // The question costs a look at the clock; samples are read far faster than that.
    constexpr unsigned every = 64;
    if (!stopped_ && options_.shouldStop && stopCalls_++ % every == 0) {
        stopped_ = options_.shouldStop();
    }
    return stopped_;
}

void Input::note(Error error) {
    constexpr std::size_t enough = 16;
    if (notes_.size() < enough) {
        notes_.push_back(std::move(error));
    }
}

} // namespace velmorant::telemetry

#include "telemetry/Scan.h"

#include <algorithm>

namespace velmorant::telemetry {

void scan(Input& input, std::uint64_t begin, std::uint64_t end, std::string_view marker,
          const std::function<std::optional<std::uint64_t>(std::uint64_t offset)>& found) {
    constexpr std::size_t window = 512 * 1024UL;
    std::vector<std::uint8_t> buffer(window);
    end = std::min(end, input.size());
    std::uint64_t at = begin;
    while (at < end && !input.stopped()) {
        input.progress(at);
        const std::size_t wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(window, end - at));
        // The next window is on its way while this one is searched.
        input.source().announce(at + wanted, window);
        const std::size_t got = input.source().readAt(at, std::span(buffer.data(), wanted));
        if (got < marker.size()) {
            return;
        }
        const std::string_view text(reinterpret_cast<const char*>(buffer.data()), got);
        std::uint64_t next = at + got - (marker.size() - 1);
        for (std::size_t hit = text.find(marker); hit != std::string_view::npos;) {
            const auto goOn = found(at + hit);
            if (!goOn) {
                return;
            }
            const std::uint64_t from = std::max(*goOn, at + hit + 1);
            if (from >= at + got) {
                next = std::max(next, from);
                break;
            }
            hit = text.find(marker, static_cast<std::size_t>(from - at));
        }
        if (got < wanted) {
            return;
        }
        at = next;
    }
}

} // namespace velmorant::telemetry

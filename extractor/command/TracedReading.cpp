#include "extractor/command/TracedReading.h"

#include <iterator>

namespace velmorant::telemetry {

void TracedSource::add(std::uint64_t begin, std::uint64_t end) {
    // A damaged file can be read in any number of places.
    constexpr std::size_t mostPlaces = 65536;
    if (begin >= end || read_.size() >= mostPlaces) {
        return;
    }
    auto next = read_.upper_bound(begin);
    if (next != read_.begin() && std::prev(next)->second >= begin) {
        --next;
        begin = next->first;
    }
    while (next != read_.end() && next->first <= end) {
        end = std::max(end, next->second);
        next = read_.erase(next);
    }
    read_.emplace(begin, end);
}

std::uint64_t TracedSource::readBetween(std::uint64_t begin, std::uint64_t end) const {
    std::uint64_t bytes = 0;
    auto range = read_.upper_bound(begin);
    if (range != read_.begin()) {
        --range;
    }
    for (; range != read_.end() && range->first < end; ++range) {
        const std::uint64_t from = std::max(begin, range->first);
        const std::uint64_t to = std::min(end, range->second);
        bytes += to > from ? to - from : 0;
    }
    return bytes;
}

} // namespace velmorant::telemetry

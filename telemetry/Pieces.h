// Walks through a file of any size piece by piece: lines, or whatever a character ends.
#pragma once

#include <string>
#include <string_view>

#include "telemetry/ByteSource.h"

namespace velmorant::telemetry {

// Calls `visit` with each piece, without the character that ends it; one longer than `longest` is
// passed over. It stops when `visit` returns false.
template <class Visit>
void forEachPiece(ByteSource& source, char end, std::size_t longest, Visit visit) {
    constexpr std::size_t window = 65536;
    std::string text(window, '\0');
    std::string rest; // of a piece that goes on in the next window
    bool tooLong = false;
    for (std::uint64_t at = 0; at < source.size(); at += window) {
        const std::size_t got =
            source.readAt(at, std::span(reinterpret_cast<std::uint8_t*>(text.data()), window));
        std::string_view left(text.data(), got);
        for (std::size_t found = left.find(end); found != std::string_view::npos;
             found = left.find(end)) {
            rest.append(left.substr(0, std::min(found, longest + 1)));
            if (!tooLong && rest.size() <= longest && !visit(std::string_view(rest))) {
                return;
            }
            tooLong = false;
            rest.clear();
            left.remove_prefix(found + 1);
        }
        tooLong = tooLong || rest.size() + left.size() > longest;
        if (tooLong) {
            rest.clear();
        } else {
            rest.append(left);
        }
        if (got < window) {
            break;
        }
    }
    if (!tooLong && !rest.empty()) {
        visit(std::string_view(rest));
    }
}

} // namespace velmorant::telemetry

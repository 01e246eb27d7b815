#pragma once

#include <string>
#include <string_view>

namespace velmorant {

/// The text with `value` in the place of its first `place` ("%1"); unchanged without such a place.
inline std::string fillIn(std::string text, std::string_view place, std::string_view value) {
    const std::size_t start = text.find(place);
    if (start != std::string::npos)
        text.replace(start, place.size(), value);
    return text;
}

} // namespace velmorant

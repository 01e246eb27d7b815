#pragma once

#include <string>
#include <string_view>

namespace velmorant {

/// The text with its first placeholder `place` ("%1") replaced by `value`; unchanged when it has
/// none.
inline std::string fillIn(std::string text, std::string_view place, std::string_view value) {
    const std::size_t start = text.find(place);
    if (start != std::string::npos)
        text.replace(start, place.size(), value);
    return text;
}

} // namespace velmorant

#pragma once

#include <string>

namespace velmorant {

/// A key that the focused pane has no use for.
struct KeyPress {
    /// As a keyboard names it, in English: "K", "5", ",", "Space", "Left", "Up", "Esc".
    std::string key;
    bool shift = false;
};

} // namespace velmorant

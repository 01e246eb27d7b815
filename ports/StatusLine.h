#pragma once

#include <string>

namespace velmorant {

/// The line of the window that says, without a box, what the user should know: why an entry is not
/// played, what is wrong with a file.
class StatusLine {
  public:
    virtual ~StatusLine() = default;
    virtual void show(const std::string& text) = 0; ///< replaces the present text; "" clears it
};

} // namespace velmorant

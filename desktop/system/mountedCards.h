#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace velmorant {

/// The folders at which desktops mount what is plugged in - memory cards, readers, sticks - in the
/// order in which they were mounted. Read from the kernel's table alone: a card that does not
/// answer is not asked.
///
/// The table (proc(5), mounts): a line a file system, "DEVICE FOLDER TYPE OPTIONS 0 0"; in FOLDER a
/// blank, a tab, a line feed and a backslash stand as "\" and three octal digits.
std::vector<std::string> mountedCards(std::istream& table);

/// Whether a folder lies where desktops mount what is plugged in.
bool isCardFolder(const std::string& folder);

/// Of this machine; empty where it has no such table.
std::vector<std::string> mountedCards();

} // namespace velmorant

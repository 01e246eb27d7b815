#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace velmorant {

/// The folders at which desktops mount removable media - memory cards, readers, sticks - in the
/// order in which they were mounted. Read from the kernel's table alone, so a card that does not
/// respond is never touched.
///
/// The table (proc(5), mounts): a line a file system, "DEVICE FOLDER TYPE OPTIONS 0 0"; in FOLDER a
/// blank, a tab, a line feed and a backslash stand as "\" and three octal digits.
std::vector<std::string> mountedCards(std::istream& table);

/// Whether a folder is where desktops mount removable media.
bool isCardFolder(const std::string& folder);

/// The folders of this machine; empty where it has no such table.
std::vector<std::string> mountedCards();

} // namespace velmorant

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmorant {

/// Splits a command line at its stars. Arguments are the longest runs of other characters, blanks
/// among them; empty ones do not count. At most `maximumCount` are returned.
std::vector<std::string> splitArguments(std::string_view commandLine,
                                        std::size_t maximumCount = 256);

/// The program's arguments, joined by single blanks.
std::string joinArguments(const std::vector<std::string>& arguments);

} // namespace velmorant

#pragma once

#include <string>

namespace velmorant {

/// The public key that catalogues must be signed with, set at build time; empty: none needed.
std::string builtInUpdateKey();

/// The main program's file in the program folder.
inline constexpr const char* mainProgramName = "Velmorant DVR Tools";

} // namespace velmorant

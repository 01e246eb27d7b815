// Base64 over RC4, as some recorders write coordinates. Written apart from the reader, so that a
// mistake in one does not hide in the other.
#pragma once

#include <string>

namespace velmorant::recordings {

std::string enciphered64(const std::string& key, const std::string& plain);

} // namespace velmorant::recordings

// Enciphers records of LIGOGPSINFO and shifts their places. Written apart from the reader, so that
// a mistake in one does not hide in the other.
#pragma once

#include <string>

#include "tools/recordings/Drive.h"

namespace velmorant::recordings {

std::string encipheredLigo(const std::string& plain);

// Degrees without their signs, as the recorder writes those of the place.
Place shiftedLigo(const Place& place);

} // namespace velmorant::recordings

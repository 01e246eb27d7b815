// A search through a part of the file, at the speed of sequential reading and in constant memory.
#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "telemetry/Input.h"

namespace velmorant::telemetry {

// Calls `found` with the file offset of each occurrence of the marker between two offsets, in file
// order; it returns where to go on searching, or nothing to end the search.
void scan(Input& input, std::uint64_t begin, std::uint64_t end, std::string_view marker,
          const std::function<std::optional<std::uint64_t>(std::uint64_t offset)>& found);

} // namespace velmorant::telemetry

// A recording as the families of formats see it.
#pragma once

#include <optional>
#include <vector>

#include "telemetry/Input.h"
#include "telemetry/Movie.h"

namespace velmorant::telemetry {

struct Recording {
    Input& input;
    std::vector<Box> boxes;     // at the top level, in file order
    std::optional<Movie> movie; // nothing where the file has no readable "moov"
};

} // namespace velmorant::telemetry

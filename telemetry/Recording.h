// A recording as the families of formats see it.
#pragma once

#include <optional>
#include <vector>

#include "telemetry/Input.h"
#include "telemetry/Movie.h"
#include "telemetry/Siblings.h"

namespace velmorant::telemetry {

struct Recording {
    Input& input;
    Siblings* siblings = nullptr; // none where the recording is no file
    std::vector<Box> boxes{};     // at the top level, in file order; none in a transport stream
    std::optional<Movie> movie{}; // nothing where the file has no readable "moov"
};

} // namespace velmorant::telemetry

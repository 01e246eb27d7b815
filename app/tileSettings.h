#pragma once

#include "app/PosixHostPaths.h"

#include <optional>
#include <string>

namespace velmorant {

/// The street tiles that the user or the operator wants.
struct TileSettings {
    std::string address;     ///< with {z}, {x} and {y}, perhaps {s}
    std::string referer;     ///< may be empty
    int maximumZoom = 19;    ///< 1..22
    std::string attribution; ///< plain text; the server's name where none is given
    std::string link;        ///< of the attribution; may be empty
};

/// From the variables VELMORANT_TILES (the address), VELMORANT_TILES_REFERER,
/// VELMORANT_TILES_MAXIMUM_ZOOM (a text that is no number counts as not set),
/// VELMORANT_TILES_ATTRIBUTION and VELMORANT_TILES_LINK. Absent without an address: then nothing
/// leaves the machine.
std::optional<TileSettings> tileSettings(const EnvironmentLookup& environment);

} // namespace velmorant

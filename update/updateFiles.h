#pragma once

#include "update/ProgramPath.h"

#include <cstddef>

namespace velmorant {

/// The update's own files in the program folder.
inline ProgramPath localCatalogue() {
    return ProgramPath::own("config.mp4");
}
inline ProgramPath remoteCatalogue() {
    return ProgramPath::own("update/remote.mp4");
}
inline ProgramPath remoteSignature() {
    return ProgramPath::own("update/remote.sig");
}

inline constexpr std::size_t largestSignature = 65536;

/// What is fetched from below the server base.
inline constexpr const char* servedCatalogue = "update/remote.rar";
inline constexpr const char* servedSignature = "update/remote.rar.sig";

} // namespace velmorant

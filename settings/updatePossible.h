#pragma once

#include "common/textRules.h"
#include "ports/HostPaths.h"

#include <string>

namespace velmorant {

/// Whether the server base is one that can be asked; the embedded default is none.
inline bool isWebAddress(const std::string& base) {
    const std::string lower = lowerCase(base);
    return lower.starts_with("http://") || lower.starts_with("https://");
}

/// False for a packaged installation: where the program folder is the system's, so is its update.
inline bool programFolderIsOwn(const HostPaths& paths) {
    const std::string name = "config.mp4";
    return paths.programFile(name) == paths.writableProgramFile(name);
}

} // namespace velmorant

#include "extractor/TemporaryFolder.h"

#include <filesystem>

namespace velmorant::telemetry {

std::optional<std::string> temporaryFolder([[maybe_unused]] const Environment& environment) {
#ifdef _WIN32
    return (std::filesystem::current_path().root_path() / "VelmorantDVRtempFile").string();
#else
    std::string cache;
    if (const auto named = environment("XDG_CACHE_HOME"); named && named->starts_with('/')) {
        cache = *named;
    } else if (const auto home = environment("HOME"); home && home->starts_with('/')) {
        cache = *home + "/.cache";
    } else {
        return std::nullopt;
    }
    return cache + "/velmorant-dvr-tools/VelmorantDVRtempFile";
#endif
}

} // namespace velmorant::telemetry

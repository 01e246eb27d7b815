// The folder through which the player and the extractor exchange the track file.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace velmorant::telemetry {

// Looks an environment variable up; nothing when it is not set.
using Environment = std::function<std::optional<std::string>(const std::string& name)>;

// On Windows "\VelmorantDVRtempFile" on the drive of the working folder; elsewhere
// VelmorantDVRtempFile in velmorant-dvr-tools of the user's cache folder: $XDG_CACHE_HOME where
// that is an absolute path, else $HOME/.cache. Nothing when neither is known.
std::optional<std::string> temporaryFolder(const Environment& environment);

} // namespace velmorant::telemetry

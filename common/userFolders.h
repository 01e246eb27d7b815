#pragma once

#include <functional>
#include <optional>
#include <string>

namespace velmorant {

/// Looks up an environment variable; absent when it is not set.
using EnvironmentLookup = std::function<std::optional<std::string>(const std::string&)>;

/// One of the user's base folders: the variable's value where it is an absolute path, else
/// `belowHome` in the user's home. Home is HOME where that is absolute, else what the system knows
/// of the user, else "/".
std::string userFolder(const EnvironmentLookup& environment, const std::string& variable,
                       const std::string& belowHome);

/// The folder through which program and extractor exchange the track file: VelmorantDVRtempFile in
/// the user's cache folder for this program. Both ask here, so that they never look in two places.
std::string workingFolder(const EnvironmentLookup& environment);

} // namespace velmorant

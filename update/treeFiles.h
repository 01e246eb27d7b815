#pragma once

#include "common/OwnedDescriptor.h"
#include "update/ProgramPath.h"

#include <functional>
#include <string>

namespace velmorant {

/// "PATH: REASON" of the present errno, or of `reason`.
[[noreturn]] void throwTreeError(const std::string& path, const std::string& reason = {});

/// The folder in which the file `path` lies, walked without following a link. Not valid, with errno
/// ENOENT, when a folder is missing. Throws StepError for all else.
OwnedDescriptor openParent(const std::string& root, const ProgramPath& path);

/// The same, and makes the folders that are missing. `changed` is told of every folder that got a
/// new one: without a sync of it a power loss could take the new one away with all that is in it.
using FolderChanged = std::function<void(const std::string& where, OwnedDescriptor folder)>;
OwnedDescriptor makeParent(const std::string& root, const ProgramPath& path,
                           const FolderChanged& changed);

/// A regular file of a folder, for reading; not valid when there is none. Throws StepError for a
/// link, a device, a folder, and all else.
OwnedDescriptor openRegular(int folder, const std::string& name, const std::string& where);

} // namespace velmorant

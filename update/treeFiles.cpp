#include "update/treeFiles.h"

#include "common/StepError.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace velmorant {

void throwTreeError(const std::string& path, const std::string& reason) {
    throw StepError(path + ": " +
                    (reason.empty() ? std::generic_category().message(errno) : reason));
}

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

OwnedDescriptor makeFolder(int parent, const char* name, const std::string& where) {
    if (::mkdirat(parent, name, 0777) != 0 && errno != EEXIST)
        throwTreeError(where);
    return OwnedDescriptor(::openat(parent, name, folderFlags | O_NOFOLLOW));
}

/// With `changed` missing folders are made.
OwnedDescriptor walk(const std::string& root, const ProgramPath& path,
                     const FolderChanged& changed) {
    // The folder itself may be reached by a link: its owner has put it there.
    OwnedDescriptor folder(::open(root.c_str(), folderFlags));
    if (!folder.valid())
        throwTreeError(root);
    std::string where = root;
    const auto& components = path.components();
    for (std::size_t i = 0; i + 1 < components.size(); ++i) {
        const char* name = components[i].c_str();
        const std::string parent = std::exchange(where, where + '/' + components[i]);
        OwnedDescriptor next(::openat(folder.get(), name, folderFlags | O_NOFOLLOW));
        if (!next.valid() && errno == ENOENT) {
            if (!changed)
                return next;
            next = makeFolder(folder.get(), name, where);
            if (next.valid())
                changed(parent, std::move(folder));
        }
        if (!next.valid())
            throwTreeError(where, errno == ENOTDIR || errno == ELOOP
                                      ? "this is no folder, or a link that leads elsewhere"
                                      : "");
        folder = std::move(next);
    }
    return folder;
}

} // namespace

OwnedDescriptor openParent(const std::string& root, const ProgramPath& path) {
    return walk(root, path, {});
}

OwnedDescriptor makeParent(const std::string& root, const ProgramPath& path,
                           const FolderChanged& changed) {
    return walk(root, path, changed);
}

OwnedDescriptor openRegular(int folder, const std::string& name, const std::string& where) {
    // A pipe or a device of that name must not hold the program up.
    OwnedDescriptor file(
        ::openat(folder, name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file.valid() && errno == ENOENT)
        return file;
    if (!file.valid())
        throwTreeError(where, errno == ELOOP ? "this is a link" : "");
    struct stat status {};
    if (::fstat(file.get(), &status) != 0)
        throwTreeError(where);
    if (!S_ISREG(status.st_mode))
        throwTreeError(where, "this is no regular file");
    return file;
}

} // namespace velmorant

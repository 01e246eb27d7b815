#include "update/treeFiles.h"

#include "common/StepError.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace velmorant {

OwnedDescriptor::~OwnedDescriptor() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

void throwTreeError(const std::string& path, const std::string& reason) {
    throw StepError(path + ": " +
                    (reason.empty() ? std::generic_category().message(errno) : reason));
}

OwnedDescriptor openParent(const std::string& root, const ProgramPath& path,
                           MissingFolders missing) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    // The folder itself may be reached by a link: its owner has put it there.
    OwnedDescriptor folder(::open(root.c_str(), flags));
    if (!folder.valid())
        throwTreeError(root);
    std::string where = root;
    const auto& components = path.components();
    for (std::size_t i = 0; i + 1 < components.size(); ++i) {
        const char* name = components[i].c_str();
        where += '/' + components[i];
        OwnedDescriptor next(::openat(folder.get(), name, flags | O_NOFOLLOW));
        if (!next.valid() && errno == ENOENT && missing == MissingFolders::Make) {
            if (::mkdirat(folder.get(), name, 0777) != 0 && errno != EEXIST)
                throwTreeError(where);
            next = OwnedDescriptor(::openat(folder.get(), name, flags | O_NOFOLLOW));
            // Without it a power loss could take the folder away with all that was renamed into it.
            if (::fsync(folder.get()) != 0)
                throwTreeError(where);
        }
        if (!next.valid() && errno == ENOENT && missing == MissingFolders::Refuse)
            return next;
        if (!next.valid())
            throwTreeError(where, errno == ENOTDIR || errno == ELOOP
                                      ? "this is no folder, or a link that leads elsewhere"
                                      : "");
        folder = std::move(next);
    }
    return folder;
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

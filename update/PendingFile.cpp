#include "common/StepError.h"
#include "update/ProgramTree.h"
#include "update/treeFiles.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace velmorant {

namespace {

// The disk begins to write while the rest still comes, so that the last sync is short.
constexpr std::uint64_t flushEvery = std::uint64_t{8} << 20;

/// The rights of the file that is going to be replaced; absent when there is none.
std::optional<mode_t> modeOf(int folder, const std::string& name, const std::string& where) {
    struct stat status {};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno != ENOENT)
            throwTreeError(where);
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode))
        throwTreeError(where, "this is no regular file, or a link");
    return status.st_mode & 0777;
}

} // namespace

PendingFile::PendingFile(std::shared_ptr<OwnedDescriptor> folder, const ProgramPath& path,
                         std::string where)
    : m_folder(std::move(folder)),
      m_name(path.name()),
      m_beside(m_name + std::string(besideEnding)),
      m_where(std::move(where)) {
    const std::optional<mode_t> mode = modeOf(m_folder->get(), m_name, m_where);
    m_isNew = !mode;
    create();
    if (mode && ::fchmod(m_file, *mode) != 0) {
        const int error = errno;
        ::close(m_file);
        ::unlinkat(m_folder->get(), m_beside.c_str(), 0);
        errno = error;
        throwTreeError(m_where);
    }
}

PendingFile::~PendingFile() {
    if (m_file >= 0)
        ::close(m_file);
    if (!m_renamed)
        ::unlinkat(m_folder->get(), m_beside.c_str(), 0);
}

void PendingFile::create() {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    // What replaces a file may be read by nobody before it has that file's rights.
    const mode_t mode = m_isNew ? 0666 : 0600;
    m_file = ::openat(m_folder->get(), m_beside.c_str(), flags, mode);
    if (m_file < 0 && errno == EEXIST) {
        // A run that was killed has left one. It is removed, not opened: it could be a link.
        if (::unlinkat(m_folder->get(), m_beside.c_str(), 0) != 0)
            throwTreeError(m_where + std::string(besideEnding));
        m_file = ::openat(m_folder->get(), m_beside.c_str(), flags, mode);
    }
    if (m_file < 0)
        throwTreeError(m_where);
}

void PendingFile::write(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            throwTreeError(m_where);
        m_size += static_cast<std::uint64_t>(count);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    if (m_size - m_flushed >= flushEvery)
        startFlush();
}

void PendingFile::makeExecutable() {
    struct stat status {};
    if (::fstat(m_file, &status) != 0)
        throwTreeError(m_where);
    const mode_t readers = status.st_mode & 0444;
    if (::fchmod(m_file, (status.st_mode & 0777) | readers >> 2) != 0)
        throwTreeError(m_where);
}

void PendingFile::startFlush() {
#ifdef SYNC_FILE_RANGE_WRITE
    ::sync_file_range(m_file, static_cast<off64_t>(m_flushed),
                      static_cast<off64_t>(m_size - m_flushed), SYNC_FILE_RANGE_WRITE);
#endif
    m_flushed = m_size;
}

void PendingFile::sync() {
    if (::fsync(m_file) != 0)
        throwTreeError(m_where);
}

void PendingFile::close() {
    if (::close(std::exchange(m_file, -1)) != 0)
        throwTreeError(m_where);
}

void PendingFile::rename() {
    const int folder = m_folder->get();
    struct stat status {};
    // A rename over a link would replace the link, not follow it; but it is not the program's file.
    if (::fstatat(folder, m_name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
        !S_ISREG(status.st_mode))
        throwTreeError(m_where, "this is no regular file, or a link");
    if (::renameat(folder, m_beside.c_str(), folder, m_name.c_str()) != 0)
        throwTreeError(m_where);
    m_renamed = true;
}

} // namespace velmorant

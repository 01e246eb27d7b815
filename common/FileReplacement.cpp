#include "common/FileReplacement.h"

#include "common/StepError.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <system_error>

namespace velmorant {

namespace {

constexpr int mostTries = 100;
/// With the ending it still fits the 255 bytes that a name may have.
constexpr std::size_t longestName = 200;

std::string followed(const std::string& path) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    return error ? path : target.string();
}

std::string folderOf(const std::string& path) {
    const std::size_t end = path.rfind('/');
    return end == std::string::npos ? "./" : path.substr(0, end + 1);
}

std::string nameBeside(const std::string& path) {
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::uniform_int_distribution<std::size_t> any(0, letters.size() - 1);
    const std::size_t start = path.rfind('/') == std::string::npos ? 0 : path.rfind('/') + 1;
    std::string name = folderOf(path) + path.substr(start, longestName) + ".part-";
    for (int i = 0; i < 6; ++i)
        name += letters[any(random)];
    return name;
}

} // namespace

FileReplacement::FileReplacement(const std::string& path, Access access) : m_path(followed(path)) {
    struct stat present {};
    const bool exists = ::stat(m_path.c_str(), &present) == 0;
    if (exists && !S_ISREG(present.st_mode))
        fail("this is no regular file");
    // A rename would also replace a file that its owner has protected.
    if (exists && ::access(m_path.c_str(), W_OK) != 0)
        fail();
    create(exists ? Access::OwnerAlone : access);
    if (exists && ::fchmod(m_file.get(), present.st_mode & 0777) != 0) {
        const int reason = errno;
        ::unlink(m_beside.c_str());
        errno = reason;
        fail();
    }
}

FileReplacement::~FileReplacement() {
    if (!m_beside.empty())
        ::unlink(m_beside.c_str());
}

void FileReplacement::create(Access access) {
    const mode_t mode = access == Access::OwnerAlone ? 0600 : 0666;
    for (int i = 0; i < mostTries; ++i) {
        const std::string beside = nameBeside(m_path);
        m_file = OwnedDescriptor(
            ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
        if (m_file.valid()) {
            m_beside = beside;
            return;
        }
        if (errno != EEXIST)
            break;
    }
    fail();
}

void FileReplacement::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_file.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            fail();
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void FileReplacement::setMode(std::uint32_t mode) {
    if (::fchmod(m_file.get(), static_cast<mode_t>(mode)) != 0)
        fail();
}

void FileReplacement::commit() {
    if (::fsync(m_file.get()) != 0 || !m_file.close() ||
        std::rename(m_beside.c_str(), m_path.c_str()) != 0)
        fail();
    m_beside.clear();
    // The rename itself is on the disk only when its folder is. Not every file system can.
    const OwnedDescriptor folder(
        ::open(folderOf(m_path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.valid())
        ::fsync(folder.get());
}

void FileReplacement::fail() const {
    fail(std::generic_category().message(errno));
}

void FileReplacement::fail(const std::string& reason) const {
    throw StepError(m_path + ": cannot be written: " + reason);
}

void replaceFile(const std::string& path, std::string_view bytes) {
    FileReplacement file(path);
    file.write(bytes);
    file.commit();
}

} // namespace velmorant

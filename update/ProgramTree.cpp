#include "update/ProgramTree.h"

#include "common/StepError.h"
#include "update/Sha256.h"
#include "update/treeFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace velmorant {

namespace {

// Each file of a group holds two descriptors.
constexpr std::size_t largestGroup = 200;
// From here on one sync of the whole disk costs less than one for every file.
constexpr std::size_t manyFiles = 8;
constexpr std::uint64_t largestGroupBytes = std::uint64_t{64} << 20;

std::string pathIn(const std::string& folder, const ProgramPath& path) {
    return folder + '/' + path.text();
}

void readPieces(int file, const std::string& where,
                const std::function<void(std::span<const std::byte>)>& take) {
    std::array<std::byte, 65536> buffer{};
    for (;;) {
        const ssize_t count = ::read(file, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throwTreeError(where);
        if (count == 0)
            return;
        take(std::span(buffer).first(static_cast<std::size_t>(count)));
    }
}

struct stat statusOf(int descriptor, const std::string& where) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0)
        throwTreeError(where);
    return status;
}

} // namespace

ProgramTree::ProgramTree(std::string folder) : m_folder(std::move(folder)) {}

ProgramTree::~ProgramTree() {
    m_group.clear();
    unlock();
}

TreeLock ProgramTree::lock() {
    if (m_lock >= 0)
        return TreeLock::Taken;
    const ProgramPath path = ProgramPath::own("update/.lock");
    const OwnedDescriptor folder = openParent(m_folder, path, MissingFolders::Make);
    OwnedDescriptor file(::openat(folder.get(), path.name().c_str(),
                                  O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666));
    if (!file.valid())
        throwTreeError(pathIn(m_folder, path));
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK)
            return TreeLock::HeldByAnother;
        throwTreeError(pathIn(m_folder, path));
    }
    m_lock = file.release();
    return TreeLock::Taken;
}

void ProgramTree::unlock() {
    if (m_lock >= 0)
        ::close(std::exchange(m_lock, -1));
}

std::unique_ptr<PendingFile> ProgramTree::beginFile(const ProgramPath& path) {
    const std::string where = pathIn(m_folder, path);
    // A second one of that name would write the same file beside.
    const bool waits = std::any_of(m_group.begin(), m_group.end(),
                                   [&](const auto& file) { return file->m_where == where; });
    if (waits)
        publish();
    OwnedDescriptor folder = openParent(m_folder, path, MissingFolders::Make);
    return std::make_unique<PendingFile>(folder.release(), path, where);
}

void ProgramTree::add(std::unique_ptr<PendingFile> file) {
    m_groupBytes += file->size();
    m_group.push_back(std::move(file));
    if (m_group.size() >= largestGroup || m_groupBytes >= largestGroupBytes)
        publish();
}

// The order survives a power loss: a name never points to content that is not on the disk, because
// every file is synced before it is renamed; and the catalogue, which says that all is done, is
// written only after the folders with the new names have been synced. A group shares its syncs: the
// disk writes all of its files at once instead of one after the other.
void ProgramTree::publish() {
    const auto group = std::exchange(m_group, {});
    m_groupBytes = 0;
    for (const auto& file : group)
        file->startFlush();
    syncFiles(group);
    for (const auto& file : group)
        file->rename();
    std::set<std::pair<dev_t, ino_t>> synced;
    for (const auto& file : group) {
        const struct stat status = statusOf(file->m_folder, file->m_where);
        if (synced.emplace(status.st_dev, status.st_ino).second)
            file->syncFolder();
    }
}

void ProgramTree::syncFiles(const std::vector<std::unique_ptr<PendingFile>>& group) {
    std::set<dev_t> disks;
    for (const auto& file : group) {
        if (group.size() < manyFiles)
            file->sync();
        else if (disks.insert(statusOf(file->m_file, file->m_where).st_dev).second &&
                 ::syncfs(file->m_file) != 0)
            throwTreeError(file->m_where);
    }
}

void ProgramTree::replaceFile(const ProgramPath& path, std::span<const std::byte> bytes) {
    auto file = beginFile(path);
    file->write(bytes);
    add(std::move(file));
    publish();
}

std::optional<std::string> ProgramTree::readFile(const ProgramPath& path,
                                                 std::size_t largest) const {
    const OwnedDescriptor folder = openParent(m_folder, path, MissingFolders::Refuse);
    if (!folder.valid())
        return std::nullopt;
    const std::string where = pathIn(m_folder, path);
    const OwnedDescriptor file = openRegular(folder.get(), path.name(), where);
    if (!file.valid())
        return std::nullopt;
    std::string text;
    readPieces(file.get(), where, [&](std::span<const std::byte> piece) {
        if (text.size() + piece.size() > largest)
            throwTreeError(where, "the file is larger than such a file can be");
        text.append(reinterpret_cast<const char*>(piece.data()), piece.size());
    });
    return text;
}

std::optional<std::string> ProgramTree::digestOf(const ProgramPath& path) const {
    const OwnedDescriptor folder = openParent(m_folder, path, MissingFolders::Refuse);
    if (!folder.valid())
        return std::nullopt;
    const std::string where = pathIn(m_folder, path);
    const OwnedDescriptor file = openRegular(folder.get(), path.name(), where);
    if (!file.valid())
        return std::nullopt;
    Sha256 digest;
    readPieces(file.get(), where, [&](std::span<const std::byte> piece) { digest.add(piece); });
    return digest.hexDigits();
}

void ProgramTree::keepBeside(const ProgramPath& path, const ProgramPath& kept) {
    const OwnedDescriptor folder = openParent(m_folder, path, MissingFolders::Refuse);
    const OwnedDescriptor keptFolder = openParent(m_folder, kept, MissingFolders::Refuse);
    if (!folder.valid() || !keptFolder.valid())
        throwTreeError(pathIn(m_folder, path));
    if (::unlinkat(keptFolder.get(), kept.name().c_str(), 0) != 0 && errno != ENOENT)
        throwTreeError(pathIn(m_folder, kept));
    // A second name for the same file: at no moment is there no program.
    if (::linkat(folder.get(), path.name().c_str(), keptFolder.get(), kept.name().c_str(), 0) !=
            0 ||
        ::fsync(keptFolder.get()) != 0)
        throwTreeError(pathIn(m_folder, kept));
}

void ProgramTree::copyRights(const ProgramPath& from, const ProgramPath& to) {
    const auto open = [this](const ProgramPath& path) {
        const OwnedDescriptor folder = openParent(m_folder, path, MissingFolders::Refuse);
        OwnedDescriptor file(folder.valid()
                                 ? openRegular(folder.get(), path.name(), pathIn(m_folder, path))
                                 : OwnedDescriptor());
        if (!file.valid())
            throwTreeError(pathIn(m_folder, path), "there is no such file");
        return file;
    };
    const OwnedDescriptor source = open(from);
    const OwnedDescriptor target = open(to);
    struct stat status {};
    if (::fstat(source.get(), &status) != 0 || ::fchmod(target.get(), status.st_mode & 0777) != 0 ||
        ::fsync(target.get()) != 0)
        throwTreeError(pathIn(m_folder, to));
}

void ProgramTree::renameFile(const ProgramPath& from, const ProgramPath& to) {
    const OwnedDescriptor folder = openParent(m_folder, from, MissingFolders::Refuse);
    const OwnedDescriptor target = openParent(m_folder, to, MissingFolders::Refuse);
    if (!folder.valid() || !target.valid() ||
        ::renameat(folder.get(), from.name().c_str(), target.get(), to.name().c_str()) != 0 ||
        ::fsync(target.get()) != 0)
        throwTreeError(pathIn(m_folder, from));
}

} // namespace velmorant

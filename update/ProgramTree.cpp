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

constexpr std::size_t largestGroup = 1000;
constexpr std::uint64_t largestGroupBytes = std::uint64_t{64} << 20;
// Each holds a descriptor.
constexpr std::size_t mostFolders = 200;
// From here on one sync of the whole disk costs less than one for every file or folder.
constexpr std::size_t manySyncs = 4;

std::string pathIn(const std::string& folder, const ProgramPath& path) {
    return folder + '/' + path.text();
}

std::string parentIn(const std::string& folder, const ProgramPath& path) {
    const std::string where = pathIn(folder, path);
    return where.substr(0, where.rfind('/'));
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
    m_group = {};
    unlock();
}

TreeLock ProgramTree::lock() {
    if (m_lock >= 0)
        return TreeLock::Taken;
    const ProgramPath path = ProgramPath::own("update/.lock");
    const OwnedDescriptor folder = makeParent(m_folder, path, remember());
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
    if (m_group.paths.contains(where))
        publish();
    return std::make_unique<PendingFile>(folderOf(path), path, where);
}

std::shared_ptr<OwnedDescriptor> ProgramTree::folderOf(const ProgramPath& path) {
    const auto known = m_group.folders.find(parentIn(m_folder, path));
    if (known != m_group.folders.end())
        return known->second;
    auto folder = std::make_shared<OwnedDescriptor>(makeParent(m_folder, path, remember()));
    m_group.folders.emplace(parentIn(m_folder, path), folder);
    return folder;
}

std::function<void(const std::string&, OwnedDescriptor)> ProgramTree::remember() {
    return [this](const std::string& where, OwnedDescriptor folder) {
        m_group.folders.emplace(where, std::make_shared<OwnedDescriptor>(std::move(folder)));
    };
}

void ProgramTree::add(std::unique_ptr<PendingFile> file) {
    // The group in which it was begun may have been published.
    m_group.folders.emplace(file->m_where.substr(0, file->m_where.rfind('/')), file->m_folder);
    m_group.bytes += file->size();
    m_group.paths.insert(file->m_where);
    m_group.files.push_back(std::move(file));
    if (m_group.files.size() == manySyncs) {
        for (const auto& one : m_group.files)
            one->close();
    } else if (m_group.files.size() > manySyncs) {
        m_group.files.back()->close();
    }
    if (m_group.files.size() >= largestGroup || m_group.bytes >= largestGroupBytes ||
        m_group.folders.size() >= mostFolders)
        publish();
}

// The order survives a power loss: a name never points to content that is not on the disk, because
// every file is synced before it is renamed; and the catalogue, which says that all is done, is
// written only after the new names have been synced. A group shares its syncs: the disk writes all
// of its files at once instead of one after the other.
void ProgramTree::publish() {
    const Group group = std::exchange(m_group, {});
    syncContents(group);
    for (const auto& file : group.files)
        file->rename();
    syncFolders(group);
}

void ProgramTree::syncContents(const Group& group) {
    if (group.files.size() >= manySyncs) {
        syncDisks(group);
        return;
    }
    for (const auto& file : group.files)
        file->startFlush();
    for (const auto& file : group.files)
        file->sync();
}

void ProgramTree::syncFolders(const Group& group) {
    if (group.folders.size() >= manySyncs) {
        syncDisks(group);
        return;
    }
    for (const auto& [path, folder] : group.folders) {
        if (::fsync(folder->get()) != 0)
            throwTreeError(path);
    }
}

void ProgramTree::syncDisks(const Group& group) {
    std::set<dev_t> disks;
    for (const auto& [path, folder] : group.folders) {
        if (disks.insert(statusOf(folder->get(), path).st_dev).second &&
            ::syncfs(folder->get()) != 0)
            throwTreeError(path);
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
    const OwnedDescriptor folder = openParent(m_folder, path);
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
    const OwnedDescriptor folder = openParent(m_folder, path);
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
    const OwnedDescriptor folder = openParent(m_folder, path);
    const OwnedDescriptor keptFolder = openParent(m_folder, kept);
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
        const OwnedDescriptor folder = openParent(m_folder, path);
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
    const OwnedDescriptor folder = openParent(m_folder, from);
    const OwnedDescriptor target = openParent(m_folder, to);
    if (!folder.valid() || !target.valid() ||
        ::renameat(folder.get(), from.name().c_str(), target.get(), to.name().c_str()) != 0 ||
        ::fsync(target.get()) != 0)
        throwTreeError(pathIn(m_folder, from));
}

} // namespace velmorant

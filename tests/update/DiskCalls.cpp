#include "tests/update/DiskCalls.h"

#include <array>
#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

namespace velmorant {

namespace {

DiskCalls* recorder = nullptr;

/// False when the call is to fail.
bool record(const std::string& call) {
    if (recorder == nullptr)
        return true;
    recorder->calls.push_back(call);
    if (recorder->fails != call)
        return true;
    errno = EIO;
    return false;
}

std::string nameOf(int descriptor) {
    std::array<char, 4096> path{};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    const std::string name(path.data(), length < 0 ? 0 : static_cast<std::size_t>(length));
    return name.substr(name.rfind('/') + 1);
}

} // namespace

DiskCalls::DiskCalls() {
    recorder = this;
}

DiskCalls::~DiskCalls() {
    recorder = nullptr;
}

} // namespace velmorant

// The program's own definitions come before those of the C library.
extern "C" {

int fsync(int descriptor) {
    if (!velmorant::record("sync " + velmorant::nameOf(descriptor)))
        return -1;
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

int syncfs(int descriptor) noexcept {
    if (!velmorant::record("sync disk"))
        return -1;
    return static_cast<int>(::syscall(SYS_syncfs, descriptor));
}

int renameat(int from, const char* name, int to, const char* newName) noexcept {
    if (!velmorant::record(std::string("rename ") + newName))
        return -1;
    return static_cast<int>(::syscall(SYS_renameat2, from, name, to, newName, 0));
}
}

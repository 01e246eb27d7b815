#include "extractor/command/UnfinishedFiles.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <unistd.h>

namespace velmorant::telemetry {

UnfinishedFiles::Begun UnfinishedFiles::begin(const std::string& path) {
    std::random_device random;
    const std::scoped_lock lock(mutex_);
    Begun begun;
    constexpr int mostTries = 16;
    for (int i = 0; i < mostTries; ++i) {
        begun.name = path + ".part-" + std::to_string(random());
        begun.descriptor =
            ::open(begun.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (begun.descriptor >= 0) {
            names_.insert(begun.name);
            return begun;
        }
        if (errno != EEXIST) {
            return begun;
        }
    }
    return begun;
}

std::optional<std::string> UnfinishedFiles::finish(const std::string& name,
                                                   const std::string& path) {
    const std::scoped_lock lock(mutex_);
    names_.erase(name);
    if (std::rename(name.c_str(), path.c_str()) == 0) {
        return std::nullopt;
    }
    const std::string problem = std::strerror(errno);
    ::unlink(name.c_str());
    return problem;
}

void UnfinishedFiles::discard(const std::string& name) {
    const std::scoped_lock lock(mutex_);
    if (names_.erase(name) > 0) {
        ::unlink(name.c_str());
    }
}

std::unique_lock<std::mutex> UnfinishedFiles::discardAll() {
    std::unique_lock lock(mutex_);
    for (const std::string& name : names_) {
        ::unlink(name.c_str());
    }
    names_.clear();
    return lock;
}

} // namespace velmorant::telemetry

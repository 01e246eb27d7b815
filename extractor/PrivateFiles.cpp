#include "extractor/PrivateFiles.h"

#include <cerrno>
#include <filesystem>
#include <random>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#ifdef _WIN32
#include <io.h>
#else
#include <sys/file.h>
#include <unistd.h>
#endif

namespace velmorant::telemetry {

namespace {

namespace fs = std::filesystem;

constexpr char mark[] = ".part-";

} // namespace

#ifdef _WIN32

// The user's folders are private there by the rights that they inherit.
std::error_code makePrivateFolder(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    return error;
}

BesideFile openBeside(const std::string& path) {
    BesideFile file;
    file.name = path + mark + std::to_string(std::random_device()());
    file.descriptor = ::_open(file.name.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY,
                              _S_IREAD | _S_IWRITE);
    return file;
}

namespace {

// An open file cannot be removed there.
void removeUnlessOpen(const std::string& path) {
    std::error_code ignored;
    fs::remove(path, ignored);
}

} // namespace

#else

std::error_code makePrivateFolder(const std::string& folder) {
    std::error_code error;
    fs::create_directories(fs::path(folder).parent_path(), error);
    if (!error && ::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
        error = std::error_code(errno, std::generic_category());
    }
    if (error) {
        return error;
    }
    // A folder made before, or by the program, may have the rights that the system gives to all.
    // Where they cannot be changed the folder is another's, and writing will tell.
    (void)::chmod(folder.c_str(), 0700);
    return {};
}

BesideFile openBeside(const std::string& path) {
    std::random_device random;
    constexpr int mostTries = 16;
    BesideFile file;
    for (int i = 0; i < mostTries; ++i) {
        file.name = path + mark + std::to_string(random());
        file.descriptor = ::open(file.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (file.descriptor < 0) {
            if (errno == EEXIST) {
                continue;
            }
            return file;
        }
        // Another run may have taken it for a left-over before it was locked.
        struct stat status {};
        if (::flock(file.descriptor, LOCK_EX) != 0 ||
            (::fstat(file.descriptor, &status) == 0 && status.st_nlink > 0)) {
            return file;
        }
        ::close(file.descriptor);
        file.descriptor = -1;
        errno = EEXIST;
    }
    return file;
}

namespace {

void removeUnlessOpen(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0) {
        return;
    }
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
        ::unlink(path.c_str());
    }
    ::close(descriptor);
}

} // namespace

#endif

void removeLeftOvers(const std::string& path) {
    const fs::path folder = fs::path(path).parent_path();
    const std::string begin = fs::path(path).filename().string() + mark;
    std::vector<std::string> found;
    std::error_code error;
    for (fs::directory_iterator i(folder, error), end; !error && i != end; i.increment(error)) {
        std::error_code ignored;
        if (i->path().filename().string().starts_with(begin) &&
            fs::is_regular_file(i->symlink_status(ignored))) {
            found.push_back(i->path().string());
        }
    }
    for (const std::string& name : found) {
        removeUnlessOpen(name);
    }
}

} // namespace velmorant::telemetry

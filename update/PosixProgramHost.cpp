#include "update/PosixProgramHost.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace velmorant {

namespace {

constexpr std::chrono::milliseconds pollInterval{50};
constexpr int notStarted = 127;

bool isProcess(const std::string& name) {
    return !name.empty() && name.find_first_not_of("0123456789") == std::string::npos;
}

} // namespace

PosixProgramHost::PosixProgramHost(std::chrono::milliseconds watched) : m_watched(watched) {}

bool PosixProgramHost::isRunning(const std::string& path) {
    struct stat program {};
    if (::stat(path.c_str(), &program) != 0)
        return false;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        struct stat status {};
        // A process of another user tells nothing, and has a program folder of its own.
        if (isProcess(entry.path().filename().string()) &&
            ::stat((entry.path() / "exe").c_str(), &status) == 0 &&
            status.st_dev == program.st_dev && status.st_ino == program.st_ino)
            return true;
    }
    return false;
}

void PosixProgramHost::waitABit() {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
}

ProgramStart PosixProgramHost::startAndWatch(const std::string& path, const std::string& folder) {
    const char* const file = path.c_str();
    const char* const place = folder.c_str();
    const pid_t child = ::fork();
    if (child == 0) {
        // A session of its own: it stays when the updater, or its terminal, ends.
        ::setsid();
        if (::chdir(place) == 0)
            ::execl(file, file, static_cast<char*>(nullptr));
        ::_exit(notStarted);
    }
    if (child < 0)
        return ProgramStart::Failed;
    const auto end = std::chrono::steady_clock::now() + m_watched;
    while (std::chrono::steady_clock::now() < end) {
        int status = 0;
        const pid_t ended = ::waitpid(child, &status, WNOHANG);
        if (ended == child)
            return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? ProgramStart::Runs
                                                                 : ProgramStart::Failed;
        std::this_thread::sleep_for(pollInterval);
    }
    return ProgramStart::Runs;
}

} // namespace velmorant

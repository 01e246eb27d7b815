// Preloaded into the program by tools/long_tests.sh: makes visible what goes wrong when one thread
// reads the environment while another one changes it.
//
// The C library's getenv() walks the table of variables without a lock; setenv() with a new name
// may move that table meanwhile. The moment in which this hits is some nanoseconds wide. Here every
// thread but the first stands still in the middle of the walk, with the address of the table in its
// hand, so that a change at any time of the start is hit.
//   SLOW_GETENV_MILLISECONDS   how long a walk stands still (default 100)
// A variable that is added or removed while several threads run is named on the error output.

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" char** environ;

namespace {

unsigned pauseMicroseconds = 100'000;

bool isFirstThread() {
    return syscall(SYS_gettid) == getpid();
}

int threadCount() {
    int count = 0;
    DIR* const tasks = opendir("/proc/self/task");
    while (tasks != nullptr) {
        const dirent* const entry = readdir(tasks);
        if (entry == nullptr)
            break;
        count += entry->d_name[0] == '.' ? 0 : 1;
    }
    if (tasks != nullptr)
        closedir(tasks);
    return count;
}

char* find(const char* name, bool slowly) {
    const std::size_t length = std::strlen(name);
    char** const table = environ;
    if (table == nullptr)
        return nullptr;
    if (slowly)
        usleep(pauseMicroseconds);
    for (char** entry = table; *entry != nullptr; ++entry)
        if (std::strncmp(*entry, name, length) == 0 && (*entry)[length] == '=')
            return *entry + length + 1;
    return nullptr;
}

void report(const char* what, const char* name) {
    if (threadCount() < 2)
        return;
    const std::string line = std::string("environment: ") + what + " " + name + " among threads\n";
    static_cast<void>(!write(2, line.c_str(), line.size()));
}

template <typename Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// The program's own children are let alone.
__attribute__((constructor)) void begin() {
    if (const char* const wanted = find("SLOW_GETENV_MILLISECONDS", false))
        pauseMicroseconds = static_cast<unsigned>(std::atoi(wanted)) * 1000;
    unsetenv("LD_PRELOAD");
}

} // namespace

extern "C" {

char* getenv(const char* name) {
    return find(name, !isFirstThread());
}

char* secure_getenv(const char* name) {
    return getenv(name);
}

int setenv(const char* name, const char* value, int overwrite) {
    if (find(name, false) == nullptr)
        report("adds", name);
    return next<int (*)(const char*, const char*, int)>("setenv")(name, value, overwrite);
}

int putenv(char* text) {
    const std::string name(text, std::strcspn(text, "="));
    if (find(name.c_str(), false) == nullptr)
        report("adds", name.c_str());
    return next<int (*)(char*)>("putenv")(text);
}

int unsetenv(const char* name) {
    if (find(name, false) != nullptr)
        report("removes", name);
    return next<int (*)(const char*)>("unsetenv")(name);
}

} // extern "C"

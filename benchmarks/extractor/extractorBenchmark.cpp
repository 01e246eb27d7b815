// Whole processes, from start to end: the extractor, the floor, an independent decoder, and the
// command on a thousand recordings. Prints one line per figure.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "benchmarks/extractor/LargeRecording.h"
#include "tools/recordings/FamilyMakers.h"

namespace {

namespace fs = std::filesystem;
using namespace velmorant::recordings;

struct Run {
    double milliseconds = 0;
    long peakKilobytes = 0;
    int exitCode = 0;
};

Run run(const std::vector<std::string>& command, const std::string& output = "/dev/null") {
    std::vector<char*> arguments;
    for (const std::string& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, 1, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                       0644);
    ::posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    Run result;
    if (::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) != 0) {
        result.exitCode = 127;
        return result;
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    result.milliseconds =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    result.peakKilobytes = usage.ru_maxrss;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128;
    ::posix_spawn_file_actions_destroy(&actions);
    return result;
}

// Does the work in a process of its own: a child's peak of memory is never reported as less than
// what its parent held when it was started, so the parent has to stay small.
template <class Work>
void apart(Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
}

// Drops the file's pages from the cache.
void makeCold(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY);
    ::posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
    ::close(file);
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Alternates the two, so that both see the same machine.
void compare(const char* name, const std::string& recording, bool cold, const fs::path& trackFile) {
    const std::vector<std::string> floor = {FLOOR_READER, recording, recording + ".ranges"};
    const std::vector<std::string> parse = {PARSE, recording};
    std::vector<double> floorTimes, parseTimes;
    long peak = 0;
    int failures = 0;
    const int rounds = cold ? 11 : 51;
    for (int i = 0; i < rounds; ++i) {
        for (const auto* command : {&floor, &parse}) {
            if (cold) {
                makeCold(recording);
            }
            // As the player does before each extraction.
            fs::remove(trackFile);
            const Run result = run(*command);
            failures += result.exitCode != 0 ? 1 : 0;
            (command == &floor ? floorTimes : parseTimes).push_back(result.milliseconds);
            if (command == &parse) {
                peak = std::max(peak, result.peakKilobytes);
            }
        }
    }
    std::printf("%-8s %-5s floor %7.2f ms   extractor %7.2f ms   ratio %4.2f   peak %ld KiB   "
                "failures %d\n",
                name, cold ? "cold" : "warm", median(floorTimes), median(parseTimes),
                median(parseTimes) / median(floorTimes), peak, failures);
}

void compareWithDecoder(const char* name, const std::string& recording) {
    run({PARSE, recording});
    const Run ours = run({PARSE, recording});
    const Run theirs =
        run({"exiftool", "-q", "-ee", "-n", "-p", "$gpslatitude $gpslongitude", recording});
    if (theirs.exitCode == 127) {
        std::printf("%-8s exiftool is not installed\n", name);
        return;
    }
    std::printf("%-8s exiftool %9.1f ms   extractor %7.2f ms   %.0f times faster\n", name,
                theirs.milliseconds, ours.milliseconds, theirs.milliseconds / ours.milliseconds);
}

void writeThousand(const fs::path& folder) {
    const FamilyMaker& maker = familyMakers().front();
    Driver driver({}, 65, 9);
    for (int i = 0; i < 1000; ++i) {
        const auto path = folder / (std::to_string(100000 + i) + ".MP4");
        const ByteVector bytes = maker.make(driver.drive(1718188245 + 60 * i, 60));
        // Sparse: the blocks are mostly zeros.
        const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0644);
        for (std::size_t at = 0; at < bytes.size(); at += 4096) {
            const std::size_t length = std::min<std::size_t>(4096, bytes.size() - at);
            const bool empty = std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                                           bytes.begin() + static_cast<std::ptrdiff_t>(at + length),
                                           [](std::uint8_t byte) { return byte == 0; });
            if (!empty && ::pwrite(file, bytes.data() + at, length, static_cast<off_t>(at)) < 0) {
                std::abort();
            }
        }
        if (::ftruncate(file, static_cast<off_t>(bytes.size())) != 0) {
            std::abort();
        }
        ::close(file);
    }
}

void thousand(const fs::path& folder) {
    apart([&] { writeThousand(folder); });
    std::vector<double> times;
    long peak = 0;
    for (int i = 0; i < 6; ++i) {
        const Run result = run({DVR_TRACK, "-r", "--format", "csv", folder.string()},
                               (folder / "all.csv").string());
        if (i > 0) {
            times.push_back(result.milliseconds);
            peak = std::max(peak, result.peakKilobytes);
        }
    }
    std::printf("1,000 recordings to csv, warm: %.0f ms, peak %ld KiB, %ju bytes written\n",
                median(times), peak,
                static_cast<std::uintmax_t>(fs::file_size(folder / "all.csv")));
}

} // namespace

int main() {
    const fs::path folder =
        fs::temp_directory_path() / ("extractor-benchmark-" + std::to_string(::getpid()));
    fs::create_directories(folder / "thousand");
    ::setenv("XDG_CACHE_HOME", folder.c_str(), 1);
    const fs::path trackFile =
        folder / "velmorant-dvr-tools" / "VelmorantDVRtempFile" / "output.kml";
    for (const auto& [kind, name] :
         {std::pair{LargeKind::freeGps, "freeGPS"}, std::pair{LargeKind::gpmf, "GPMF"}}) {
        const std::string recording = (folder / name).string() + ".MP4";
        apart([&, chosen = kind] { writeLargeRecording(chosen, recording); });
        std::printf("%s: %.2f GB, 3600 seconds\n", name,
                    static_cast<double>(fs::file_size(recording)) / 1e9);
        compare(name, recording, false, trackFile);
        compare(name, recording, true, trackFile);
        compareWithDecoder(name, recording);
        std::fflush(stdout);
    }
    thousand(folder / "thousand");
    fs::remove_all(folder);
    return 0;
}

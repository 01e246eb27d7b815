// hostile_bytes PARSE FOLDER [RUNS [SEED]]: damages recordings of every layout, and the files
// beside recordings, in every way that comes to mind, has the extractor PARSE read each, and holds
// what it says to what may be believed. Prints one line and ends with 1 where one run crashed,
// hung, took more than 16 MiB or trusted what cannot be; that recording stays in FOLDER.
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tools/recordings/FamilyMakers.h"

namespace {

using namespace velmorant::recordings;
namespace fs = std::filesystem;
using Random = std::mt19937_64;

constexpr long mostKibibytes = 16 * 1024;
constexpr double fastest = 450;  // km/h that may be trusted
constexpr unsigned longest = 30; // seconds of one run
constexpr std::int64_t start = 1718188245;

std::size_t below(Random& random, std::size_t end) {
    return end == 0 ? 0 : static_cast<std::size_t>(random() % end);
}

// Numbers at whose edges readers go wrong.
std::uint64_t extreme(Random& random) {
    constexpr std::array<std::uint64_t, 12> values = {
        0,          1,          0x7f,       0xff,       0x7fff,     0xffff,
        0x7fffffff, 0x80000000, 0xffffffff, UINT64_MAX, 0x00ffffff, 0x7fffffffffffffff};
    return values[below(random, values.size())];
}

void setNumber(ByteVector& bytes, std::size_t at, std::uint64_t value, std::size_t width,
               bool bigEndian) {
    for (std::size_t i = 0; i < width && at + i < bytes.size(); ++i) {
        const std::size_t shift = 8 * (bigEndian ? width - 1 - i : i);
        bytes[at + i] = static_cast<std::uint8_t>(value >> shift);
    }
}

void damageOnce(ByteVector& bytes, Random& random) {
    if (bytes.empty()) {
        return;
    }
    // Headers are few among the bytes of a picture: half of the damage goes to where letters are.
    std::size_t at = below(random, bytes.size());
    if (random() % 2 == 0) {
        for (std::size_t i = 0; i < 4096 && at + 8 < bytes.size(); ++i, ++at) {
            if (bytes[at] >= 'a' && bytes[at] <= 'z' && bytes[at + 1] >= 'a') {
                at += below(random, 24);
                break;
            }
        }
    }
    at = std::min(at, bytes.size() - 1);
    const std::size_t length = std::min(1 + below(random, 256), bytes.size() - at);
    const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    constexpr std::array<std::size_t, 4> widths = {1, 2, 4, 8};
    switch (random() % 8) {
    case 0:
        bytes[at] ^= static_cast<std::uint8_t>(1U << (random() % 8));
        break;
    case 1:
        bytes[at] = static_cast<std::uint8_t>(random());
        break;
    case 2:
    case 3:
        setNumber(bytes, at, extreme(random), widths[below(random, widths.size())],
                  random() % 2 == 0);
        break;
    case 4:
        std::fill_n(place, length, static_cast<std::uint8_t>(random() % 2 == 0 ? 0 : random()));
        break;
    case 5:
        bytes.erase(place, place + static_cast<std::ptrdiff_t>(length));
        break;
    case 6: {
        const ByteVector again(place, place + static_cast<std::ptrdiff_t>(length));
        bytes.insert(place, again.begin(), again.end());
        break;
    }
    default:
        if (random() % 8 == 0) {
            bytes.resize(at);
        } else {
            for (std::size_t i = 0; i < length; ++i) {
                bytes[at + i] = static_cast<std::uint8_t>(random());
            }
        }
    }
}

struct Case {
    std::string name; // of the recording
    ByteVector recording;
    std::string besideName;
    ByteVector beside;
};

ByteVector bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

// The texts that recorders and others keep beside a recording.
std::vector<Case> besideCases(const DriveSeconds& drive) {
    const ByteVector plain = buildMp4(making::planOf(drive));
    std::string sentences, table = "$V02\n", gpx = "<gpx><trk><trkseg>", subtitles;
    for (std::size_t i = 0; i < drive.size(); ++i) {
        const DriveSecond& second = drive[i];
        std::array<char, 300> line{};
        sentences += "[" + std::to_string(second.time * 1000) + "]" + making::rmc(second) +
                     "\r\n$GSENSORD,0.060,-0.120,1.010\r\n";
        std::snprintf(line.data(), line.size(), "%lld,A,%.6f,%.6f,100,2000,1,2,100,a.MP4\r\n",
                      static_cast<long long>(second.time), second.latitude, second.longitude);
        table += line.data();
        std::snprintf(line.data(), line.size(),
                      "<trkpt lat=\"%.6f\" lon=\"%.6f\"><time>2024-06-12T10:30:%02dZ</time>"
                      "<speed>%.2f</speed></trkpt>",
                      second.latitude, second.longitude, static_cast<int>(45 + i) % 60,
                      second.speed / 3.6);
        gpx += line.data();
        std::snprintf(line.data(), line.size(),
                      "%d\n00:00:%02d,000 --> 00:00:%02d,900\nlatitude: %.6f longitude: %.6f "
                      "%.1f km/h\n\n",
                      static_cast<int>(i % 100), static_cast<int>(i % 60), static_cast<int>(i % 60),
                      second.latitude, second.longitude, second.speed);
        subtitles += line.data();
    }
    return {{"a.MP4", plain, "a.gps", bytesOf(sentences)},
            {"a.MP4", plain, "a.nmea", bytesOf(sentences)},
            {"a.MP4", plain, "a.3gf", ByteVector(400, 7)},
            {"a.MP4", plain, "GPSData1.txt", bytesOf(table)},
            {"a.MP4", plain, "a.gpx", bytesOf(gpx + "</trkseg></trk></gpx>")},
            {"a.MP4", plain, "other.gpx", bytesOf(gpx)},
            {"a.MP4", plain, "a.srt", bytesOf(subtitles)}};
}

std::vector<Case> allCases() {
    Driver driver({}, 65, 7);
    const auto drive = driver.drive(start, 12);
    std::vector<Case> cases = besideCases(drive);
    for (const FamilyMaker& maker : familyMakers()) {
        cases.push_back({"a" + std::string(maker.extension), maker.make(drive), {}, {}});
    }
    // A rear recording whose front is damaged.
    cases.push_back({"20240612_103045_R.MP4", buildMp4(making::planOf(drive)),
                     "20240612_103045_F.MP4", familyMakers().front().make(drive)});
    return cases;
}

void write(const fs::path& path, const ByteVector& bytes) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

struct Ended {
    int status = 0;
    long kibibytes = 0;
};

std::optional<Ended> run(const std::string& parse, const std::string& recording) {
    std::array<char*, 3> arguments = {const_cast<char*>(parse.c_str()),
                                      const_cast<char*>(recording.c_str()), nullptr};
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    const int problem =
        posix_spawn(&process, parse.c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (problem != 0) {
        return std::nullopt;
    }
    // An alarm of this program interrupts the wait for one that hangs.
    ::alarm(longest);
    Ended ended;
    rusage usage{};
    if (::wait4(process, &ended.status, 0, &usage) != process) {
        ::kill(process, SIGKILL);
        ::waitpid(process, &ended.status, 0);
    }
    ::alarm(0);
    ended.kibibytes = usage.ru_maxrss;
    return ended;
}

// The text between two marks behind `at`, which moves on; nothing where there is no more.
std::optional<double> nextNumber(const std::string& text, const char* mark, std::size_t& at) {
    at = text.find(mark, at);
    if (at == std::string::npos) {
        return std::nullopt;
    }
    at += std::strlen(mark);
    return std::atof(text.c_str() + at);
}

// What the track file says that cannot be, empty where all may be.
std::string unbelievable(const std::string& track) {
    std::size_t at = 0;
    while (const auto speed = nextNumber(track, "<Speed>", at)) {
        if (!(*speed >= 0 && *speed <= fastest)) {
            return "a speed of " + std::to_string(*speed) + " km/h";
        }
    }
    for (const auto& [mark, most] :
         {std::pair("<Latitude>", 90.0), std::pair("<Longitude>", 180.0)}) {
        at = 0;
        while (const auto degrees = nextNumber(track, mark, at)) {
            if (!(std::abs(*degrees) <= most)) {
                return std::string(mark) + std::to_string(*degrees);
            }
        }
    }
    return {};
}

std::string contentOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// What is wrong with a run, empty where nothing is.
std::string judged(const Ended& ended, const fs::path& trackFile) {
    if (!WIFEXITED(ended.status)) {
        return WTERMSIG(ended.status) == SIGKILL ? "hung" : "crashed";
    }
    if (WEXITSTATUS(ended.status) > 1) {
        return "ended with " + std::to_string(WEXITSTATUS(ended.status));
    }
    if (ended.kibibytes > mostKibibytes) {
        return "took " + std::to_string(ended.kibibytes) + " KiB";
    }
    const std::string track = contentOf(trackFile);
    if (!track.ends_with("</track>\n")) {
        return "left no whole track file";
    }
    return unbelievable(track);
}

} // namespace

int main(int count, char** values) {
    if (count < 3) {
        std::fputs("usage: hostile_bytes PARSE FOLDER [RUNS [SEED]]\n", stderr);
        return 2;
    }
    const std::string parse = values[1];
    const fs::path folder = values[2];
    const int runs = count > 3 ? std::atoi(values[3]) : 20000;
    const unsigned long seed = count > 4 ? std::strtoul(values[4], nullptr, 10) : 1;
    struct sigaction interrupt {};
    interrupt.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &interrupt, nullptr);
    ::setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
    const fs::path trackFile = folder / "cache/velmorant-dvr-tools/VelmorantDVRtempFile/output.kml";
    const auto cases = allCases();
    Random random(seed);
    long most = 0;
    int refused = 0;
    for (int i = 0; i < runs; ++i) {
        Case damaged = cases[static_cast<std::size_t>(i) % cases.size()];
        const std::size_t times = 1 + below(random, 8);
        for (std::size_t t = 0; t < times; ++t) {
            damageOnce(damaged.beside.empty() ? damaged.recording : damaged.beside, random);
        }
        const fs::path place = folder / "card";
        fs::remove_all(place);
        fs::create_directories(place);
        write(place / damaged.name, damaged.recording);
        if (!damaged.besideName.empty()) {
            write(place / damaged.besideName, damaged.beside);
        }
        fs::remove(trackFile);
        const auto ended = run(parse, (place / damaged.name).string());
        if (!ended) {
            std::fprintf(stderr, "hostile_bytes: %s cannot be started\n", parse.c_str());
            return 2;
        }
        const std::string wrong = judged(*ended, trackFile);
        if (!wrong.empty()) {
            std::printf("run %d of seed %lu (%s): %s\n", i, seed, (place / damaged.name).c_str(),
                        wrong.c_str());
            return 1;
        }
        most = std::max(most, ended->kibibytes);
        refused += WEXITSTATUS(ended->status);
    }
    std::printf("%d damaged recordings of %zu kinds: %d refused with a reason, none crashed or "
                "trusted what cannot be, %ld KiB at most\n",
                runs, cases.size(), refused, most);
    return 0;
}

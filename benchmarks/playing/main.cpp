// What the whole program costs while it plays a recording of 1280 x 720 at 30 pictures a second,
// with list, chart and a moving car on the map, beside libmpv alone in the same drawing mode.
// Needs a display. Three rounds of both, one after the other; a line a round and a mean.
#include "app/PosixHostPaths.h"
#include "benchmarks/BareLibmpv.h"
#include "desktop/map/prepareWebEngine.h"
#include "desktop/system/returnFreedMemory.h"
#include "desktop/widgets/Theme.h"
#include "tools/driving/ProgramDriver.h"

#include <QApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

using namespace velmorant;
namespace fs = std::filesystem;

namespace {

constexpr double seconds = 8;
constexpr int rounds = 3;
constexpr int limit = 60000;
/// A message box, which nobody answers here, would hold a step for ever.
constexpr int wholeLimit = 160000;

struct Process {
    int parent = 0;
    double processorSeconds = 0;
};

std::map<int, Process> processes() {
    std::map<int, Process> all;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::string line;
        if (!std::getline(std::ifstream(entry.path() / "stat"), line))
            continue;
        std::istringstream fields(line.substr(line.rfind(')') + 2));
        std::string skipped;
        Process process;
        double user = 0;
        double system = 0;
        fields >> skipped >> process.parent;
        for (int i = 0; i < 9; ++i)
            fields >> skipped;
        fields >> user >> system;
        process.processorSeconds = (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
        all[std::atoi(entry.path().filename().c_str())] = process;
    }
    return all;
}

/// Of this process and of all below it, with the browser control's.
double treeProcessorSeconds() {
    const std::map<int, Process> all = processes();
    std::set<int> ours = {getpid()};
    // Children are found behind their parents after as many passes as the tree is deep.
    for (std::size_t known = 0; known != ours.size();) {
        known = ours.size();
        for (const auto& [id, process] : all)
            if (ours.count(process.parent) != 0)
                ours.insert(id);
    }
    double sum = 0;
    for (const int id : ours)
        if (const auto found = all.find(id); found != all.end())
            sum += found->second.processorSeconds;
    return sum;
}

void need(bool holds, const char* what) {
    if (!holds)
        throw std::runtime_error(what);
}

std::string makeRecording(const std::string& folder) {
    const std::string command =
        std::string("'") + VELMORANT_MAKE_CARD + "' '" + folder +
        "' --recordings 1 --seconds 60 --size 1280x720 --rate 30 >/dev/null";
    need(std::system(command.c_str()) == 0, "the recording cannot be made");
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".MP4")
            return entry.path().string();
    throw std::runtime_error("the recording is missing");
}

/// In a process of its own, so that nothing of the program is counted.
double bareShare(const std::string& recording, const QSize& size) {
    QProcess bare;
    bare.start(QCoreApplication::applicationFilePath(),
               {"--bare", QString::fromStdString(recording), QString::number(size.width()),
                QString::number(size.height())});
    need(bare.waitForFinished(limit) && bare.exitCode() == 0, "libmpv alone does not play");
    return bare.readAllStandardOutput().toDouble();
}

/// An environment that knows a home and nothing else.
EnvironmentLookup homeOf(const std::string& home) {
    return [home](const std::string& name) {
        return name == "HOME" ? std::optional<std::string>(home) : std::nullopt;
    };
}

class PlayingProgram {
  public:
    PlayingProgram(const std::string& home, const std::string& recording)
        : m_program(homeOf(home), VELMORANT_PROGRAM) {
        need(m_program.start("") == StartUpResult::Running, "the program does not start");
        m_driver = std::make_unique<ProgramDriver>(m_program);
        until([this] { return m_driver->windowShown(); }, "no window");
        m_program.rooms().list->AddPaths({recording});
        m_driver->clickList("all");
        until([this] { return !m_driver->extracting() && m_driver->extractedRows() == 1; },
              "no route");
    }

    double share() {
        m_driver->doubleClickRow(1);
        until([this] { return m_driver->position() > 2 && m_driver->map().carIndex() > 0; },
              "the recording does not play");
        const double before = treeProcessorSeconds();
        QTest::qWait(static_cast<int>(seconds * 1000));
        const double spent = treeProcessorSeconds() - before;
        need(m_driver->playing(1), "the recording ended too early");
        m_driver->clickControl("stop");
        return spent / seconds;
    }

    QSize pictureSize() { return m_program.panes().picture.widget->size(); }

  private:
    static void until(const std::function<bool()>& condition, const char* what) {
        need(ProgramDriver::waitUntil(condition, limit), what);
    }

    Application m_program;
    std::unique_ptr<ProgramDriver> m_driver;
};

void measure() {
    const QTemporaryDir folder;
    const std::string home = folder.path().toStdString();
    // The extractor and the toolkit look there by themselves.
    qputenv("HOME", home.c_str());
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qunsetenv(variable);
    const fs::path configuration =
        PosixHostPaths(homeOf(home), VELMORANT_PROGRAM).globalConfigurationFile();
    fs::create_directories(configuration.parent_path());
    std::ofstream(configuration) << "[config]\nmainv=1001\nArea=2021\nUnit=1001\n";
    const std::string recording = makeRecording(home + "/card");
    PlayingProgram program(home, recording);
    double bareSum = 0;
    double programSum = 0;
    for (int round = 1; round <= rounds; ++round) {
        const double bare = bareShare(recording, program.pictureSize());
        const double whole = program.share();
        std::printf("round %d: libmpv alone %.1f %%, whole program %.1f %% of a core, ratio %.2f\n",
                    round, bare * 100, whole * 100, whole / bare);
        bareSum += bare;
        programSum += whole;
    }
    std::printf("ratio %.2f\n", programSum / bareSum);
}

} // namespace

int main(int count, char** arguments) {
    std::setlocale(LC_NUMERIC, "C");
    if (count == 5 && std::string(arguments[1]) == "--bare") {
        std::printf("%.4f\n", bareProcessorShare(arguments[2], std::atoi(arguments[3]),
                                                 std::atoi(arguments[4]), seconds));
        return 0;
    }
    returnFreedMemory();
    prepareWebEngine();
    QApplication application(count, arguments);
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setQuitOnLastWindowClosed(false);
    applyTheme(application);
    QTimer::singleShot(wholeLimit, [] {
        std::fprintf(stderr, "playing_benchmark: no end within its limit\n");
        std::_Exit(1);
    });
    try {
        measure();
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "playing_benchmark: %s\n", failure.what());
        return 1;
    }
    return 0;
}

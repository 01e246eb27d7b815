#include "extractor/command/DvrTrackCommand.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <functional>
#include <thread>

#include "extractor/command/CardCheck.h"
#include "extractor/command/DvrTrackOptions.h"
#include "extractor/command/Explanation.h"
#include "extractor/command/OrderedReading.h"
#include "extractor/command/RecordingList.h"
#include "extractor/command/TripWriter.h"
#include "telemetry/CameraNames.h"
#include "telemetry/Extract.h"

namespace velmorant::telemetry {

namespace {

namespace fs = std::filesystem;

enum ExitCode { done = 0, unusable = 1, wrongUse = 2, noAccess = 3 };

class Progress {
  public:
    Progress(std::ostream& errors, bool shown, std::size_t total)
        : errors_(errors),
          shown_(shown && total > 1),
          searchShown_(shown && total == 1),
          total_(total) {}
    void done(std::size_t count) {
        if (!shown_) {
            return;
        }
        const std::size_t width = 40;
        const std::size_t filled = count * width / total_;
        errors_ << "\r[" << std::string(filled, '#') << std::string(width - filled, ' ') << "] "
                << count << '/' << total_ << std::flush;
    }
    // While one recording is searched from end to end.
    void scanned(std::uint64_t bytes, std::uint64_t all) {
        if (searchShown_ && all > 0) {
            errors_ << "\rsearching " << bytes * 100 / all << " %   " << std::flush;
            cleared_ = false;
        }
    }
    void clear() {
        if (shown_ || !cleared_) {
            cleared_ = true;
            errors_ << '\r' << std::string(70, ' ') << '\r' << std::flush;
        }
    }

  private:
    std::ostream& errors_;
    bool shown_;       // of several recordings
    bool searchShown_; // of a single one
    bool cleared_ = true;
    std::size_t total_;
};

int codeOf(const Result<Telemetry>& outcome) {
    if (!outcome) {
        return outcome.error().kind == ErrorKind::unreadable ? noAccess : unusable;
    }
    return outcome.value().family == "none" ? unusable : done;
}

unsigned jobsOf(const DvrTrackOptions& options) {
    return options.jobs > 0 ? static_cast<unsigned>(options.jobs)
                            : std::max(1U, std::thread::hardware_concurrency());
}

// What a run over many recordings shares.
struct Run {
    const DvrTrackOptions& options;
    const std::vector<std::string>& recordings;
    std::ostream& out;
    std::ostream& errors;
    UnfinishedFiles& unfinished;
    Progress& progress;
    std::atomic<bool> over = false; // ends what is still being read
};

// Reads one recording; only a single one reports how far its search is, since several are read at
// once.
Result<Telemetry> readOne(const std::string& path, Run& run) {
    ReadOptions options;
    options.shouldStop = [&run] { return run.over.load(); };
    options.progress = [&run](std::uint64_t done, std::uint64_t total) {
        run.progress.scanned(done, total);
    };
    return extractFile(path, options);
}

void reportProblems(Run& run, const std::string& path, const Result<Telemetry>& outcome) {
    const TableRow row = rowOf(path, outcome);
    const bool without = outcome && codeOf(outcome) != done;
    if (without || !row.problems.empty()) {
        run.progress.clear();
    }
    for (const std::string& problem : row.problems) {
        run.errors << "dvr-track: " << problem << '\n';
    }
    if (without) {
        run.errors << "dvr-track: " << path << ": holds no telemetry\n";
    }
}

int exportAll(Run& run) {
    TripWriter trips(run.options, run.unfinished, run.out);
    int code = done;
    std::optional<std::string> problem;
    readInOrder(
        run.recordings, jobsOf(run.options),
        [&](const std::string& path) { return readOne(path, run); },
        [&](std::size_t index, const Result<Telemetry>& outcome) {
            const std::string& path = run.recordings[index];
            code = std::max(code, codeOf(outcome));
            reportProblems(run, path, outcome);
            if (outcome && outcome.value().family != "none") {
                problem = trips.recording(path, outcome.value());
            }
            run.progress.done(index + 1);
            run.over = problem.has_value();
            return problem ? Reading::ends : Reading::goesOn;
        });
    run.progress.clear();
    if (!problem) {
        problem = trips.finish();
    }
    if (problem) {
        run.errors << "dvr-track: " << *problem << '\n';
        return noAccess;
    }
    return code;
}

int outputFailed(Run& run, const std::string& problem) {
    run.errors << "dvr-track: " << (run.options.output.empty() ? "the output" : run.options.output)
               << ": cannot be written: " << problem << '\n';
    return noAccess;
}

// Reads all and has each written as it comes; `write` returns the exit code of its recording.
int writeEach(Run& run, OutputFile& output,
              const std::function<int(const std::string& path, const Result<Telemetry>&)>& write) {
    int code = done;
    readInOrder(
        run.recordings, jobsOf(run.options),
        [&](const std::string& path) { return readOne(path, run); },
        [&](std::size_t index, const Result<Telemetry>& outcome) {
            run.progress.clear();
            code = std::max(code, write(run.recordings[index], outcome));
            run.progress.done(index + 1);
            run.over = !output.good();
            return run.over ? Reading::ends : Reading::goesOn;
        });
    run.progress.clear();
    return code;
}

int listAll(Run& run) {
    OutputFile output(run.unfinished, run.out);
    if (const auto problem = output.open(run.options.output)) {
        return outputFailed(run, *problem);
    }
    RecordingTable table(run.options.json ? RecordingTable::Style::json
                                          : RecordingTable::Style::text,
                         output.stream());
    table.begin();
    const int code =
        writeEach(run, output, [&](const std::string& path, const Result<Telemetry>& outcome) {
            table.add(rowOf(path, outcome));
            return codeOf(outcome);
        });
    table.end();
    const auto problem = output.close();
    return problem ? outputFailed(run, *problem) : code;
}

int checkAll(Run& run) {
    OutputFile output(run.unfinished, run.out);
    if (const auto problem = output.open(run.options.output)) {
        return outputFailed(run, *problem);
    }
    writeCheckHeading(output.stream());
    const int code =
        writeEach(run, output, [&](const std::string& path, const Result<Telemetry>& outcome) {
            writeCheck(path, outcome, output.stream());
            const Health health = check(outcome).health;
            return health == Health::good ? done : health == Health::wanting ? unusable : noAccess;
        });
    const auto problem = output.close();
    return problem ? outputFailed(run, *problem) : code;
}

int explainAll(Run& run) {
    OutputFile output(run.unfinished, run.out);
    if (const auto problem = output.open(run.options.output)) {
        return outputFailed(run, *problem);
    }
    std::ostream& out = output.stream();
    int code = done;
    const char* between = run.options.json ? "[\n" : "";
    for (std::size_t i = 0; i < run.recordings.size() && output.good(); ++i) {
        const Explanation explanation = explain(run.recordings[i]);
        code = std::max(code, codeOf(explanation.outcome));
        out << between;
        between = run.options.json ? ",\n" : "\n";
        if (run.options.json) {
            writeExplanationAsJson(explanation, out);
        } else {
            writeExplanation(explanation, out);
        }
    }
    out << (run.options.json ? "\n]\n" : "");
    const auto problem = output.close();
    return problem ? outputFailed(run, *problem) : code;
}

int carryOut(Run& run) {
    switch (run.options.task) {
    case DvrTrackOptions::Task::explain:
        return explainAll(run);
    case DvrTrackOptions::Task::check:
        return checkAll(run);
    case DvrTrackOptions::Task::track:
        break;
    }
    return run.options.format ? exportAll(run) : listAll(run);
}

// What is wrong with the wanted output before anything is read.
std::optional<std::string> outputProblem(const DvrTrackOptions& options) {
    std::error_code error;
    if (!options.format && fs::is_directory(options.output, error)) {
        return options.output + ": is a folder; the list goes into a file";
    }
    if (const auto refused = outputRefused(options.output)) {
        return options.output + ": " + *refused + " and is not written over";
    }
    return std::nullopt;
}

// The recordings of one camera follow one another only when those of the other do not stand
// between them.
void orderByCamera(std::vector<std::string>& recordings) {
    std::stable_partition(recordings.begin(), recordings.end(),
                          [](const std::string& path) { return cameraOf(path) != Camera::rear; });
}

} // namespace

int runDvrTrack(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& errors,
                Terminal terminal, UnfinishedFiles& unfinished) {
    const DvrTrackRequest request = readDvrTrackOptions(arguments);
    if (const auto* wrong = std::get_if<WrongUse>(&request)) {
        errors << "dvr-track: " << wrong->reason << "\nTry dvr-track --help.\n";
        return wrongUse;
    }
    if (std::holds_alternative<HelpWanted>(request)) {
        out << dvrTrackHelp;
        return done;
    }
    if (std::holds_alternative<VersionWanted>(request)) {
        out << "dvr-track " << VELMORANT_VERSION << '\n';
        return done;
    }
    const auto& options = std::get<DvrTrackOptions>(request);
    if (const auto problem = outputProblem(options)) {
        errors << "dvr-track: " << *problem << '\n';
        return wrongUse;
    }
    std::vector<std::string> problems;
    auto recordings = recordingsNamed(options.paths, options.recursion, problems);
    for (const std::string& problem : problems) {
        errors << "dvr-track: " << problem << '\n';
    }
    int code = problems.empty() ? done : noAccess;
    if (recordings.empty()) {
        errors << "dvr-track: no recordings found\n";
        return std::max<int>(code, unusable);
    }
    if (options.joinWithin) {
        orderByCamera(recordings);
    }
    Progress progress(errors,
                      terminal == Terminal::yes && options.progress == ProgressBar::whenTerminal,
                      recordings.size());
    Run run{.options = options,
            .recordings = recordings,
            .out = out,
            .errors = errors,
            .unfinished = unfinished,
            .progress = progress};
    return std::max(code, carryOut(run));
}

} // namespace velmorant::telemetry

#include "extractor/command/DvrTrackCommand.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <thread>

#include "extractor/command/DvrTrackOptions.h"
#include "extractor/command/OrderedReading.h"
#include "extractor/command/RecordingList.h"
#include "telemetry/Extract.h"

namespace velmorant::telemetry {

namespace {

namespace fs = std::filesystem;

enum ExitCode { done = 0, unusable = 1, wrongUse = 2, noAccess = 3 };

std::string fileName(const std::string& path) {
    return path.substr(path.find_last_of("/\\") + 1);
}

// Where the exports go: one stream for all, or a file per trip in a folder. Files are written
// beside and renamed, so that a run that breaks off leaves no half ones under the wanted names.
class Destination {
  public:
    Destination(const DvrTrackOptions& options, std::ostream& standard)
        : options_(options),
          standard_(standard),
          perTrip_(!options.output.empty() && fs::is_directory(options.output)) {}

    bool perTrip() const { return perTrip_; }

    std::ostream* open(const std::string& trip) {
        if (options_.output.empty()) {
            return &standard_;
        }
        path_ = perTrip_ ? freeName(trip) : options_.output;
        file_.open(path_ + ".part", std::ios::binary | std::ios::trunc);
        return file_ ? &file_ : nullptr;
    }
    // False when the file could not be written.
    bool close() {
        if (options_.output.empty()) {
            return static_cast<bool>(standard_.flush());
        }
        file_.close();
        std::error_code error;
        if (file_) {
            fs::rename(path_ + ".part", path_, error);
        }
        const bool good = file_ && !error;
        file_.clear();
        return good;
    }
    const std::string& path() const { return path_; }

  private:
    // Recordings of the same name in several folders get their folder's name in front.
    std::string freeName(const std::string& trip) {
        const fs::path source(trip);
        std::string stem = source.stem().string();
        if (used_.contains(stem)) {
            stem = source.parent_path().filename().string() + "_" + stem;
        }
        std::string name = stem;
        for (int i = 2; used_.contains(name); ++i) {
            name = stem + "_" + std::to_string(i);
        }
        used_.insert(name);
        return (fs::path(options_.output) / (name + extensionOf(*options_.format))).string();
    }

    const DvrTrackOptions& options_;
    std::ostream& standard_;
    bool perTrip_;
    std::ofstream file_;
    std::string path_;
    std::set<std::string> used_;
};

// Joins recordings that follow one another and passes them on.
class TripWriter {
  public:
    TripWriter(const DvrTrackOptions& options, std::ostream& standard)
        : options_(options), destination_(options, standard) {}

    bool recording(const std::string& path, const Telemetry& telemetry) {
        const bool follows = inTrip_ && options_.joinWithin && telemetry.base == base_ &&
                             telemetry.samples.front().time >= end_ - 2 &&
                             telemetry.samples.front().time <= end_ + *options_.joinWithin;
        if (!follows && !(endTrip() && beginTrip(path))) {
            return false;
        }
        exporter_->recording(path, telemetry);
        base_ = telemetry.base;
        end_ = telemetry.samples.back().time + 1;
        return true;
    }

    bool finish() {
        if (!exporter_ && !destination_.perTrip() && !openExporter({})) {
            return false;
        }
        return endTrip() && closeExporter();
    }
    const std::string& path() const { return destination_.path(); }

  private:
    bool openExporter(const std::string& trip) {
        std::ostream* out = destination_.open(trip);
        if (out == nullptr) {
            return false;
        }
        exporter_ = makeExporter(*options_.format, options_.positions, *out);
        exporter_->begin();
        return true;
    }
    bool closeExporter() {
        if (!exporter_) {
            return true;
        }
        exporter_->end();
        exporter_.reset();
        return destination_.close();
    }
    bool beginTrip(const std::string& path) {
        if (!exporter_ && !openExporter(path)) {
            return false;
        }
        exporter_->beginTrip(fileName(path));
        inTrip_ = true;
        return true;
    }
    bool endTrip() {
        if (inTrip_) {
            inTrip_ = false;
            exporter_->endTrip();
            return !destination_.perTrip() || closeExporter();
        }
        return true;
    }

    const DvrTrackOptions& options_;
    Destination destination_;
    std::unique_ptr<TrackExporter> exporter_;
    bool inTrip_ = false;
    std::int64_t end_ = 0;
    TimeBase base_ = TimeBase::none;
};

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

// Reads one recording; only a single one reports how far its search is, since several are read at
// once.
Result<Telemetry> readOne(const std::string& path, Progress& progress) {
    ReadOptions options;
    options.progress = [&progress](std::uint64_t done, std::uint64_t total) {
        progress.scanned(done, total);
    };
    return extractFile(path, options);
}

int exportAll(const DvrTrackOptions& options, const std::vector<std::string>& recordings,
              std::ostream& out, std::ostream& errors, Progress& progress) {
    TripWriter trips(options, out);
    int code = done;
    bool writable = true;
    readInOrder(
        recordings, jobsOf(options),
        [&](const std::string& path) { return readOne(path, progress); },
        [&](std::size_t index, const Result<Telemetry>& outcome) {
            const int own = codeOf(outcome);
            code = std::max(code, own);
            const TableRow row = rowOf(recordings[index], outcome);
            if (own != done || !row.problems.empty()) {
                progress.clear();
            }
            for (const std::string& problem : row.problems) {
                errors << "dvr-track: " << problem << '\n';
            }
            if (outcome && own != done) {
                errors << "dvr-track: " << recordings[index] << ": holds no telemetry\n";
            }
            if (writable && outcome && outcome.value().family != "none") {
                writable = trips.recording(recordings[index], outcome.value());
            }
            progress.done(index + 1);
        });
    progress.clear();
    if (!writable || !trips.finish()) {
        errors << "dvr-track: " << (trips.path().empty() ? "the output" : trips.path())
               << ": cannot be written\n";
        return noAccess;
    }
    return code;
}

int listAll(const DvrTrackOptions& options, const std::vector<std::string>& recordings,
            std::ostream& out, Progress& progress) {
    std::ofstream file;
    if (!options.output.empty()) {
        file.open(options.output, std::ios::binary | std::ios::trunc);
    }
    std::ostream& target = options.output.empty() ? out : file;
    RecordingTable table(options.json ? RecordingTable::Style::json : RecordingTable::Style::text,
                         target);
    int code = done;
    table.begin();
    readInOrder(
        recordings, jobsOf(options),
        [&](const std::string& path) { return readOne(path, progress); },
        [&](std::size_t index, const Result<Telemetry>& outcome) {
            code = std::max(code, codeOf(outcome));
            progress.clear();
            table.add(rowOf(recordings[index], outcome));
            progress.done(index + 1);
        });
    progress.clear();
    table.end();
    return target.flush() ? code : noAccess;
}

} // namespace

int runDvrTrack(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& errors,
                Terminal terminal) {
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
    std::vector<std::string> problems;
    const auto recordings = recordingsNamed(options.paths, options.recursion, problems);
    for (const std::string& problem : problems) {
        errors << "dvr-track: " << problem << '\n';
    }
    int code = problems.empty() ? done : noAccess;
    if (recordings.empty()) {
        errors << "dvr-track: no recordings found\n";
        return std::max<int>(code, unusable);
    }
    Progress progress(errors,
                      terminal == Terminal::yes && options.progress == ProgressBar::whenTerminal,
                      recordings.size());
    const int own = options.format ? exportAll(options, recordings, out, errors, progress)
                                   : listAll(options, recordings, out, progress);
    return std::max(code, own);
}

} // namespace velmorant::telemetry

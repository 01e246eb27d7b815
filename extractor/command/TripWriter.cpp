#include "extractor/command/TripWriter.h"

#include <filesystem>

namespace velmorant::telemetry {

namespace {

namespace fs = std::filesystem;

std::string fileName(const std::string& path) {
    return path.substr(path.find_last_of("/\\") + 1);
}

bool isFolder(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

} // namespace

TripWriter::TripWriter(const DvrTrackOptions& options, UnfinishedFiles& unfinished,
                       std::ostream& standard)
    : options_(options), output_(unfinished, standard), perTrip_(isFolder(options.output)) {}

std::optional<std::string> TripWriter::recording(const std::string& path,
                                                 const Telemetry& telemetry) {
    if (!follows(path, telemetry)) {
        auto problem = endTrip();
        if (!problem) {
            problem = beginTrip(path);
        }
        if (problem) {
            return problem;
        }
    }
    exporter_->recording(path, telemetry);
    base_ = telemetry.base;
    camera_ = cameraOf(path);
    end_ = telemetry.samples.back().time + 1;
    if (output_.good()) {
        return std::nullopt;
    }
    exporter_.reset();
    const auto problem = output_.close();
    return failure(problem ? *problem : "unknown reason");
}

std::optional<std::string> TripWriter::finish() {
    std::optional<std::string> problem;
    if (!exporter_ && !perTrip_) {
        problem = openExporter({});
    }
    if (!problem) {
        problem = endTrip();
    }
    return problem ? problem : closeExporter();
}

bool TripWriter::follows(const std::string& path, const Telemetry& telemetry) const {
    constexpr std::int64_t overlap = 2; // seconds that recorders write into both
    return inTrip_ && options_.joinWithin && telemetry.base == base_ && cameraOf(path) == camera_ &&
           telemetry.samples.front().time >= end_ - overlap &&
           telemetry.samples.front().time <= end_ + *options_.joinWithin;
}

std::optional<std::string> TripWriter::openExporter(const std::string& trip) {
    path_ = perTrip_ ? freeName(trip) : options_.output;
    if (const auto problem = output_.open(path_)) {
        return failure(*problem);
    }
    exporter_ = makeExporter(*options_.format, options_.positions, output_.stream());
    exporter_->begin();
    return std::nullopt;
}

std::optional<std::string> TripWriter::closeExporter() {
    if (!exporter_) {
        return std::nullopt;
    }
    exporter_->end();
    exporter_.reset();
    const auto problem = output_.close();
    return problem ? std::optional(failure(*problem)) : std::nullopt;
}

std::optional<std::string> TripWriter::beginTrip(const std::string& path) {
    if (!exporter_) {
        if (auto problem = openExporter(path)) {
            return problem;
        }
    }
    exporter_->beginTrip(fileName(path));
    inTrip_ = true;
    return std::nullopt;
}

std::optional<std::string> TripWriter::endTrip() {
    if (!inTrip_) {
        return std::nullopt;
    }
    inTrip_ = false;
    exporter_->endTrip();
    return perTrip_ ? closeExporter() : std::nullopt;
}

// Recordings of the same name in several folders get their folder's name in front.
std::string TripWriter::freeName(const std::string& trip) {
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

std::string TripWriter::failure(const std::string& reason) const {
    return (path_.empty() || path_ == "-" ? "the output" : path_) +
           ": cannot be written: " + reason;
}

} // namespace velmorant::telemetry

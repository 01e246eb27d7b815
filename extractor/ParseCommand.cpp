#include "extractor/ParseCommand.h"

#include <chrono>
#include <filesystem>

#include "extractor/PrivateFiles.h"
#include "extractor/TrackFileWriter.h"
#include "telemetry/Extract.h"

namespace velmorant::telemetry {

namespace {

enum ExitCode { done = 0, unusable = 1, wrongUse = 2, noAccess = 3 };

// Leaves the rest of the 20 seconds for placing and writing the samples.
constexpr std::chrono::seconds timeToRead{18};

std::string joined(const std::vector<std::string>& arguments) {
    std::string path;
    for (const std::string& argument : arguments) {
        path += (path.empty() ? "" : " ") + argument;
    }
    return path;
}

void report(std::string& errors, const std::string& what) {
    errors += "Parse: " + what + '\n';
}

// With the code in front, by which the player finds words of its own.
void report(std::string& errors, const Error& error) {
    report(errors, "[" + std::string(name(error.code)) + "] " + describe(error));
}

std::string absolute(const std::string& path) {
    std::error_code error;
    const auto whole = std::filesystem::absolute(path, error);
    return error ? path : whole.string();
}

} // namespace

int runParse(const std::vector<std::string>& arguments, const EnvironmentLookup& environment,
             std::string& errors) {
    const std::string path = joined(arguments);
    if (path.empty()) {
        errors += "usage: Parse RECORDING\n";
        return wrongUse;
    }
    const std::string folder = workingFolder(environment);
    if (const auto problem = makePrivateFolder(folder)) {
        report(errors, notWritten(folder, problem));
        return noAccess;
    }
    const auto deadline = std::chrono::steady_clock::now() + timeToRead;
    ReadOptions options;
    options.shouldStop = [deadline] { return std::chrono::steady_clock::now() >= deadline; };
    const Result<Telemetry> outcome = extractFile(path, options);
    if (!outcome) {
        report(errors, outcome.error());
    } else {
        for (const Error& notice : outcome.value().notices) {
            report(errors, "note: " + describe(notice));
        }
    }
    const auto problem = writeTrackFile(folder + "/output.kml", absolute(path), outcome);
    if (problem) {
        report(errors, *problem);
        return noAccess;
    }
    if (!outcome) {
        return outcome.error().kind == ErrorKind::unreadable ? noAccess : unusable;
    }
    return done;
}

} // namespace velmorant::telemetry

// Where the command writes: a file, a pipe or device, or the standard output.
//
// A file is written beside its name, synced and renamed over it, so that a run that breaks off
// leaves what was there; links are followed to the file behind them, and its rights are kept. Pipes
// and character devices are written through. Recordings, files that hold a recording's track, and
// whole disks are never written over.
#pragma once

#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "extractor/command/UnfinishedFiles.h"

namespace velmorant::telemetry {

// Why nothing may be written to `path`: "is a recording" ...; nothing where it may be tried.
std::optional<std::string> outputRefused(const std::string& path);

class OutputFile {
  public:
    OutputFile(UnfinishedFiles& unfinished, std::ostream& standard);
    ~OutputFile(); // what was not closed is discarded
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // An empty path and "-" are the standard output. Returns what went wrong.
    [[nodiscard]] std::optional<std::string> open(const std::string& path);
    // Good between a successful open and close.
    std::ostream& stream();
    // False as soon as something could not be written.
    bool good();
    [[nodiscard]] std::optional<std::string> close();

  private:
    class Buffer;

    std::optional<std::string> openBeside(const std::string& target);

    UnfinishedFiles& unfinished_;
    std::ostream& standard_;
    std::unique_ptr<Buffer> buffer_;
    std::unique_ptr<std::ostream> stream_;
    std::string target_; // of the renaming; empty where nothing is renamed
    std::string beside_;
};

} // namespace velmorant::telemetry

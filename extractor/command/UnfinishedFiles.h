// The files that are being written and have not got their names yet. A run that is broken off
// removes them.
#pragma once

#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace velmorant::telemetry {

class UnfinishedFiles {
  public:
    // A new file beside `path`, open for writing, and its name. -1 with errno set where none can be
    // made.
    struct Begun {
        int descriptor = -1;
        std::string name;
    };
    [[nodiscard]] Begun begin(const std::string& path);
    // Gives the file its name; what stood there is replaced. Returns what went wrong, and then
    // nothing is left.
    [[nodiscard]] std::optional<std::string> finish(const std::string& name,
                                                    const std::string& path);
    void discard(const std::string& name);

    // Removes them all; while the lock lives, none can be begun or finished.
    [[nodiscard]] std::unique_lock<std::mutex> discardAll();

  private:
    std::mutex mutex_;
    std::set<std::string> names_;
};

} // namespace velmorant::telemetry

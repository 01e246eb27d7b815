// A folder and a file that hold where somebody drove: nobody else may read them.
#pragma once

#include <string>
#include <system_error>

namespace velmorant::telemetry {

// Makes the folder with those above it and takes the rights of all but its owner away. Returns what
// went wrong.
[[nodiscard]] std::error_code makePrivateFolder(const std::string& folder);

// Removes the files that runs which never ended have left beside `path`; those of runs that are
// still at work stay.
void removeLeftOvers(const std::string& path);

// A new file beside `path` for its owner alone, which holds a lock for as long as it is open, so
// that removeLeftOvers passes it over. Its descriptor, or -1 with errno set.
struct BesideFile {
    int descriptor = -1;
    std::string name;
};
[[nodiscard]] BesideFile openBeside(const std::string& path);

} // namespace velmorant::telemetry

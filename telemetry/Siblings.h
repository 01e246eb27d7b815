// Files beside a recording that may hold its telemetry.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "telemetry/ByteSource.h"

namespace velmorant::telemetry {

class Siblings {
  public:
    virtual ~Siblings() = default;
    // The file of the recording's name with another extension (".gps"), whatever its case; none
    // where there is no such file.
    virtual std::unique_ptr<ByteSource> withExtension(const std::string& extension) = 0;
    // Text files named GPSData*.txt in the recording's folder and up to two folders above it.
    virtual std::vector<std::unique_ptr<ByteSource>> cardTables() = 0;
    // The files in the recording's folder that have the extension, sorted by name.
    virtual std::vector<std::unique_ptr<ByteSource>> inFolder(const std::string& extension) = 0;
    // Paths of the recordings that the front camera made of the same moment, as their names say.
    virtual std::vector<std::string> frontRecordings() = 0;
};

// Whether a file of this name is one that a recorder keeps a track in.
bool isTrackFileName(const std::string& path);

// Looks in the file system.
std::unique_ptr<Siblings> siblingsOf(const std::string& recording);

} // namespace velmorant::telemetry

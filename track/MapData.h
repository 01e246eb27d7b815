#pragma once

#include "ports/HostPaths.h"
#include "recordings/ProgramState.h"
#include "recordings/RecordingList.h"

#include <optional>
#include <string>

namespace velmorant {

/// How the page credits the street tiles that the program fetches for it.
struct TileCredit {
    std::string attribution; ///< plain text
    std::string link;        ///< may be empty
    int maximumZoom = 19;    ///< 1..22
};

/// What the map page asks of the program beyond the script calls, as JSON texts. The shapes stand
/// in resources/map/README.md.
class MapData {
  public:
    /// The page keeps its present language, as every window does once it is built. Keeps the
    /// references.
    MapData(const ProgramState& state, const RecordingList& list, const HostPaths& paths);
    /// Absent: no provider, and nothing leaves the machine.
    void setTiles(std::optional<TileCredit> tiles) { m_tiles = std::move(tiles); }
    void setWholeWindow(bool whole) { m_wholeWindow = whole; }
    /// "track/NUMBER.json"; absent for a number without a loaded track.
    std::optional<std::string> track(long number) const;
    std::string configuration() const; ///< "config.json"

  private:
    const ProgramState& m_state;
    const RecordingList& m_list;
    const HostPaths& m_paths;
    std::string m_language;
    std::optional<TileCredit> m_tiles;
    bool m_wholeWindow = false;
};

} // namespace velmorant

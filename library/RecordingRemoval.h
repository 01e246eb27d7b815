#pragma once

#include "library/PlayQueue.h"
#include "library/RecordingListMap.h"
#include "recordings/ProgramState.h"
#include "recordings/RecordingList.h"

#include <cstdint>
#include <functional>
#include <string>

namespace velmorant {

/// "clearHistroy('007')": the page's script that removes the drawn track of a recording.
std::string clearTrackScript(std::int32_t serial);

/// Removes rows from the list so that everything that names a row goes on meaning the same
/// recording: the playing index, the selection, each track's lSerial and a pending request of the
/// play queue. A removed recording's track leaves the table and, when it is drawn, the map.
class RecordingRemoval {
  public:
    RecordingRemoval(RecordingList& list, ProgramState& state, PlayQueue& queue,
                     RecordingListMap& map);

    /// Returns the number of rows removed.
    int removeIf(const std::function<bool(const RecordingEntry&)>& condition);

    /// Empties the list and with it the table of loaded tracks, the current track, the playing
    /// index and a pending request.
    void removeAll();

  private:
    void forget(const RecordingEntry& entry);
    void renumber(const std::function<int(int)>& newIndex);

    RecordingList& m_list;
    ProgramState& m_state;
    PlayQueue& m_queue;
    RecordingListMap& m_map;
};

} // namespace velmorant

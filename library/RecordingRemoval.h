#pragma once

#include "library/PlayQueue.h"
#include "ports/MapPage.h"
#include "recordings/ProgramState.h"
#include "recordings/RecordingList.h"

#include <functional>

namespace velmorant {

/// Removes rows from the list and keeps everything that refers to a row pointing at the same
/// recording: the playing index, the selection, each track's lSerial and a pending request of the
/// play queue. A removed recording's track leaves the table and, when it is drawn, the map.
class RecordingRemoval {
  public:
    RecordingRemoval(RecordingList& list, ProgramState& state, PlayQueue& queue, MapPage& page);

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
    MapPage& m_page;
};

} // namespace velmorant

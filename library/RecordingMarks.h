#pragma once

#include "library/TrackCommands.h"
#include "ports/MapPage.h"
#include "ports/MediaPlayer.h"
#include "ports/MessageBox.h"
#include "ports/Texts.h"
#include "recordings/ProgramState.h"
#include "recordings/RecordingList.h"
#include "recordings/recordingNames.h"

#include <functional>
#include <vector>

namespace velmorant {

struct RecordingMarksNeeds {
    RecordingList& list;
    ProgramState& state;
    const Texts& texts;
    MessageBox& messageBox;
    MapPage& page;
    const PlayerControls& player;
    TrackCommands tracks;
};

/// Marks and unmarks rows, and with them draws tracks on the map, has missing ones extracted and
/// removes drawn ones. Throws StepError where a step fails.
class RecordingMarks {
  public:
    explicit RecordingMarks(RecordingMarksNeeds needs);

    /// Refused, with a box, for the row that plays or is paused.
    void toggle(int index);
    void markAll();
    void markKind(RecordingKind kind); ///< and unmarks the rows of the other kind
    void unmarkAllButPlaying();        ///< the row of the current track stays

    /// Whether this is the playing row and the player is playing or paused.
    bool isOpenInPlayer(int index) const;

  private:
    enum class OtherRows { Stay, Unmark };

    void unmark(int index);
    [[nodiscard]] bool drawRows(const std::vector<int>& rows);
    void markRows(const std::function<bool(int)>& condition, OtherRows others);

    RecordingMarksNeeds m_needs;
};

} // namespace velmorant

#pragma once

#include "recordings/recordingNames.h"

#include <cstdint>
#include <string>

namespace velmorant {

/// A row's mark: the number of its icon. A marked row is wanted on the map and may be played.
enum class MarkState { NotMarked = 1, Marked = 2 };

/// Read also holds for a recording that turned out to have no track.
enum class TrackState { NotRead, Read };

/// Whether the row's track is drawn on the map.
enum class MapState { Hidden, Shown };

/// Missing: the file was not there when it was to be played, or its extraction timed out.
enum class FileState { Present, Missing };

/// One row of the recording list. Only RowView knows how its fields read as texts.
struct RecordingEntry {
    std::int32_t serial = 0; ///< from 1, unique in a run of the program; the route's number too
    RecordingKind kind = RecordingKind::Normal;
    MarkState mark = MarkState::NotMarked;
    TrackState track = TrackState::NotRead;
    MapState map = MapState::Hidden;
    FileState file = FileState::Present;
    std::string path; ///< of the recording file, as it was added
    /// As folder and file name tell it: date, two blanks, time; 20 characters unless a hand-over
    /// file brought another text.
    std::string dateAndTime;
    std::string shownKind; ///< the kind's label in the language in which the row was added
    std::string notice;    ///< why the recording could not be played or read; shown as its tool tip

    bool marked() const { return mark == MarkState::Marked; }
};

} // namespace velmorant

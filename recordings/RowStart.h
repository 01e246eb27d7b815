#pragma once

namespace velmorant {

/// The outcome of an attempt to play a row of the recording list.
enum class RowStart {
    Started,
    FileMissing, ///< the row is now unmarked and flagged
    NoTrack,     ///< its track was not extracted; nothing was changed, the status line says why
    NoSuchRow
};

} // namespace velmorant

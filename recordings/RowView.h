#pragma once

#include "ports/Screen.h"
#include "ports/Texts.h"
#include "recordings/RecordingList.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace velmorant {

/// The numbered text fields of a row.
enum class SubItem : std::size_t {
    Mark = 1,           ///< no text; the column of the mark icon
    DisplayText = 2,    ///< date, two blanks, time, in 20 characters; two blanks; kind label
    FullPath = 3,       ///< of the recording file
    TrackExtracted = 4, ///< "0": not yet, "1": yes
    SerialNumber = 5,   ///< decimal, unique in a run of the program
    ShownOnMap = 6,     ///< "1": the track is drawn on the map, "0": it is not
    KindLabel = 7,      ///< the text of the Normal or the Lock label
    FileMissing = 8     ///< "1": the file was found missing, or its extraction timed out
};

enum class RowWeight { Normal, Bold };

/// How rows look from outside: their numbered texts, colours and weights, and the names under
/// which others know a recording. Everywhere else rows are the typed ones.
class RowView {
  public:
    /// Keeps the references.
    RowView(const Texts& texts, const Screen& screen) : m_texts(texts), m_screen(screen) {}

    /// In the present language; the display text keeps the language in which the row was added.
    std::string text(const RecordingEntry& entry, SubItem item) const;
    static std::string displayText(const RecordingEntry& entry);
    /// The label depends on the screen's density: the list's column is padded for it. Empty for a
    /// density, or a language, without labels.
    std::string kindLabel(RecordingKind kind) const;

    /// Of the texts: red + 256 * green + 65536 * blue. The highlighted row is yellow and bold.
    static std::int32_t colour(const RecordingList& list, int index);
    static RowWeight weight(const RecordingList& list, int index);

    /// "7No": the key of a recording's track.
    static std::string trackKey(std::int32_t serial);
    /// "007": the recording's number as the map page writes it, in at least three digits.
    static std::string mapNumber(std::int32_t serial);

  private:
    const Texts& m_texts;
    const Screen& m_screen;
};

} // namespace velmorant

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace velmorant {

/// The numbered text fields of a row. Other rooms read and write them by these numbers.
enum class SubItem : std::size_t {
    Mark = 1,           ///< no text; the column of the mark icon
    DisplayText = 2,    ///< date, two blanks, time, in 20 characters; two blanks; kind label
    FullPath = 3,       ///< of the recording file
    TrackExtracted = 4, ///< "0": not yet; any other value: yes
    SerialNumber = 5,   ///< decimal, unique in a run of the program
    ShownOnMap = 6,     ///< "1": the track is drawn on the map, "0": it is not
    KindLabel = 7,      ///< the text of the Normal or the Lock label
    FileMissing = 8     ///< "1": the file was found missing, or its extraction timed out
};

/// A row's mark: the number of its icon. A marked row is wanted on the map and may be played.
enum class MarkState { NotMarked = 1, Marked = 2 };

enum class RowWeight { Normal, Bold };

/// One row of the recording list. Its main text (column 0) is always empty.
class RecordingEntry {
  public:
    const std::string& text(SubItem item) const {
        return m_subItems[static_cast<std::size_t>(item)];
    }
    void setText(SubItem item, std::string text) {
        m_subItems[static_cast<std::size_t>(item)] = std::move(text);
    }
    bool marked() const { return mark == MarkState::Marked; }

    MarkState mark = MarkState::NotMarked;
    std::int32_t colour = 16777215; ///< of the texts: red + 256 * green + 65536 * blue
    RowWeight weight = RowWeight::Normal;
    std::string notice; ///< why the recording could not be played; shown as the row's tool tip

  private:
    std::array<std::string, 9> m_subItems;
};

} // namespace velmorant

#pragma once

#include "library/RecordingEntry.h"
#include "ports/ListControl.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace velmorant {

/// The rows of the list `LstMP4`, the selected row and the list's tag, which is the playing index.
///
/// Row indexes are 1-based; 0 means none. An index outside the rows throws StepError. The control
/// is told of every change after it has happened, of a batch of changes by one range that covers
/// them.
class RecordingList {
  public:
    /// Keeps the reference.
    explicit RecordingList(ListControl& control);

    /// While one exists, changed rows are noted and reported when the last one ends.
    class Batch {
      public:
        explicit Batch(RecordingList& list);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

      private:
        RecordingList& m_list;
    };

    int count() const { return static_cast<int>(m_rows.size()); }
    int markedCount() const { return m_marked; }
    const RecordingEntry& row(int index) const;
    const std::string& text(int index, SubItem item) const { return row(index).text(item); }
    bool marked(int index) const { return row(index).marked(); }

    void setText(int index, SubItem item, const std::string& text);
    void setMark(int index, MarkState mark); ///< icon and check state together
    void setAppearance(int index, std::int32_t colour, RowWeight weight);
    void setNotice(int index, const std::string& notice);

    void append(std::vector<RecordingEntry> rows);
    /// The rows behind move up; selection and playing index keep meaning the same rows, or none
    /// when theirs was removed.
    void remove(int first, int removedCount);

    int selected() const { return m_selected; }
    void select(int index); ///< 0 selects none
    int playingIndex() const { return m_playing; }
    void setPlayingIndex(int index) { m_playing = index; } ///< 0: none

  private:
    RecordingEntry& at(int index);
    void changed(int index);

    ListControl& m_control;
    std::vector<std::unique_ptr<RecordingEntry>> m_rows; ///< by pointer: removing moves no texts
    int m_marked = 0;
    int m_selected = 0;
    int m_playing = 0;
    int m_batches = 0;
    int m_firstChanged = 0; ///< 0: none
    int m_lastChanged = 0;
};

} // namespace velmorant

#pragma once

#include "recordings/RecordingEntry.h"
#include "recordings/RecordingListListener.h"

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace velmorant {

/// The rows of the list `LstMP4`, the selected row, the playing row (the list's tag) and the
/// highlighted one. It announces its changes to its listeners.
///
/// Row indexes are 1-based; 0 means none. An index outside the rows throws StepError.
class RecordingList {
  public:
    RecordingList() = default;
    RecordingList(const RecordingList&) = delete;
    RecordingList& operator=(const RecordingList&) = delete;

    /// While one exists, changed rows are noted and announced when the last one ends.
    class Batch {
      public:
        explicit Batch(RecordingList& list);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

      private:
        RecordingList& m_list;
    };

    /// Not owned: it outlives the list or is removed. Listeners are told in the order of adding.
    void addListener(RecordingListListener& listener);
    void removeListener(RecordingListListener& listener);

    int count() const { return static_cast<int>(m_rows.size()); }
    int markedCount() const { return m_marked; }
    const RecordingEntry& row(int index) const;
    bool marked(int index) const { return row(index).marked(); }
    int indexOf(std::int32_t serial) const; ///< 0: no row has it

    /// set(2, &RecordingEntry::file, FileState::Missing). A value that the field has already is
    /// not announced.
    template <typename Value>
    void set(int index, Value RecordingEntry::*field, const std::type_identity_t<Value>& value) {
        RecordingEntry& entry = at(index);
        if (entry.*field == value)
            return;
        m_marked -= entry.marked() ? 1 : 0;
        entry.*field = value;
        m_marked += entry.marked() ? 1 : 0;
        changed(index);
    }
    void setMark(int index, MarkState mark) { set(index, &RecordingEntry::mark, mark); }

    void append(std::vector<RecordingEntry> rows);
    /// The rows after it move up; the selected, playing and highlighted index keep referring to the
    /// same rows, or to none when theirs was removed.
    void remove(int first, int removedCount);

    int selected() const { return m_selected; }
    void select(int index);
    int playingIndex() const { return m_playing; }
    void setPlayingIndex(int index);
    int highlighted() const { return m_highlighted; }
    void highlight(int index); ///< an index outside the rows highlights none

  private:
    RecordingEntry& at(int index);
    void changed(int index);
    template <typename... Parameters, typename... Values>
    void announce(void (RecordingListListener::*event)(Parameters...), Values... values);

    std::vector<RecordingListListener*> m_listeners;
    std::vector<std::unique_ptr<RecordingEntry>> m_rows; ///< by pointer: removing moves no texts
    int m_marked = 0;
    int m_selected = 0;
    int m_playing = 0;
    int m_highlighted = 0;
    int m_batches = 0;
    int m_firstChanged = 0; ///< 0: none
    int m_lastChanged = 0;
};

} // namespace velmorant

#include "library/RecordingList.h"

#include "common/StepError.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace velmorant {

namespace {

int indexAfterRemoval(int index, int first, int removedCount) {
    if (index < first)
        return index;
    return index < first + removedCount ? 0 : index - removedCount;
}

} // namespace

RecordingList::Batch::Batch(RecordingList& list) : m_list(list) {
    ++m_list.m_batches;
}

RecordingList::Batch::~Batch() {
    if (--m_list.m_batches > 0 || m_list.m_firstChanged == 0)
        return;
    const int first = m_list.m_firstChanged;
    const int last = std::min(m_list.m_lastChanged, m_list.count());
    m_list.m_firstChanged = 0;
    m_list.m_lastChanged = 0;
    if (last >= first)
        m_list.m_control.rowsChanged(first, last - first + 1);
}

RecordingList::RecordingList(ListControl& control) : m_control(control) {}

const RecordingEntry& RecordingList::row(int index) const {
    if (index < 1 || index > count())
        throw StepError("Index out of bounds: the list has no row " + std::to_string(index));
    return *m_rows[static_cast<std::size_t>(index - 1)];
}

RecordingEntry& RecordingList::at(int index) {
    row(index);
    return *m_rows[static_cast<std::size_t>(index - 1)];
}

void RecordingList::setText(int index, SubItem item, const std::string& text) {
    RecordingEntry& entry = at(index);
    if (entry.text(item) == text)
        return;
    entry.setText(item, text);
    changed(index);
}

void RecordingList::setMark(int index, MarkState mark) {
    RecordingEntry& entry = at(index);
    if (entry.mark == mark)
        return;
    entry.mark = mark;
    m_marked += entry.marked() ? 1 : -1;
    changed(index);
}

void RecordingList::setAppearance(int index, std::int32_t colour, RowWeight weight) {
    RecordingEntry& entry = at(index);
    if (entry.colour == colour && entry.weight == weight)
        return;
    entry.colour = colour;
    entry.weight = weight;
    changed(index);
}

void RecordingList::setNotice(int index, const std::string& notice) {
    RecordingEntry& entry = at(index);
    if (entry.notice == notice)
        return;
    entry.notice = notice;
    changed(index);
}

void RecordingList::append(std::vector<RecordingEntry> rows) {
    if (rows.empty())
        return;
    const int first = count() + 1;
    const int added = static_cast<int>(rows.size());
    m_rows.reserve(m_rows.size() + rows.size());
    for (RecordingEntry& entry : rows) {
        m_marked += entry.marked() ? 1 : 0;
        m_rows.push_back(std::make_unique<RecordingEntry>(std::move(entry)));
    }
    m_control.rowsAdded(first, added);
}

void RecordingList::remove(int first, int removedCount) {
    if (removedCount < 1)
        return;
    row(first);
    row(first + removedCount - 1);
    const auto begin = m_rows.begin() + (first - 1);
    const auto end = begin + removedCount;
    m_marked -= static_cast<int>(
        std::count_if(begin, end, [](const auto& entry) { return entry->marked(); }));
    m_rows.erase(begin, end);
    // The rows noted as changed have moved up: what lies behind the gap covers them.
    if (m_firstChanged > 0)
        m_firstChanged = std::min(m_firstChanged, first);
    m_playing = indexAfterRemoval(m_playing, first, removedCount);
    m_selected = indexAfterRemoval(m_selected, first, removedCount);
    m_control.rowsRemoved(first, removedCount);
}

void RecordingList::select(int index) {
    if (index != 0)
        row(index);
    m_selected = index;
    m_control.selectionChanged(index);
}

void RecordingList::changed(int index) {
    if (m_batches == 0) {
        m_control.rowsChanged(index, 1);
        return;
    }
    m_firstChanged = m_firstChanged == 0 ? index : std::min(m_firstChanged, index);
    m_lastChanged = std::max(m_lastChanged, index);
}

} // namespace velmorant

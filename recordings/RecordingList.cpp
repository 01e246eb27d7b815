#include "recordings/RecordingList.h"

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
        m_list.announce(&RecordingListListener::rowsChanged, first, last - first + 1);
}

void RecordingList::addListener(RecordingListListener& listener) {
    m_listeners.push_back(&listener);
}

void RecordingList::removeListener(RecordingListListener& listener) {
    std::erase(m_listeners, &listener);
}

template <typename... Parameters, typename... Values>
void RecordingList::announce(void (RecordingListListener::*event)(Parameters...),
                             Values... values) {
    for (RecordingListListener* listener : m_listeners)
        (listener->*event)(values...);
}

const RecordingEntry& RecordingList::row(int index) const {
    if (index < 1 || index > count())
        throw StepError("Index out of bounds: the list has no row " + std::to_string(index));
    return *m_rows[static_cast<std::size_t>(index - 1)];
}

RecordingEntry& RecordingList::at(int index) {
    row(index);
    return *m_rows[static_cast<std::size_t>(index - 1)];
}

int RecordingList::indexOf(std::int32_t serial) const {
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                    [&](const auto& entry) { return entry->serial == serial; });
    return found == m_rows.end() ? 0 : static_cast<int>(found - m_rows.begin()) + 1;
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
    announce(&RecordingListListener::rowsAdded, first, added);
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
    for (int* index : {&m_playing, &m_selected, &m_highlighted})
        *index = indexAfterRemoval(*index, first, removedCount);
    announce(&RecordingListListener::rowsRemoved, first, removedCount);
}

void RecordingList::select(int index) {
    if (index != 0)
        row(index);
    m_selected = index;
    announce(&RecordingListListener::selectionChanged, index);
}

void RecordingList::setPlayingIndex(int index) {
    if (index == m_playing)
        return;
    m_playing = index;
    announce(&RecordingListListener::playingRowChanged, index);
}

void RecordingList::highlight(int index) {
    const int next = index < 1 || index > count() ? 0 : index;
    if (next == m_highlighted)
        return;
    const Batch batch(*this);
    const int before = std::exchange(m_highlighted, next);
    for (const int row : {before, next})
        if (row > 0)
            changed(row);
}

void RecordingList::changed(int index) {
    if (m_batches == 0) {
        announce(&RecordingListListener::rowsChanged, index, 1);
        return;
    }
    m_firstChanged = m_firstChanged == 0 ? index : std::min(m_firstChanged, index);
    m_lastChanged = std::max(m_lastChanged, index);
}

} // namespace velmorant

#include "library/RecordingRemoval.h"

#include "common/trapErrors.h"
#include "recordings/RowView.h"

#include <cstddef>
#include <vector>

namespace velmorant {

RecordingRemoval::RecordingRemoval(RecordingList& list, ProgramState& state, PlayQueue& queue,
                                   MapPage& page)
    : m_list(list), m_state(state), m_queue(queue), m_page(page) {}

int RecordingRemoval::removeIf(const std::function<bool(const RecordingEntry&)>& condition) {
    const int count = m_list.count();
    std::vector<int> newIndexes(static_cast<std::size_t>(count) + 1, 0);
    int kept = 0;
    for (int index = 1; index <= count; ++index) {
        if (!condition(m_list.row(index)))
            newIndexes[static_cast<std::size_t>(index)] = ++kept;
    }
    if (kept == count)
        return 0;
    const auto removed = [&](int index) {
        return newIndexes[static_cast<std::size_t>(index)] == 0;
    };
    for (int last = count; last >= 1; --last) {
        if (!removed(last))
            continue;
        int first = last;
        while (first > 1 && removed(first - 1))
            --first;
        for (int index = first; index <= last; ++index)
            forget(m_list.row(index));
        m_list.remove(first, last - first + 1);
        last = first;
    }
    renumber([&](int index) {
        return index < 1 || index > count ? 0 : newIndexes[static_cast<std::size_t>(index)];
    });
    return count - kept;
}

void RecordingRemoval::removeAll() {
    const bool pageLoaded = m_page.ready();
    for (int index = m_list.count(); pageLoaded && index >= 1; --index) {
        if (m_list.marked(index))
            trapErrors([&] { m_page.clearHistroy(RowView::mapNumber(m_list.row(index).serial)); });
    }
    m_list.remove(1, m_list.count());
    m_list.setPlayingIndex(0);
    m_queue.moveRequest(0);
    m_state.loadedTracks.clear();
    m_state.currentTrack.reset();
}

void RecordingRemoval::forget(const RecordingEntry& entry) {
    const bool drawn = entry.marked() || entry.map == MapState::Shown;
    if (drawn && m_page.ready())
        trapErrors([&] { m_page.clearHistroy(RowView::mapNumber(entry.serial)); });
    m_state.loadedTracks.remove(entry.serial);
}

void RecordingRemoval::renumber(const std::function<int(int)>& newIndex) {
    for (const LoadedTracks::Entry& entry : m_state.loadedTracks)
        entry.track->lSerial(newIndex(entry.track->lSerial()));
    // The current track may have left the table while its recording is still open in the player.
    const auto& current = m_state.currentTrack;
    bool inTable = false;
    for (const LoadedTracks::Entry& entry : m_state.loadedTracks)
        inTable = inTable || entry.track == current;
    if (current && !inTable)
        current->lSerial(0);
    if (m_queue.requestPending())
        m_queue.moveRequest(newIndex(m_queue.requestedIndex()));
}

} // namespace velmorant

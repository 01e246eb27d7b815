#include "library/RecordingMarks.h"

#include "common/trapErrors.h"
#include "recordings/RowView.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace velmorant {

namespace {

constexpr int informationTitle = 3000;
constexpr int unmarkingRefused = 3010;

} // namespace

RecordingMarks::RecordingMarks(RecordingMarksNeeds needs) : m_needs(std::move(needs)) {}

bool RecordingMarks::isOpenInPlayer(int index) const {
    const PlayState state = m_needs.player.playState();
    return index == m_needs.list.playingIndex() &&
           (state == PlayState::Paused || state == PlayState::Playing);
}

void RecordingMarks::toggle(int index) {
    RecordingList& list = m_needs.list;
    if (isOpenInPlayer(index)) {
        m_needs.messageBox.show(m_needs.texts.byOffset(unmarkingRefused),
                                m_needs.texts.byOffset(informationTitle),
                                MessageStyle::Information);
        return;
    }
    if (list.marked(index)) {
        unmark(index);
        return;
    }
    list.setMark(index, MarkState::Marked);
    if (list.row(index).track == TrackState::NotRead) {
        // The extraction of one recording works on the selected row.
        if (list.selected() != index)
            list.select(index);
        m_needs.tracks.extractSelected();
    } else if (list.row(index).map == MapState::Hidden) {
        (void)drawRows({index});
    }
}

void RecordingMarks::markAll() {
    markRows([](int) { return true; }, OtherRows::Stay);
}

void RecordingMarks::markKind(RecordingKind kind) {
    markRows([&](int index) { return m_needs.list.row(index).kind == kind; }, OtherRows::Unmark);
}

void RecordingMarks::unmarkAllButPlaying() {
    const int playing = m_needs.state.currentTrack ? m_needs.state.currentTrack->lSerial() : 0;
    const RecordingList::Batch batch(m_needs.list);
    for (int index = 1; index <= m_needs.list.count(); ++index) {
        if (index != playing)
            unmark(index);
    }
}

void RecordingMarks::unmark(int index) {
    RecordingList& list = m_needs.list;
    // A row that is neither marked nor shown has nothing on the map: thousands of calls are spared.
    const bool mayBeDrawn = list.marked(index) || list.row(index).map == MapState::Shown;
    list.setMark(index, MarkState::NotMarked);
    list.set(index, &RecordingEntry::map, MapState::Hidden);
    if (mayBeDrawn && m_needs.page.ready())
        trapErrors([&] { m_needs.page.clearHistroy(RowView::mapNumber(list.row(index).serial)); });
}

void RecordingMarks::markRows(const std::function<bool(int)>& condition, OtherRows others) {
    RecordingList& list = m_needs.list;
    std::vector<int> hidden;
    bool tracksMissing = false;
    {
        const RecordingList::Batch batch(list);
        for (int index = 1; index <= list.count(); ++index) {
            if (!condition(index)) {
                if (others == OtherRows::Unmark)
                    unmark(index);
                continue;
            }
            list.setMark(index, MarkState::Marked);
            if (list.row(index).track == TrackState::NotRead) {
                tracksMissing = true;
            } else if (list.row(index).map == MapState::Hidden) {
                hidden.push_back(index);
            }
        }
    }
    // A user who cancels the drawing does not want the extraction that would follow.
    if (drawRows(hidden) && tracksMissing)
        m_needs.tracks.extractMarked();
}

/// False when the user cancelled it: the rows that were not drawn stay hidden.
bool RecordingMarks::drawRows(const std::vector<int>& rows) {
    RecordingList& list = m_needs.list;
    std::vector<std::int32_t> serials;
    {
        const RecordingList::Batch batch(list);
        for (const int row : rows) {
            list.set(row, &RecordingEntry::map, MapState::Shown);
            serials.push_back(list.row(row).serial);
        }
    }
    if (serials.empty())
        return true;
    const std::size_t drawn = m_needs.tracks.drawTracks(serials);
    const RecordingList::Batch batch(list);
    for (std::size_t i = drawn; i < rows.size(); ++i)
        list.set(rows[i], &RecordingEntry::map, MapState::Hidden);
    return drawn == rows.size();
}

} // namespace velmorant

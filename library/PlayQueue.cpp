#include "library/PlayQueue.h"

#include "common/fillIn.h"
#include "common/trapErrors.h"

#include <chrono>
#include <utility>

namespace velmorant {

namespace {

constexpr std::chrono::milliseconds continueInterval{100};
constexpr std::chrono::milliseconds pauseBeforeOpening{100};

} // namespace

PlayQueue::PlayQueue(PlayQueueNeeds needs) : m_needs(std::move(needs)) {
    m_needs.tContinue.setInterval(continueInterval);
    m_needs.tContinue.setEnabled(false);
    m_needs.tContinue.onTick([this] { static_cast<void>(PlayEntry(m_requested)); });
}

void PlayQueue::RequestPlay(int index) {
    m_requested = index;
    m_needs.tContinue.setEnabled(true);
}

RowStart PlayQueue::PlayEntry(int index) {
    m_needs.tContinue.setEnabled(false);
    m_requested = index;
    RecordingList& list = m_needs.list;
    if (index < 1 || index > list.count())
        return RowStart::NoSuchRow;
    if (!m_needs.files.fileExists(list.row(index).path)) {
        const RecordingList::Batch batch(list);
        list.setMark(index, MarkState::NotMarked);
        list.set(index, &RecordingEntry::file, FileState::Missing);
        say("list.fileMissing", index);
        return RowStart::FileMissing;
    }
    std::shared_ptr<clsDot> track = m_needs.state.loadedTracks.find(list.row(index).serial);
    if (!track) {
        say("list.notExtracted", index);
        return RowStart::NoTrack;
    }
    start(index, std::move(track));
    return RowStart::Started;
}

void PlayQueue::start(int index, std::shared_ptr<clsDot> track) {
    RecordingList& list = m_needs.list;
    m_needs.state.currentTrack = std::move(track);
    // A failing step does not prevent the others.
    trapErrors([&] { m_needs.waits.sleep(pauseBeforeOpening); });
    trapErrors([&] { m_needs.drawChart(); });
    trapErrors([&] { m_needs.playRecording(list.row(index).path); });
    list.setPlayingIndex(index);
    // It plays, so it was neither damaged nor gone for good.
    list.set(index, &RecordingEntry::notice, "");
    list.set(index, &RecordingEntry::file, FileState::Present);
    list.highlight(index);
    trapErrors([&] { m_needs.status.show(""); });
}

std::optional<int> PlayQueue::firstMarked(int from, int to) const {
    for (int index = from; index <= to; ++index) {
        if (m_needs.list.marked(index))
            return index;
    }
    return std::nullopt;
}

std::optional<int> PlayQueue::NextMarked() const {
    const int count = m_needs.list.count();
    const int current = m_needs.list.playingIndex();
    const int first = current >= count ? 1 : current + 1;
    const std::optional<int> behind = firstMarked(first, count);
    return behind ? behind : firstMarked(1, first - 1);
}

void PlayQueue::MediaEnded() {
    if (const std::optional<int> next = NextMarked())
        RequestPlay(*next);
}

void PlayQueue::PlaybackFailed(const std::string& reason) {
    const int index = m_needs.list.playingIndex();
    if (index < 1 || index > m_needs.list.count())
        return;
    {
        const RecordingList::Batch batch(m_needs.list);
        m_needs.list.setMark(index, MarkState::NotMarked);
        m_needs.list.set(index, &RecordingEntry::notice, reason);
    }
    trapErrors([&] {
        const std::string name = fileNameOf(m_needs.paths, m_needs.list.row(index).path);
        m_needs.status.show(
            fillIn(m_needs.texts.addition("list.notPlayable"), "%1", name + ": " + reason));
    });
    MediaEnded();
}

void PlayQueue::moveRequest(int newIndex) {
    m_requested = newIndex;
    if (newIndex == 0)
        m_needs.tContinue.setEnabled(false);
}

void PlayQueue::say(const std::string& textName, int index) {
    trapErrors([&] {
        const std::string name = fileNameOf(m_needs.paths, m_needs.list.row(index).path);
        m_needs.status.show(fillIn(m_needs.texts.addition(textName), "%1", name));
    });
}

} // namespace velmorant

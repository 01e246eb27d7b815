#include "track/frmSendData.h"

#include "common/StepError.h"
#include "common/fillIn.h"
#include "common/textRules.h"
#include "common/trapErrors.h"
#include "track/RouteSender.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace velmorant {

namespace {

constexpr std::chrono::milliseconds startInterval{100};
/// A box longer than this leaves the screen.
constexpr std::size_t failuresInBox = 12;

int percent(std::int64_t part, std::int64_t whole) {
    return toInt16(static_cast<double>(part) * 100.0 / static_cast<double>(whole));
}

/// A technical line begins with the path of the recording, which its reader knows.
std::string withoutPath(const std::string& line, const std::string& path) {
    const std::string start = path + ": ";
    return line.starts_with(start) ? line.substr(start.size()) : line;
}

} // namespace

frmSendData::frmSendData(SendDataNeeds needs)
    : m_needs(std::move(needs)),
      m_reader(m_needs.document),
      m_extractor({.waits = m_needs.waits,
                   .files = m_needs.files,
                   .paths = m_needs.paths,
                   .shell = m_needs.shell,
                   .reader = m_reader,
                   .cancelled = [this] { return m_cancelled; }}),
      m_drawing({.window = m_needs.window,
                 .waits = m_needs.waits,
                 .texts = m_needs.texts,
                 .page = m_needs.page,
                 .state = m_needs.state}) {
    m_needs.tStart.setInterval(startInterval);
    m_needs.tStart.onTick([this] { tick(); });
}

void frmSendData::ShowModal(const std::string& tag) {
    if (m_running)
        return;
    m_running = true;
    m_cancelled = false;
    m_failures.clear();
    // Others show their progress in this window too.
    m_needs.window.onCancel([this] { m_cancelled = true; });
    m_mode = equalsIgnoringCase(tag, "One") ? Mode::One : Mode::Batch;
    m_needs.tStart.setEnabled(true);
    trapErrors([this] {
        m_needs.window.setValue(0);
        m_needs.window.showModal(m_needs.texts.addition("extraction.title"));
    });
    m_needs.tStart.setEnabled(false);
    m_running = false;
}

void frmSendData::tick() {
    m_needs.tStart.setEnabled(false);
    trapErrors([this] {
        if (m_mode == Mode::Batch)
            runBatch();
        else if (m_needs.list.selected() > 0)
            extract(m_needs.list.selected(), Mode::One);
    });
    trapErrors([this] { showFailures(); });
    trapErrors([this] { m_needs.removeMissingRows(); });
    m_needs.window.close();
}

void frmSendData::runBatch() {
    const int marked = markedRows();
    m_batch.emplace(m_needs.clock, m_needs.texts, marked);
    m_timedOut = 0;
    trapErrors([this] { runMarkedRows(); });
    if (marked > 1)
        m_needs.status.show(m_batch->summary(static_cast<int>(m_failures.size()) + m_timedOut));
    m_batch.reset();
}

int frmSendData::markedRows() const {
    int marked = 0;
    for (int row = 1; row <= m_needs.list.count(); ++row)
        marked += m_needs.list.marked(row) ? 1 : 0;
    return marked;
}

void frmSendData::runMarkedRows() {
    const int count = m_needs.list.count();
    for (int row = 1; row <= count && !m_cancelled; ++row) {
        if (!m_needs.list.marked(row))
            continue;
        m_needs.list.select(row);
        if (extract(row, Mode::Batch) == Next::EndRun)
            return;
        m_needs.window.setValue(percent(row, count));
    }
}

/// A failure ends this recording's reading, not the run.
frmSendData::Next frmSendData::extract(int row, Mode mode) {
    m_needs.window.setText(m_batch ? m_batch->begin(fileName(row)) : fileName(row));
    const ExtractorRun::Result result = m_extractor.run(m_needs.list.row(row).path);
    switch (result.outcome) {
    case ExtractorRun::Outcome::NotStarted:
        showNotStarted();
        return Next::EndRun;
    case ExtractorRun::Outcome::Loaded:
        try {
            takeTrackFile(row, mode);
        } catch (const StepError& error) {
            noteFailure(row,
                        {TrackReason::Kind::NoTrack, "track-file", 0, boundedLine(error.what())});
        }
        break;
    case ExtractorRun::Outcome::TimedOut:
        ++m_timedOut;
        showTimeOut(row);
        m_needs.list.set(row, &RecordingEntry::file, FileState::Missing);
        break;
    case ExtractorRun::Outcome::Failed:
        noteFailure(row, result.reason);
        break;
    case ExtractorRun::Outcome::Cancelled:
        break;
    }
    return Next::GoOn;
}

void frmSendData::showNotStarted() {
    m_needs.messages.show(m_needs.texts.byOffset(3012) +
                              "error:" + m_needs.shell.lastErrorDescription(),
                          m_needs.texts.byOffset(3011), MessageStyle::Stop);
}

void frmSendData::takeTrackFile(int row, Mode mode) {
    const std::int32_t number = m_needs.list.row(row).serial;
    LoadedTracks& tracks = m_needs.state.loadedTracks;
    if (m_reader.sampleCount() > 0 && !tracks.contains(number)) {
        // The whole file is read before the page hears of it: a broken one leaves no half route.
        const std::shared_ptr<clsDot> track = m_reader.read();
        track->lSerial(row);
        streamTrack(*track, number, mode);
        tracks.add(number, track);
    }
    {
        const RecordingList::Batch batch(m_needs.list);
        m_needs.list.set(row, &RecordingEntry::track, TrackState::Read);
        m_needs.list.set(row, &RecordingEntry::map, MapState::Shown);
    }
    RouteSender(m_needs.page, m_needs.waits, number, [this] { return hurried(); }).complete();
    if (const auto error = m_reader.error()) {
        noteFailure(row, *error);
        return;
    }
    if (m_batch)
        m_batch->read();
    if (const auto notice = m_reader.notice()) {
        noteReason(row, *notice);
        m_needs.status.show(fileName(row) + ": " + plainWords(*notice, m_needs.texts));
    }
}

void frmSendData::streamTrack(const clsDot& track, std::int32_t number, Mode mode) {
    RouteSender sender(m_needs.page, m_needs.waits, number, [this] { return hurried(); });
    int shown = -1;
    for (std::int32_t i = 0; i < track.count(); ++i) {
        sender.point(i, track.dot(i + 1).lonLatText);
        const int share = percent(i, track.count());
        if (mode == Mode::One && share != shown)
            m_needs.window.setValue(share);
        shown = share;
    }
    sender.flush();
}

void frmSendData::showTimeOut(int row) {
    m_needs.messages.show(fileName(row) + "\n" + m_needs.texts.byOffset(3009),
                          m_needs.texts.byOffset(3011), MessageStyle::Stop);
}

void frmSendData::noteFailure(int row, TrackReason reason) {
    m_failures.push_back({fileName(row), plainWords(reason, m_needs.texts)});
    noteReason(row, std::move(reason));
}

void frmSendData::noteReason(int row, TrackReason reason) {
    reason.technical = withoutPath(reason.technical, m_needs.list.row(row).path);
    m_needs.list.set(row, &RecordingEntry::notice, wordsWithDetails(reason, m_needs.texts));
}

/// One box for all files of a run, however many failed.
void frmSendData::showFailures() {
    if (m_failures.empty())
        return;
    const std::size_t named = std::min(m_failures.size(), failuresInBox);
    std::string text;
    for (std::size_t i = 0; i < named; ++i)
        text += (i == 0 ? "" : "\n") + m_failures[i].file + "\n" + m_failures[i].words;
    if (named < m_failures.size())
        text += "\n" + fillIn(m_needs.texts.addition("extraction.more"), "%1",
                              std::to_string(m_failures.size() - named));
    m_needs.messages.show(text, m_needs.texts.byOffset(3011), MessageStyle::Stop);
}

std::string frmSendData::fileName(int row) const {
    return fileNameOf(m_needs.paths, m_needs.list.row(row).path);
}

void frmSendData::SendLoadedTrack(std::int32_t recordingNumber) {
    (void)m_drawing.draw({recordingNumber});
}

std::size_t frmSendData::SendLoadedTracks(const std::vector<std::int32_t>& recordingNumbers) {
    return m_drawing.draw(recordingNumbers);
}

} // namespace velmorant

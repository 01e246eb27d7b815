#include "track/frmSendData.h"

#include "common/StepError.h"
#include "common/fillIn.h"
#include "common/textRules.h"
#include "common/trapErrors.h"
#include "ports/ensureFolder.h"
#include "track/RouteSender.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace velmorant {

namespace {

constexpr std::chrono::milliseconds startInterval{100};
constexpr std::chrono::milliseconds round{100};
constexpr std::chrono::milliseconds settling{500};
constexpr int rounds = 250;
constexpr int firstGoodShellResult = 33;
/// A box longer than this leaves the screen.
constexpr std::size_t failuresInBox = 12;

int percent(std::int64_t part, std::int64_t whole) {
    return toInt16(static_cast<double>(part) * 100.0 / static_cast<double>(whole));
}

/// The extractor's notices begin with the recording's path, which the reader of a line knows.
std::string withoutPath(const std::string& notice, const std::string& path) {
    const std::string start = path + ": ";
    return notice.starts_with(start) ? notice.substr(start.size()) : notice;
}

} // namespace

frmSendData::frmSendData(SendDataNeeds needs)
    : m_needs(std::move(needs)), m_reader(m_needs.document) {
    m_needs.tStart.setInterval(startInterval);
    m_needs.tStart.onTick([this] { tick(); });
    m_needs.window.onCancel([this] { m_cancelled = true; });
}

void frmSendData::ShowModal(const std::string& tag) {
    if (m_running)
        return;
    m_running = true;
    m_cancelled = false;
    m_failures.clear();
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

/// An error ends this recording's reading, not the run.
frmSendData::Next frmSendData::extract(int row, Mode mode) {
    try {
        return extractSteps(row, mode);
    } catch (const StepError& error) {
        noteFailure(row, error.what());
        return Next::GoOn;
    }
}

frmSendData::Next frmSendData::extractSteps(int row, Mode mode) {
    m_needs.window.setText(fileName(row));
    const std::string trackFile = prepareTrackFile();
    const std::string recording = m_needs.list.row(row).path;
    const int started = m_needs.shell.execute("open", m_needs.paths.executable("movsupport/Parse"),
                                              recording, "", ShowWindow::Hidden);
    if (started < firstGoodShellResult) {
        m_needs.messages.show(m_needs.texts.byOffset(3012) +
                                  "error:" + m_needs.shell.lastErrorDescription(),
                              m_needs.texts.byOffset(3011), MessageStyle::Stop);
        return Next::EndRun;
    }
    switch (waitForTrackFile(trackFile, recording)) {
    case Waited::Arrived:
        takeTrackFile(row, mode);
        break;
    case Waited::TimedOut:
        // What comes late must not be taken for the next recording's file.
        m_needs.shell.stopLastProgram();
        showTimeOut(row);
        m_needs.list.set(row, &RecordingEntry::file, FileState::Missing);
        break;
    case Waited::Cancelled:
        m_needs.shell.stopLastProgram();
        break;
    }
    return Next::GoOn;
}

/// The track file's path, with the folder there and no old copy in it.
std::string frmSendData::prepareTrackFile() {
    const std::string folder = m_needs.paths.temporaryFolder();
    ensureFolder(m_needs.files, m_needs.paths, folder);
    std::string trackFile = m_needs.paths.join(folder, "output.kml");
    if (m_needs.files.fileExists(trackFile))
        m_needs.files.deleteFile(trackFile);
    return trackFile;
}

frmSendData::Waited frmSendData::waitForTrackFile(const std::string& trackFile,
                                                  const std::string& recording) {
    for (int i = 0; i < rounds; ++i) {
        m_needs.waits.sleep(round);
        if (m_needs.files.fileExists(trackFile) && complete(trackFile, recording))
            return Waited::Arrived;
        if (m_cancelled)
            return Waited::Cancelled;
    }
    return Waited::TimedOut;
}

/// Lets the extractor finish writing and loads the file; false when it belongs to another
/// recording (an extractor of an earlier run, or of another instance of the program).
bool frmSendData::complete(const std::string& trackFile, const std::string& recording) {
    const auto belongsToAnother = [&] {
        return !m_reader.recording().empty() && m_reader.recording() != recording;
    };
    const bool whole = trapErrors([&] { m_reader.load(trackFile); }) == StepOutcome::Done;
    if (whole && belongsToAnother())
        return false;
    // A "Cancel" before it ends no sleep that only begins now.
    if (!m_cancelled)
        m_needs.waits.sleep(settling);
    // A file that names its recording was renamed when complete; any other may have grown, and
    // has not had its time when a "Cancel" cut the wait short.
    const bool mayHaveGrown = !whole || m_reader.recording().empty();
    if (mayHaveGrown && m_cancelled)
        return false;
    if (mayHaveGrown)
        m_reader.load(trackFile);
    return !belongsToAnother();
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
    if (!m_reader.error().empty()) {
        noteFailure(row, m_reader.error());
    } else if (!m_reader.notice().empty()) {
        const std::string notice = withoutPath(m_reader.notice(), m_needs.list.row(row).path);
        m_needs.list.set(row, &RecordingEntry::notice, notice);
        m_needs.status.show(fileName(row) + ": " + notice);
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

void frmSendData::noteFailure(int row, const std::string& reason) {
    m_failures.push_back({fileName(row), reason});
    m_needs.list.set(row, &RecordingEntry::notice, reason);
}

/// One box for all files of a run, however many failed.
void frmSendData::showFailures() {
    if (m_failures.empty())
        return;
    const std::size_t named = std::min(m_failures.size(), failuresInBox);
    std::string text;
    for (std::size_t i = 0; i < named; ++i)
        text += (i == 0 ? "" : "\n") + m_failures[i].file + "\n" + m_failures[i].reason;
    if (named < m_failures.size())
        text += "\n" + fillIn(m_needs.texts.addition("extraction.more"), "%1",
                              std::to_string(m_failures.size() - named));
    m_needs.messages.show(text, m_needs.texts.byOffset(3011), MessageStyle::Stop);
}

std::string frmSendData::fileName(int row) const {
    return fileNameOf(m_needs.paths, m_needs.list.row(row).path);
}

void frmSendData::SendLoadedTrack(std::int32_t recordingNumber) {
    const std::shared_ptr<clsDot> track = m_needs.state.loadedTracks.find(recordingNumber);
    if (track == nullptr)
        return;
    trapErrors([&] {
        RouteSender sender(m_needs.page, m_needs.waits, recordingNumber);
        for (std::int32_t i = 1; i <= track->count(); ++i) {
            track->lPlayLocal(i);
            sender.point(i, track->sLonLat());
        }
        sender.flush();
        sender.complete();
    });
}

} // namespace velmorant

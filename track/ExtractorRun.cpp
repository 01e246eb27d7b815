#include "track/ExtractorRun.h"

#include "common/StepError.h"
#include "common/trapErrors.h"
#include "ports/ensureFolder.h"

#include <chrono>
#include <optional>
#include <utility>

namespace velmorant {

namespace {

constexpr std::chrono::milliseconds round{100};
constexpr std::chrono::milliseconds settling{500};
constexpr int rounds = 250;
constexpr int firstGoodShellResult = 33;

/// An error of the program's own. The track file's path is nobody's business.
ExtractorRun::Result failure(const char* code, const StepError& error, const std::string& path) {
    const std::string text = error.what();
    const std::string start = path + ": ";
    const std::string line = text.starts_with(start) ? text.substr(start.size()) : text;
    return {ExtractorRun::Outcome::Failed,
            {TrackReason::Kind::NoTrack, code, 0, boundedLine(line)}};
}

TrackReason reasonOf(const ProgramEnd& end) {
    TrackReason reason = reasonOfWords(end.words);
    if (reason.technical.empty())
        reason.technical = end.crashed ? "the extractor crashed"
                                       : "the extractor ended with " + std::to_string(end.exitCode);
    return reason;
}

} // namespace

ExtractorRun::ExtractorRun(ExtractorRunNeeds needs) : m_needs(std::move(needs)) {}

ExtractorRun::Result ExtractorRun::run(const std::string& recording) {
    try {
        prepare();
    } catch (const StepError& error) {
        return failure("not-written", error, m_trackFile);
    }
    const int started = m_needs.shell.execute("open", m_needs.paths.executable("movsupport/Parse"),
                                              recording, "", ShowWindow::Hidden);
    if (started < firstGoodShellResult)
        return {Outcome::NotStarted, {}};
    Result result{};
    try {
        result = waitForTrackFile(recording);
    } catch (const StepError& error) {
        result = failure("track-file", error, m_trackFile);
    }
    // What comes late must not be taken for the next recording's file.
    if (result.outcome != Outcome::Loaded)
        m_needs.shell.stopLastProgram();
    clear();
    return result;
}

/// The folder is there, for this user alone, and no old copy in it.
void ExtractorRun::prepare() {
    const std::string folder = m_needs.paths.temporaryFolder();
    m_trackFile = m_needs.paths.join(folder, "output.kml");
    ensureFolder(m_needs.files, m_needs.paths, folder);
    // Where the rights cannot be changed, the disk knows none or writing will tell.
    trapErrors([&] { m_needs.files.keepPrivate(folder); });
    if (m_needs.files.fileExists(m_trackFile))
        m_needs.files.deleteFile(m_trackFile);
}

/// What was read is in memory; the file would tell anybody where the car has been.
void ExtractorRun::clear() {
    trapErrors([this] {
        if (m_needs.files.fileExists(m_trackFile))
            m_needs.files.deleteFile(m_trackFile);
    });
}

ExtractorRun::Result ExtractorRun::waitForTrackFile(const std::string& recording) {
    std::optional<ProgramEnd> end;
    for (int i = 0; i < rounds; ++i) {
        // An end without a failure and without a file may be that of a program that has left the
        // work to another one: the rounds then go on in full.
        m_needs.waits.sleepUntil(
            round, [&] { return !end.has_value() && m_needs.shell.lastProgramEnd().has_value(); });
        // Asked before the file: what has ended has left its file by then.
        end = m_needs.shell.lastProgramEnd();
        if (m_needs.files.fileExists(m_trackFile) && complete(recording))
            return {Outcome::Loaded, {}};
        if (m_needs.cancelled())
            return {Outcome::Cancelled, {}};
        if (end && end->failed())
            return {Outcome::Failed, reasonOf(*end)};
    }
    return {Outcome::TimedOut, {}};
}

/// Loads the file, after the extractor had its time to finish writing where that is in doubt; false
/// when it belongs to another recording (an extractor of an earlier run, or of another instance of
/// the program).
bool ExtractorRun::complete(const std::string& recording) {
    TrackFileReader& reader = m_needs.reader;
    const bool whole = trapErrors([&] { reader.load(m_trackFile); }) == StepOutcome::Done;
    // A file that names its recording was renamed when complete; any other may still grow.
    if (whole && !reader.recording().empty())
        return reader.recording() == recording;
    // A "Cancel" before it ends no sleep that only begins now, and one in it cuts the time short.
    if (!m_needs.cancelled())
        m_needs.waits.sleep(settling);
    if (m_needs.cancelled())
        return false;
    reader.load(m_trackFile);
    return reader.recording().empty() || reader.recording() == recording;
}

} // namespace velmorant

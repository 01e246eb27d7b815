#include "settings/frmUpdate.h"

#include "common/StepError.h"
#include "common/fillIn.h"
#include "common/textRules.h"
#include "common/trapErrors.h"
#include "settings/updatePossible.h"
#include "update/MainProgramUpdate.h"
#include "update/readCatalogue.h"
#include "update/updateFiles.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <utility>
#include <variant>

namespace velmorant {

namespace {

constexpr std::chrono::milliseconds stepInterval{100};
constexpr std::chrono::milliseconds shownWhenDone{2000};

constexpr int noticeTitle = 3000;
constexpr int warningTitle = 3011;
constexpr int notConnected = 3019;
constexpr int updateTitle = 3026;
constexpr int updateQuestion = 3042;
constexpr int leastSuccess = 33;

} // namespace

frmUpdate::frmUpdate(frmUpdateNeeds needs)
    : m_needs(std::move(needs)),
      m_tree(folderOf(m_needs.paths, m_needs.paths.programFile(localCatalogue().text()))),
      m_download(m_needs.transfer, m_tree,
                 {[this](std::int64_t maximum) {
                      m_singleMaximum = maximum;
                      showSingle(0);
                  },
                  [this](std::int64_t written) { showSingle(written); },
                  [this] { guard([this] { downloaded(); }); },
                  [this](const DownloadFailure& failure) { failed(failure); }}) {
    m_needs.tStartLoad.setInterval(stepInterval);
    m_needs.tAllLoad.setInterval(stepInterval);
    m_needs.tClose.setInterval(shownWhenDone);
    m_needs.tStartLoad.setEnabled(false);
    m_needs.tAllLoad.setEnabled(false);
    m_needs.tClose.setEnabled(false);
    m_needs.tStartLoad.onTick([this] {
        m_needs.tStartLoad.setEnabled(false);
        guard([this] { startLoad(); });
    });
    m_needs.tAllLoad.onTick([this] {
        m_needs.tAllLoad.setEnabled(false);
        guard([this] { allLoad(); });
    });
    m_needs.tClose.onTick([this] { Close(); });
}

void frmUpdate::Open(UpdateOpening opening) {
    if (!running())
        Load(opening);
    else if (opening == UpdateOpening::OnRequest)
        m_opening = opening;
    if (opening == UpdateOpening::OnRequest) {
        m_needs.window.show();
        m_needs.window.setForeground();
    }
    Activate();
}

void frmUpdate::Load(UpdateOpening opening) {
    m_opening = opening;
    m_state = State::Loaded;
    m_marked = false;
    m_signatureWanted = !m_needs.publicKey.empty();
    m_sumValue = 0;
    m_sumMaximum = 0;
    trapErrors(m_needs.errors, [this] {
        m_serverBase = m_needs.texts.byId(1);
        m_needs.window.setCaption(m_needs.texts.addition("update.title"));
        m_needs.progress.showStatus(m_needs.texts.addition("update.checking"));
    });
    m_needs.progress.showSum(0, 0);
    showSingle(0);
}

void frmUpdate::Activate() {
    if (m_state != State::Loaded)
        return;
    m_state = State::Running;
    guard([this] {
        std::string reason = whyNot();
        if (reason.empty() && m_tree.lock() == TreeLock::HeldByAnother)
            reason = m_needs.texts.addition("update.running");
        if (reason.empty())
            fetchCatalogue();
        else
            end(reason, Telling::OnRequest);
    });
}

void frmUpdate::Close() {
    end({}, Telling::Nothing);
}

template <typename Step>
void frmUpdate::guard(Step step) {
    try {
        step();
    } catch (const StepError& error) {
        failed({DownloadFault::Other, error.what()});
    }
}

std::string frmUpdate::whyNot() const {
    if (!isWebAddress(m_serverBase))
        return m_needs.texts.addition("update.noServer");
    if (!programFolderIsOwn(m_needs.paths))
        return m_needs.texts.addition("update.packaged");
    return {};
}

void frmUpdate::fetchCatalogue() {
    m_download.start(
        {m_serverBase + servedCatalogue, remoteCatalogue(), {}, Catalogue::largestFile});
}

void frmUpdate::fetchSignature() {
    m_signatureWanted = false;
    m_download.start({m_serverBase + servedSignature, remoteSignature(), {}, largestSignature});
}

void frmUpdate::downloaded() {
    if (m_state != State::Running)
        return;
    if (m_marked) {
        m_needs.tAllLoad.setEnabled(true);
        return;
    }
    if (m_signatureWanted) {
        fetchSignature();
        return;
    }
    m_tree.publish();
    m_marked = true;
    m_needs.tStartLoad.setEnabled(true);
}

void frmUpdate::failed(const DownloadFailure& failure) {
    std::string text = failure.reason;
    // An update that opened by itself ends without a word to the user.
    noteError(m_needs.errors, StepError(failure.reason));
    trapErrors(m_needs.errors, [&] {
        const std::string what = failure.fault == DownloadFault::NotConnected
                                     ? m_needs.texts.byOffset(notConnected)
                                     : m_needs.texts.addition("update.failed");
        text = what + "\n" + failure.reason;
    });
    end(text, Telling::OnRequest);
}

void frmUpdate::startLoad() {
    m_remoteBytes = readRemoteCatalogue(m_tree, m_needs.publicKey);
    m_remote = Catalogue(m_remoteBytes);
    m_local = Catalogue(m_tree.readFile(localCatalogue(), Catalogue::largestFile).value_or(""));
    const std::string version = m_remote.mainVersion();
    if (version.empty())
        throw StepError("the server's catalogue names no version");
    if (equalsIgnoringCase(version, m_local.mainVersion())) {
        end(m_needs.texts.addition("update.upToDate"), Telling::OnRequest);
        return;
    }
    const auto count = m_remote.entryCount();
    if (!count || *count < 0)
        throw StepError("the server's catalogue names no number of files");
    m_sumMaximum = *count;
    m_sumValue = 0;
    m_needs.progress.showSum(m_sumValue, m_sumMaximum);
    if (m_opening == UpdateOpening::Automatic)
        m_needs.window.show();
    m_needs.tAllLoad.setEnabled(true);
}

void frmUpdate::allLoad() {
    if (m_sumValue < m_sumMaximum)
        processEntry(m_sumValue);
    else
        copyCatalogue();
}

void frmUpdate::processEntry(int index) {
    const CatalogueEntry entry = m_remote.entry(index);
    const bool mainProgram = isMainProgram(entry, m_needs.mainProgram);
    if (mainProgram && !mainProgramIsPresent(entry)) {
        offerMainProgram();
        return;
    }
    const bool skipped =
        mainProgram || equalsIgnoringCase(entry.version, m_local.entry(index).version);
    if (skipped)
        m_needs.tAllLoad.setEnabled(true);
    else
        fetchEntry(entry);
    ++m_sumValue;
    m_needs.progress.showSum(m_sumValue, m_sumMaximum);
}

// A catalogue that changes other files alone names the main program too. When the digest shows that
// it is the one that runs, there is nothing to ask.
bool frmUpdate::mainProgramIsPresent(const CatalogueEntry& entry) const {
    if (entry.sha256.empty())
        return false;
    const auto digest = m_tree.digestOf(ProgramPath::own(m_needs.mainProgram));
    return digest && equalsIgnoringCase(*digest, entry.sha256);
}

void frmUpdate::offerMainProgram() {
    // What was fetched before is whole and counts, whatever the answer.
    m_tree.publish();
    const MessageAnswer answer = m_needs.messageBox.show(m_needs.texts.byOffset(updateQuestion),
                                                         m_needs.texts.byOffset(updateTitle),
                                                         MessageStyle::InformationChoice);
    // The user may have closed the window behind the question.
    if (m_state == State::Running && answer == MessageAnswer::Yes)
        startUpdater();
    Close();
}

void frmUpdate::startUpdater() {
    m_tree.unlock();
    const std::string updater = m_needs.paths.executable("velmupdate");
    const int result =
        m_needs.shell.execute("open", updater, "", m_tree.folder(), ShowWindow::Normal);
    if (result >= leastSuccess) {
        m_needs.messageBox.show(m_needs.texts.addition("update.whenClosed"),
                                m_needs.texts.byOffset(noticeTitle), MessageStyle::Information);
        return;
    }
    m_needs.messageBox.show(m_needs.texts.addition("program.notStarted") + "\n" + updater + "\n" +
                                m_needs.shell.lastErrorDescription(),
                            m_needs.texts.byOffset(warningTitle), MessageStyle::Stop);
}

void frmUpdate::fetchEntry(const CatalogueEntry& entry) {
    const auto path = ProgramPath::fromCatalogue(entry.local);
    if (const auto* refusal = std::get_if<PathRefusal>(&path))
        throw StepError(refusal->reason);
    if (!isRemotePath(entry.remote))
        throw StepError("the server's catalogue names a place that cannot be: " + entry.remote);
    m_needs.progress.showStatus(
        fillIn(m_needs.texts.addition("update.fetching"), "%1", entry.local));
    m_download.start({m_serverBase + entry.remote, std::get<ProgramPath>(path), entry.sha256});
}

void frmUpdate::copyCatalogue() {
    m_tree.publish();
    m_tree.replaceFile(localCatalogue(),
                       std::as_bytes(std::span(m_remoteBytes.data(), m_remoteBytes.size())));
    m_tree.unlock();
    m_state = State::Done;
    m_needs.progress.showStatus(m_needs.texts.addition("update.upToDate"));
    m_needs.tClose.setEnabled(true);
}

void frmUpdate::end(const std::string& text, Telling telling) {
    if (m_state == State::Idle)
        return;
    m_state = State::Idle;
    m_needs.tStartLoad.setEnabled(false);
    m_needs.tAllLoad.setEnabled(false);
    m_needs.tClose.setEnabled(false);
    m_download.cancel();
    // What was fetched whole before a later file failed.
    trapErrors(m_needs.errors, [this] { m_tree.publish(); });
    m_tree.unlock();
    if (telling == Telling::OnRequest && m_opening == UpdateOpening::OnRequest)
        trapErrors(m_needs.errors, [&] {
            m_needs.messageBox.show(text, m_needs.texts.byOffset(noticeTitle),
                                    MessageStyle::Information);
        });
    m_needs.window.close();
}

void frmUpdate::showSingle(std::int64_t value) {
    m_needs.progress.showSingle(std::min(value, m_singleMaximum), m_singleMaximum);
}

} // namespace velmorant

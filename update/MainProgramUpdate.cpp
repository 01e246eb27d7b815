#include "update/MainProgramUpdate.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "update/readCatalogue.h"
#include "update/updateFiles.h"

#include <span>
#include <utility>
#include <variant>

namespace velmorant {

bool isMainProgram(const CatalogueEntry& entry, const std::string& mainProgram) {
    return equalsIgnoringCase(entry.local, "QVMP4.EXE") ||
           equalsIgnoringCase(entry.local, mainProgram);
}

MainProgramUpdate::MainProgramUpdate(MainProgramUpdateNeeds needs)
    : m_needs(std::move(needs)),
      m_program(ProgramPath::own(m_needs.mainProgram)),
      m_next(ProgramPath::own(m_needs.mainProgram + std::string(nextEnding))),
      m_kept(ProgramPath::own(m_needs.mainProgram + std::string(keptEnding))) {}

MainProgramResult MainProgramUpdate::run() {
    if (m_needs.tree.lock() == TreeLock::HeldByAnother)
        throw StepError("another update of this program is under way");
    m_remoteBytes = readRemoteCatalogue(m_needs.tree, m_needs.publicKey);
    m_remote = Catalogue(m_remoteBytes);
    m_local =
        Catalogue(m_needs.tree.readFile(localCatalogue(), Catalogue::largestFile).value_or(""));
    const int count = m_remote.entryCount().value_or(0);
    const int entry = mainEntry(count);
    if (entry < 0)
        return MainProgramResult::NothingToDo;
    fetchMainProgram(m_remote.entry(entry));
    fetchLaterEntries(entry + 1, count);
    m_needs.tree.publish();
    return replace();
}

int MainProgramUpdate::mainEntry(int count) const {
    for (int i = 0; i < count; ++i) {
        if (isMainProgram(m_remote.entry(i), m_needs.mainProgram))
            return i;
    }
    return -1;
}

std::string MainProgramUpdate::url(const CatalogueEntry& entry) const {
    if (!isRemotePath(entry.remote))
        throw StepError("the server's catalogue names a place that cannot be: " + entry.remote);
    return m_needs.serverBase + entry.remote;
}

void MainProgramUpdate::fetchMainProgram(const CatalogueEntry& entry) {
    // A run that was interrupted while it waited has left it.
    const auto present = m_needs.tree.digestOf(m_next);
    if (entry.sha256.empty() || !present || !equalsIgnoringCase(*present, entry.sha256))
        m_needs.fetch({url(entry), m_next, entry.sha256});
    m_needs.tree.publish();
    m_needs.tree.copyRights(m_program, m_next);
}

void MainProgramUpdate::fetchLaterEntries(int first, int count) {
    for (int i = first; i < count; ++i) {
        const CatalogueEntry entry = m_remote.entry(i);
        if (isMainProgram(entry, m_needs.mainProgram) ||
            equalsIgnoringCase(entry.version, m_local.entry(i).version))
            continue;
        const auto path = ProgramPath::fromCatalogue(entry.local);
        if (const auto* refusal = std::get_if<PathRefusal>(&path))
            throw StepError(refusal->reason);
        m_needs.fetch({url(entry), std::get<ProgramPath>(path), entry.sha256});
    }
}

MainProgramResult MainProgramUpdate::replace() {
    const std::string program = m_needs.tree.folder() + '/' + m_program.text();
    while (m_needs.host.isRunning(program))
        m_needs.host.waitABit();
    try {
        m_needs.tree.keepBeside(m_program, m_kept);
        m_needs.tree.renameFile(m_next, m_program);
    } catch (const StepError&) {
        // The user was promised that the program starts by itself.
        start();
        throw;
    }
    if (start() == ProgramStart::Failed) {
        m_needs.tree.renameFile(m_kept, m_program);
        start();
        return MainProgramResult::PutBack;
    }
    m_needs.tree.replaceFile(localCatalogue(),
                             std::as_bytes(std::span(m_remoteBytes.data(), m_remoteBytes.size())));
    return MainProgramResult::Updated;
}

ProgramStart MainProgramUpdate::start() {
    return m_needs.host.startAndWatch(m_needs.tree.folder() + '/' + m_program.text(),
                                      m_needs.tree.folder());
}

} // namespace velmorant

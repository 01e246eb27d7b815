#pragma once

#include "update/Catalogue.h"
#include "update/FileDownload.h"
#include "update/ProgramTree.h"

#include <functional>
#include <string>

namespace velmorant {

enum class ProgramStart { Runs, Failed };

/// The programs of this machine, as the updater needs them.
class ProgramHost {
  public:
    virtual ~ProgramHost() = default;
    virtual bool isRunning(const std::string& path) = 0;
    virtual void waitABit() = 0;
    /// Starts it and watches it for some seconds. Failed: it did not start, or ended with an error.
    virtual ProgramStart startAndWatch(const std::string& path, const std::string& folder) = 0;
};

struct MainProgramUpdateNeeds {
    ProgramTree& tree;
    ProgramHost& host;
    std::function<void(const DownloadRequest&)> fetch; ///< returns when fetched; throws StepError
    std::string serverBase;
    std::string mainProgram; ///< its file in the program folder
    std::string publicKey;   ///< empty: catalogues need no signature
};

enum class MainProgramResult {
    NothingToDo, ///< the catalogue names no main program
    Updated,
    PutBack ///< the new program did not start, the old one is in its place again
};

/// What `velmupdate` does: fetches the main program's entry, and those behind it, of the catalogue
/// that the update window has left; waits until the running program has ended, replaces it, starts
/// it, and puts the old one back when the new one does not start. The local catalogue is replaced
/// when all is done, so that an update that failed is offered again.
///
/// In the program folder: "NAME.next" is the new program until then, "NAME.old" the old one from
/// then on. At every moment NAME is the old or the new program.
class MainProgramUpdate {
  public:
    explicit MainProgramUpdate(MainProgramUpdateNeeds needs);

    MainProgramResult run(); ///< throws StepError

  private:
    int mainEntry(int count) const; ///< -1 when there is none
    void fetchMainProgram(const CatalogueEntry& entry);
    void fetchLaterEntries(int first, int count);
    MainProgramResult replace();
    ProgramStart start();
    std::string url(const CatalogueEntry& entry) const;

    MainProgramUpdateNeeds m_needs;
    std::string m_remoteBytes;
    Catalogue m_remote;
    Catalogue m_local;
    ProgramPath m_program;
    ProgramPath m_next;
    ProgramPath m_kept;
};

/// Whether an entry is the main program: "QVMP4.EXE" or the program's own file, in any case.
bool isMainProgram(const CatalogueEntry& entry, const std::string& mainProgram);

} // namespace velmorant

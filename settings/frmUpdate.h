#pragma once

#include "common/ErrorLog.h"
#include "ports/HostPaths.h"
#include "ports/HttpTransfer.h"
#include "ports/MessageBox.h"
#include "ports/Shell.h"
#include "ports/Texts.h"
#include "ports/Timer.h"
#include "ports/Window.h"
#include "settings/UpdateProgress.h"
#include "update/Catalogue.h"
#include "update/FileDownload.h"
#include "update/ProgramTree.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velmorant {

struct frmUpdateNeeds {
    Window& window;
    UpdateProgress& progress;
    HttpTransfer& transfer;
    Timer& tStartLoad; ///< compares the catalogues
    Timer& tAllLoad;   ///< processes one entry
    Timer& tClose;     ///< closes the window when all is done
    const Texts& texts;
    MessageBox& messageBox;
    Shell& shell;
    const HostPaths& paths;
    std::string mainProgram; ///< the executable's name in the program folder
    std::string publicKey{}; ///< signs catalogues (checkSignature); empty: none needs a signature
    ErrorLog* errors = nullptr; ///< records what the handlers pass over
};

enum class UpdateOpening {
    Automatic, ///< hidden until there is something to fetch, silent when it ends before
    OnRequest  ///< shown at once, and told how it ended
};

/// The online update: compares the server's catalogue with the local one and fetches what differs.
///
/// Local catalogue: "config.mp4" of the program folder; the server's is kept as
/// "update/remote.mp4", its signature, asked for when a public key is built in, as
/// "update/remote.sig". A file takes its name when it is whole; the local catalogue is replaced
/// last. Closing at any point abandons the run, and the next one finishes it.
class frmUpdate {
  public:
    explicit frmUpdate(frmUpdateNeeds needs);

    /// Load and first activation. A run that is under way goes on; on request its window is shown.
    void Open(UpdateOpening opening);
    void Load(UpdateOpening opening);
    void Activate(); ///< the first one starts the download of the catalogue
    void Close();    ///< by the user

    bool running() const { return m_state != State::Idle; }
    bool firstDownloadDone() const { return m_marked; } ///< the start timer's mark
    int sumValue() const { return m_sumValue; }
    int sumMaximum() const { return m_sumMaximum; }
    std::int64_t singleMaximum() const { return m_singleMaximum; }

  private:
    enum class State { Idle, Loaded, Running, Done };
    enum class Telling { Nothing, OnRequest };

    std::string whyNot() const; ///< empty when an update is possible
    void fetchCatalogue();
    void fetchSignature();
    void downloaded();
    void failed(const DownloadFailure& failure);
    void startLoad();
    void allLoad();
    void processEntry(int index);
    bool mainProgramIsPresent(const CatalogueEntry& entry) const;
    void offerMainProgram();
    void startUpdater();
    void fetchEntry(const CatalogueEntry& entry);
    void copyCatalogue();
    void end(const std::string& text, Telling telling);
    void showSingle(std::int64_t value);
    template <typename Step>
    void guard(Step step);

    frmUpdateNeeds m_needs;
    ProgramTree m_tree;
    FileDownload m_download;
    UpdateOpening m_opening = UpdateOpening::Automatic;
    State m_state = State::Idle;
    std::string m_serverBase;
    std::string m_remoteBytes;
    Catalogue m_remote;
    Catalogue m_local;
    bool m_marked = false;
    bool m_signatureWanted = false;
    int m_sumValue = 0;
    int m_sumMaximum = 0;
    std::int64_t m_singleMaximum = 100;
};

} // namespace velmorant

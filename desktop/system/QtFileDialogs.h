#pragma once

#include "desktop/gate/HandlerGate.h"
#include "desktop/system/FileKinds.h"
#include "desktop/system/ToolkitTexts.h"
#include "desktop/system/mountedCards.h"
#include "ports/FileDialogs.h"
#include <QString>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QFileDialog;

namespace velmorant {

/// The toolkit's own file dialogs, the same on every desktop. Each opens in the folder where the
/// last one ended, the first one for recordings on the memory card that is plugged in. Cards stand
/// in the list of places.
///
/// More files than `largestResult` can name are returned all the same: the limit is one of a text
/// buffer that does not exist here, and dropping files of a card unseen would be worse.
class QtFileDialogs : public FileDialogs {
  public:
    /// A text of the program's additions in its language at the moment; asked for
    /// "toolkit.language", as ToolkitTexts takes it, "files.folder" and "files.file".
    using Additions = std::function<std::string(const std::string& name)>;

    /// The folders of the memory cards that are plugged in at the moment.
    using Cards = std::function<std::vector<std::string>()>;

    /// `memoryFile` is an INI file of the toolkit's that keeps the folders from run to run; empty:
    /// they are kept for this run only. Without `additions` the dialogs speak the toolkit's
    /// English.
    explicit QtFileDialogs(
        HandlerGate& gate, const std::string& memoryFile = {}, Additions additions = {},
        Cards cards = [] { return mountedCards(); });
    std::string openFiles(const OpenFilesRequest& request) override;
    std::string saveFile(const SaveFileRequest& request) override;

    /// "description|pattern" pairs as the toolkit's name filters.
    static QStringList nameFilters(const std::string& filter);

  private:
    enum class Kind { Open, Save };

    void translate();
    /// For every dialog as it is made; the one before must be gone.
    void prepare(QFileDialog& dialog);
    QString addition(const char* name, const char* english) const;
    void listPlaces(QFileDialog& dialog) const;
    bool run(QFileDialog& dialog, Kind kind);
    QString lastFolder(Kind kind) const;
    void keepFolder(Kind kind, const QString& folder);

    HandlerGate& m_gate;
    QString m_memoryFile;
    Additions m_additions;
    Cards m_cards;
    ToolkitTexts m_toolkitTexts;
    std::unique_ptr<FileKinds> m_kinds;
    QString m_folders[2];
};

} // namespace velmorant

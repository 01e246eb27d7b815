#pragma once

#include "desktop/system/HandlerGate.h"
#include "ports/FileDialogs.h"
#include <QString>

class QFileDialog;

namespace velmorant {

/// The toolkit's own file dialogs, the same on every desktop. Each opens in the folder where the
/// last one ended.
///
/// More files than `largestResult` can name are returned all the same: the limit is one of a text
/// buffer that does not exist here, and dropping files of a card unseen would be worse.
class QtFileDialogs : public FileDialogs {
  public:
    /// `memoryFile` is an INI file of the toolkit's that keeps the folders from run to run; empty:
    /// they are kept for this run only.
    explicit QtFileDialogs(HandlerGate& gate, std::string memoryFile = {});
    std::string openFiles(const OpenFilesRequest& request) override;
    std::string saveFile(const SaveFileRequest& request) override;

    /// "description|pattern" pairs as the toolkit's name filters.
    static QStringList nameFilters(const std::string& filter);

  private:
    enum class Kind { Open, Save };

    bool run(QFileDialog& dialog, Kind kind);
    QString lastFolder(Kind kind) const;
    void keepFolder(Kind kind, const QString& folder);

    HandlerGate& gate_;
    QString memoryFile_;
    QString folders_[2];
};

} // namespace velmorant

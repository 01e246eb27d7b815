#pragma once

#include "desktop/system/HandlerGate.h"
#include "desktop/system/ToolkitTexts.h"
#include "ports/FileDialogs.h"
#include <QString>
#include <functional>
#include <string>

class QFileDialog;

namespace velmorant {

/// The toolkit's own file dialogs, the same on every desktop. Each opens in the folder where the
/// last one ended.
///
/// More files than `largestResult` can name are returned all the same: the limit is one of a text
/// buffer that does not exist here, and dropping files of a card unseen would be worse.
class QtFileDialogs : public FileDialogs {
  public:
    /// The language of the program at the moment, as ToolkitTexts takes it.
    using Language = std::function<std::string()>;

    /// `memoryFile` is an INI file of the toolkit's that keeps the folders from run to run; empty:
    /// they are kept for this run only.
    explicit QtFileDialogs(HandlerGate& gate, std::string memoryFile = {}, Language language = {});
    std::string openFiles(const OpenFilesRequest& request) override;
    std::string saveFile(const SaveFileRequest& request) override;

    /// "description|pattern" pairs as the toolkit's name filters.
    static QStringList nameFilters(const std::string& filter);

  private:
    enum class Kind { Open, Save };

    void translate();
    bool run(QFileDialog& dialog, Kind kind);
    QString lastFolder(Kind kind) const;
    void keepFolder(Kind kind, const QString& folder);

    HandlerGate& gate_;
    QString memoryFile_;
    Language language_;
    ToolkitTexts toolkitTexts_;
    QString folders_[2];
};

} // namespace velmorant

#pragma once

#include "ports/Shell.h"
#include <QString>
#include <functional>
#include <memory>

class QByteArray;
class QProcess;
class QUrl;

namespace velmorant {

/// Starts programs as children of this process and hands everything else - web addresses, folders,
/// documents - to the desktop's own association.
///
/// Results of execute(): 42 for success, 2 for a file that does not exist, 5 for one that must not
/// be run, 31 when the desktop has no application for it.
///
/// What a hidden program writes to its error output is kept up to its bound and handed on to this
/// process's own.
class QtShell : public Shell {
  public:
    using OpenAddress = std::function<bool(const QUrl&)>;

    /// `openAddress` hands an address to the desktop; the default is the toolkit's.
    explicit QtShell(OpenAddress openAddress = {});
    /// A hidden program ends with this object, a visible one goes on.
    ~QtShell() override;
    QtShell(const QtShell&) = delete;
    QtShell& operator=(const QtShell&) = delete;

    int execute(const std::string& verb, const std::string& file, const std::string& parameters,
                const std::string& folder, ShowWindow show) override;
    std::string lastErrorDescription() const override { return m_error; }
    std::optional<ProgramEnd> lastProgramEnd() override;
    void stopLastProgram() override;

  private:
    int startProgram(const QString& file, const std::string& parameters, const QString& folder,
                     ShowWindow show);
    int openByDesktop(const QUrl& url, const std::string& name);
    int fail(int result, const std::string& description);
    void releaseLastProgram();
    void takeWords();

    OpenAddress m_openAddress;
    std::unique_ptr<QProcess> m_program;
    ShowWindow m_show = ShowWindow::Hidden;
    std::string m_error;
    std::string m_words; ///< of the last hidden program
};

} // namespace velmorant

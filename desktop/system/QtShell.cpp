#include "desktop/system/QtShell.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <unistd.h>
#include <utility>
#include <vector>

namespace velmorant {
namespace {

constexpr int succeeded = 42;
constexpr int fileNotFound = 2;
constexpr int accessDenied = 5;
constexpr int noAssociation = 31;
constexpr int startLimitMilliseconds = 5000;
constexpr int stopLimitMilliseconds = 2000;
constexpr std::size_t mostWords = 4096;

bool isWebAddress(const QString& file) {
    return file.startsWith(QLatin1String("http://"), Qt::CaseInsensitive) ||
           file.startsWith(QLatin1String("https://"), Qt::CaseInsensitive);
}

/// A name on a card may be no UTF-8 at all, and the toolkit's texts cannot carry such bytes: the
/// child then starts the program by itself, with the argument as it stands.
void passBytesAsTheyStand(QProcess& program, const QString& file, const std::string& parameters) {
    const QByteArray path = QFile::encodeName(file);
    if (QFile::encodeName(QString::fromStdString(parameters)).toStdString() == parameters)
        return;
    program.setChildProcessModifier([path, parameters] {
        char* const arguments[] = {const_cast<char*>(path.constData()),
                                   const_cast<char*>(parameters.c_str()), nullptr};
        ::execv(path.constData(), arguments);
    });
}

} // namespace

QtShell::QtShell(OpenAddress openAddress) : m_openAddress(std::move(openAddress)) {
    if (!m_openAddress)
        m_openAddress = [](const QUrl& url) { return QDesktopServices::openUrl(url); };
}

QtShell::~QtShell() {
    releaseLastProgram();
}

int QtShell::execute(const std::string& verb, const std::string& file,
                     const std::string& parameters, const std::string& folder, ShowWindow show) {
    m_error.clear();
    if (QString::fromStdString(verb).compare(QLatin1String("open"), Qt::CaseInsensitive) != 0)
        return fail(noAssociation, file + ": no verb \"" + verb + "\"");
    const QString name = QString::fromStdString(file);
    if (isWebAddress(name))
        return openByDesktop(QUrl(name), file);

    const QFileInfo information(name);
    if (!information.exists())
        return fail(fileNotFound, file + ": no such file");
    if (information.isFile() && information.isExecutable())
        return startProgram(information.absoluteFilePath(), parameters,
                            QString::fromStdString(folder), show);
    if (show == ShowWindow::Hidden)
        return fail(accessDenied, file + ": it may not be run as a program");
    return openByDesktop(QUrl::fromLocalFile(information.absoluteFilePath()), file);
}

int QtShell::startProgram(const QString& file, const std::string& parameters, const QString& folder,
                          ShowWindow show) {
    releaseLastProgram();
    auto program = std::make_unique<QProcess>();
    program->setProgram(file);
    if (!parameters.empty()) {
        program->setArguments({QString::fromStdString(parameters)});
        passBytesAsTheyStand(*program, file, parameters);
    }
    program->setWorkingDirectory(folder);
    program->setStandardInputFile(QProcess::nullDevice());
    program->setStandardOutputFile(QProcess::nullDevice());
    if (show != ShowWindow::Hidden)
        program->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program->start();
    if (!program->waitForStarted(startLimitMilliseconds))
        return fail(accessDenied, file.toStdString() + ": " + program->errorString().toStdString());
    m_program = std::move(program);
    m_show = show;
    m_words.clear();
    // Taken as they come: a program that nobody listens to would wait for room in its pipe.
    if (show == ShowWindow::Hidden)
        QObject::connect(m_program.get(), &QProcess::readyReadStandardError, m_program.get(),
                         [this] { takeWords(); });
    return succeeded;
}

void QtShell::takeWords() {
    const QByteArray words = m_program->readAllStandardError();
    const std::size_t kept =
        std::min(mostWords - m_words.size(), static_cast<std::size_t>(words.size()));
    m_words.append(words.constData(), kept);
    std::fwrite(words.constData(), 1, kept, stderr);
}

std::optional<ProgramEnd> QtShell::lastProgramEnd() {
    if (!m_program || m_show != ShowWindow::Hidden || m_program->state() != QProcess::NotRunning)
        return std::nullopt;
    takeWords();
    const bool crashed = m_program->exitStatus() == QProcess::CrashExit;
    return ProgramEnd{crashed ? 0 : m_program->exitCode(), crashed, m_words};
}

int QtShell::openByDesktop(const QUrl& url, const std::string& name) {
    if (!m_openAddress(url))
        return fail(noAssociation, name + ": the desktop has no program that opens it");
    return succeeded;
}

int QtShell::fail(int result, const std::string& description) {
    m_error = description;
    return result;
}

void QtShell::stopLastProgram() {
    if (!m_program)
        return;
    if (m_program->state() != QProcess::NotRunning) {
        m_program->terminate();
        if (!m_program->waitForFinished(stopLimitMilliseconds)) {
            m_program->kill();
            m_program->waitForFinished(stopLimitMilliseconds);
        }
    }
    m_program.reset();
}

void QtShell::releaseLastProgram() {
    if (!m_program)
        return;
    if (m_show == ShowWindow::Hidden) {
        stopLastProgram();
        return;
    }
    // The destructor of a process object kills its program. What the user sees as a program of its
    // own - the new instance after a language change - has to go on, so the object is left to end
    // with the program, or with this process.
    QProcess* running = m_program.release();
    if (running->state() == QProcess::NotRunning)
        delete running;
    else
        QObject::connect(running, &QProcess::finished, running, &QObject::deleteLater);
}

} // namespace velmorant

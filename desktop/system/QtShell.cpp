#include "desktop/system/QtShell.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>
#include <utility>

namespace velmorant {
namespace {

constexpr int succeeded = 42;
constexpr int fileNotFound = 2;
constexpr int accessDenied = 5;
constexpr int noAssociation = 31;
constexpr int startLimitMilliseconds = 5000;
constexpr int stopLimitMilliseconds = 2000;

bool isWebAddress(const QString& file) {
    return file.startsWith(QLatin1String("http://"), Qt::CaseInsensitive) ||
           file.startsWith(QLatin1String("https://"), Qt::CaseInsensitive);
}

} // namespace

QtShell::QtShell(OpenAddress openAddress) : openAddress_(std::move(openAddress)) {
    if (!openAddress_)
        openAddress_ = [](const QUrl& url) { return QDesktopServices::openUrl(url); };
}

QtShell::~QtShell() {
    releaseLastProgram();
}

int QtShell::execute(const std::string& verb, const std::string& file,
                     const std::string& parameters, const std::string& folder, ShowWindow show) {
    error_.clear();
    if (QString::fromStdString(verb).compare(QLatin1String("open"), Qt::CaseInsensitive) != 0)
        return fail(noAssociation, file + ": no verb \"" + verb + "\"");
    const QString name = QString::fromStdString(file);
    if (isWebAddress(name))
        return openByDesktop(QUrl(name), file);

    const QFileInfo information(name);
    if (!information.exists())
        return fail(fileNotFound, file + ": no such file");
    if (information.isFile() && information.isExecutable())
        return startProgram(information.absoluteFilePath(), QString::fromStdString(parameters),
                            QString::fromStdString(folder), show);
    return openByDesktop(QUrl::fromLocalFile(information.absoluteFilePath()), file);
}

int QtShell::startProgram(const QString& file, const QString& parameters, const QString& folder,
                          ShowWindow show) {
    releaseLastProgram();
    auto program = std::make_unique<QProcess>();
    program->setProgram(file);
    if (!parameters.isEmpty())
        program->setArguments({parameters});
    program->setWorkingDirectory(folder);
    program->setStandardInputFile(QProcess::nullDevice());
    program->setStandardOutputFile(QProcess::nullDevice());
    program->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program->start();
    if (!program->waitForStarted(startLimitMilliseconds))
        return fail(accessDenied, file.toStdString() + ": " + program->errorString().toStdString());
    program_ = std::move(program);
    show_ = show;
    return succeeded;
}

int QtShell::openByDesktop(const QUrl& url, const std::string& name) {
    if (!openAddress_(url))
        return fail(noAssociation, name + ": the desktop has no program that opens it");
    return succeeded;
}

int QtShell::fail(int result, const std::string& description) {
    error_ = description;
    return result;
}

void QtShell::stopLastProgram() {
    if (!program_)
        return;
    if (program_->state() != QProcess::NotRunning) {
        program_->terminate();
        if (!program_->waitForFinished(stopLimitMilliseconds)) {
            program_->kill();
            program_->waitForFinished(stopLimitMilliseconds);
        }
    }
    program_.reset();
}

void QtShell::releaseLastProgram() {
    if (!program_)
        return;
    if (show_ == ShowWindow::Hidden) {
        stopLastProgram();
        return;
    }
    // The destructor of a process object kills its program. What the user sees as a program of its
    // own - the new instance after a language change - has to go on, so the object is left to end
    // with the program, or with this process.
    QProcess* running = program_.release();
    if (running->state() == QProcess::NotRunning)
        delete running;
    else
        QObject::connect(running, &QProcess::finished, running, &QObject::deleteLater);
}

} // namespace velmorant

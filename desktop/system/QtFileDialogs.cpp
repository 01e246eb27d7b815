#include "desktop/system/QtFileDialogs.h"

#include "common/textRules.h"
#include "desktop/system/FileRowDelegate.h"
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>
#include <QTreeView>
#include <QUrl>
#include <cstddef>
#include <utility>

namespace velmorant {
namespace {

/// Room for a name, a size, a kind and a date beside the folders' list.
constexpr QSize dialogSize(820, 500);

QString memoryKey(bool open) {
    return open ? QStringLiteral("folders/open") : QStringLiteral("folders/save");
}

/// Typed names may lie in other folders than the first; those stay the full paths that they are.
std::string folderAndNames(const QStringList& files) {
    const QString folder = QFileInfo(files.front()).absolutePath();
    std::string result = folder.toStdString();
    for (const QString& file : files) {
        const QFileInfo info(file);
        result += '\0';
        result += (info.absolutePath() == folder ? info.fileName() : info.absoluteFilePath())
                      .toStdString();
    }
    return result;
}

/// The ending of a filter "JPG format file (*.jpg)", without the dot; empty for none.
QString endingOf(const QString& nameFilter) {
    const qsizetype start = nameFilter.lastIndexOf(QLatin1String("*."));
    if (start < 0)
        return {};
    QString ending = nameFilter.mid(start + 2);
    ending.truncate(ending.indexOf(QLatin1Char(')')));
    return ending == QLatin1String("*") ? QString() : ending;
}

} // namespace

QtFileDialogs::QtFileDialogs(HandlerGate& gate, const std::string& memoryFile, Additions additions,
                             Cards cards)
    : m_gate(gate),
      m_memoryFile(QString::fromStdString(memoryFile)),
      m_additions(std::move(additions)),
      m_cards(std::move(cards)) {}

void QtFileDialogs::translate() {
    m_toolkitTexts.use(addition("toolkit.language", "en"));
}

void QtFileDialogs::prepare(QFileDialog& dialog) {
    // One look on every desktop, reachable by the keyboard, in the program's own colours.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    m_kinds = std::make_unique<FileKinds>(addition("files.folder", "Folder"),
                                          addition("files.file", "%1 file"));
    dialog.setIconProvider(m_kinds.get());
    dialog.setItemDelegate(new FileRowDelegate(*m_kinds, &dialog));
    // As wide as what they show; the toolkit measures them by texts of its own.
    if (const auto* rows = dialog.findChild<QTreeView*>(QStringLiteral("treeView"))) {
        rows->header()->setStretchLastSection(false);
        rows->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        rows->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    }
    dialog.resize(dialogSize);
    listPlaces(dialog);
}

void QtFileDialogs::listPlaces(QFileDialog& dialog) const {
    QList<QUrl> places = dialog.sidebarUrls();
    // The toolkit keeps them from dialog to dialog, also those of cards that were taken out.
    places.removeIf([](const QUrl& place) { return isCardFolder(place.path().toStdString()); });
    for (const std::string& card : m_cards())
        places << QUrl::fromLocalFile(QString::fromStdString(card));
    dialog.setSidebarUrls(places);
}

QString QtFileDialogs::addition(const char* name, const char* english) const {
    return m_additions ? QString::fromStdString(m_additions(name)) : QString(english);
}

QStringList QtFileDialogs::nameFilters(const std::string& filter) {
    const std::vector<std::string> parts = split(filter, '|');
    QStringList filters;
    for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = QString::fromStdString(parts[i + 1]);
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        filters << QString::fromStdString(parts[i]) + QLatin1String(" (") + patterns +
                       QLatin1String(")");
    }
    return filters;
}

std::string QtFileDialogs::openFiles(const OpenFilesRequest& request) {
    translate();
    QFileDialog dialog(QApplication::activeWindow(), QString::fromStdString(request.title));
    prepare(dialog);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    dialog.setNameFilters(nameFilters(request.filter));
    if (!run(dialog, Kind::Open))
        return {};
    const QStringList files = dialog.selectedFiles();
    return files.size() == 1 ? files.front().toStdString() : folderAndNames(files);
}

std::string QtFileDialogs::saveFile(const SaveFileRequest& request) {
    translate();
    QFileDialog dialog(QApplication::activeWindow(), QString::fromStdString(request.title));
    prepare(dialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    const QStringList filters = nameFilters(request.filter);
    dialog.setNameFilters(filters);
    if (!filters.isEmpty())
        dialog.setDefaultSuffix(endingOf(filters.front()));
    QObject::connect(
        &dialog, &QFileDialog::filterSelected, &dialog,
        [&dialog](const QString& chosen) { dialog.setDefaultSuffix(endingOf(chosen)); });
    dialog.setDirectory(lastFolder(Kind::Save));
    dialog.selectFile(QString::fromStdString(request.defaultName));
    return run(dialog, Kind::Save) ? dialog.selectedFiles().value(0).toStdString() : std::string();
}

bool QtFileDialogs::run(QFileDialog& dialog, Kind kind) {
    if (kind == Kind::Open)
        dialog.setDirectory(lastFolder(kind));
    const HandlerGate::ModalScope modal(m_gate);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    keepFolder(kind, QFileInfo(dialog.selectedFiles().front()).absolutePath());
    return true;
}

QString QtFileDialogs::lastFolder(Kind kind) const {
    QString folder = m_folders[static_cast<std::size_t>(kind)];
    if (folder.isEmpty() && !m_memoryFile.isEmpty()) {
        const QSettings memory(m_memoryFile, QSettings::IniFormat);
        folder = memory.value(memoryKey(kind == Kind::Open)).toString();
    }
    if (!folder.isEmpty() && QFileInfo(folder).isDir())
        return folder;
    // Whoever opens recordings for the first time comes with a card.
    const std::vector<std::string> cards =
        kind == Kind::Open ? m_cards() : std::vector<std::string>();
    if (!cards.empty())
        return QString::fromStdString(cards.front());
    folder = QStandardPaths::writableLocation(
        kind == Kind::Open ? QStandardPaths::MoviesLocation : QStandardPaths::PicturesLocation);
    return QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

void QtFileDialogs::keepFolder(Kind kind, const QString& folder) {
    m_folders[static_cast<std::size_t>(kind)] = folder;
    if (!m_memoryFile.isEmpty())
        QSettings(m_memoryFile, QSettings::IniFormat)
            .setValue(memoryKey(kind == Kind::Open), folder);
}

} // namespace velmorant

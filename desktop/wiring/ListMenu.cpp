#include "desktop/wiring/ListMenu.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "desktop/system/FileReplacement.h"
#include "desktop/widgets/GatedMenu.h"
#include "telemetry/Extract.h"
#include "telemetry/export/TrackExporter.h"

#include <QApplication>
#include <QClipboard>
#include <sstream>

namespace velmorant {

namespace {

constexpr int warningTitle = 3011;

/// The whole track file of one recording, in memory: a track is small beside its recording.
std::string exportedTrack(const std::string& recording, telemetry::ExportFormat format,
                          const std::string& title) {
    const auto read = telemetry::extractFile(recording);
    if (!read)
        throw StepError(telemetry::describe(read.error()));
    std::ostringstream out;
    const auto exporter = telemetry::makeExporter(format, telemetry::Positions::trusted, out);
    exporter->begin();
    exporter->beginTrip(title);
    exporter->recording(recording, read.value());
    exporter->endTrip();
    exporter->end();
    return out.str();
}

} // namespace

std::string ListMenu::path(int row) const {
    return m_rooms.rows->row(row).path;
}

void ListMenu::show(int row, const QPoint& screenPlace) {
    if (row < 1 || row > m_rooms.rows->count())
        return;
    GatedMenu menu(m_host.gate, *m_panes.list.view);
    const auto add = [this, &menu](const char* text, std::function<void()> command) {
        menu.add(m_texts.addition(text), std::move(command));
    };
    add("list.menu.play", [this] { m_rooms.list->PlaySelected(); });
    add("list.menu.mark", [this] { m_rooms.list->ToggleSelected(); });
    add("list.menu.map", [this, row] { showOnMap(row); });
    menu.addSeparator();
    add("list.menu.folder", [this, row] { showInFolder(row); });
    add("list.menu.copy",
        [this, row] { QApplication::clipboard()->setText(QString::fromStdString(path(row))); });
    QMenu& exports = menu.addSubmenu(m_texts.addition("list.menu.export"));
    for (const char* format : {"gpx", "kml", "csv"})
        menu.addTo(exports, upperCase(format),
                   [this, row, name = std::string(format)] { exportTrack(row, name); });
    menu.addSeparator();
    add("list.menu.remove", [this] { m_rooms.list->DeleteSelected(); });
    menu.run(screenPlace);
}

void ListMenu::showOnMap(int row) {
    if (!m_rooms.rows->marked(row))
        m_rooms.list->ToggleMark(row);
    // Marking may have removed the row: its extraction timed out.
    if (row <= m_rooms.rows->count() && m_rooms.mediaCtrl->ready())
        m_rooms.mediaCtrl->runScript("velmorantMap.showRecording(" +
                                     std::to_string(m_rooms.rows->row(row).serial) + ")");
}

void ListMenu::showInFolder(int row) {
    m_host.shell.execute("open", folderOf(m_host.paths, path(row)), "", "", ShowWindow::Normal);
}

void ListMenu::exportTrack(int row, const std::string& format) {
    const std::string recording = path(row);
    const std::string name = fileNameOf(m_host.paths, recording);
    const auto wanted = telemetry::exportFormatNamed(format);
    if (!wanted)
        return;
    try {
        const std::string base = withoutLastCharacters(name, 4);
        const std::string target = m_host.dialogs.saveFile(
            {m_texts.addition("list.menu.export"), upperCase(format) + "|*." + format,
             base + telemetry::extensionOf(*wanted)});
        if (target.empty())
            return;
        FileReplacement file(target);
        file.write(QByteArray::fromStdString(exportedTrack(recording, *wanted, base)));
        file.commit();
        m_panes.list.status.show(fileNameOf(m_host.paths, target));
    } catch (const StepError& failure) {
        m_host.messageBox.show(name + "\n" + failure.what(), m_texts.byOffset(warningTitle),
                               MessageStyle::Stop);
    }
}

} // namespace velmorant

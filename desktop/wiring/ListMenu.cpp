#include "desktop/wiring/ListMenu.h"

#include "common/textRules.h"
#include "desktop/widgets/GatedMenu.h"

#include <QApplication>
#include <QClipboard>

namespace velmorant {

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
    for (const char* format : TrackExportRun::formats)
        menu.addTo(exports, upperCase(format), [this, row, name = std::string(format)] {
            m_rooms.trackExport->run(path(row), name);
        });
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

} // namespace velmorant

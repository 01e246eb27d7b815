#include "desktop/widgets/GatedMenu.h"

namespace velmorant {

void GatedMenu::add(const std::string& text, std::function<void()> command) {
    addTo(m_menu, text, std::move(command));
}

void GatedMenu::addTo(QMenu& submenu, const std::string& text, std::function<void()> command) {
    submenu.addAction(
        QString::fromStdString(text), &submenu,
        [&gate = m_gate, command = std::move(command)] { gate.runWhenFree(command); });
}

QMenu& GatedMenu::addSubmenu(const std::string& text) {
    return *m_menu.addMenu(QString::fromStdString(text));
}

void GatedMenu::run(const QPoint& screenPlace) {
    const HandlerGate::ModalScope open(m_gate);
    m_menu.exec(screenPlace);
}

} // namespace velmorant

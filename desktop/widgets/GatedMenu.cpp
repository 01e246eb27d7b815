#include "desktop/widgets/GatedMenu.h"

namespace velmorant {

void GatedMenu::add(const std::string& text, std::function<void()> command) {
    addTo(menu_, text, std::move(command));
}

void GatedMenu::addTo(QMenu& submenu, const std::string& text, std::function<void()> command) {
    submenu.addAction(QString::fromStdString(text), &submenu,
                      [&gate = gate_, command = std::move(command)] { gate.runWhenFree(command); });
}

QMenu& GatedMenu::addSubmenu(const std::string& text) {
    return *menu_.addMenu(QString::fromStdString(text));
}

void GatedMenu::run(const QPoint& screenPlace) {
    const HandlerGate::ModalScope open(gate_);
    menu_.exec(screenPlace);
}

} // namespace velmorant

#pragma once

#include "desktop/gate/HandlerGate.h"

#include <QMenu>
#include <functional>
#include <string>

namespace velmorant {

/// A context menu that takes its commands through the gate. A command that has to wait there
/// outlives the menu, which closes when it is chosen.
class GatedMenu {
  public:
    /// The gate must outlive the menu; the parent owns the menu.
    GatedMenu(HandlerGate& gate, QWidget& parent) : m_gate(gate), m_menu(&parent) {}

    void add(const std::string& text, std::function<void()> command);
    void addTo(QMenu& submenu, const std::string& text, std::function<void()> command);
    QMenu& addSubmenu(const std::string& text);
    void addSeparator() { m_menu.addSeparator(); }
    /// Shows it and returns when it has closed. The program goes on behind it.
    void run(const QPoint& screenPlace);

  private:
    HandlerGate& m_gate;
    QMenu m_menu;
};

} // namespace velmorant

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
    /// The gate must outlive the menu; parent: whom the menu belongs to.
    GatedMenu(HandlerGate& gate, QWidget& parent) : gate_(gate), menu_(&parent) {}

    void add(const std::string& text, std::function<void()> command);
    void addTo(QMenu& submenu, const std::string& text, std::function<void()> command);
    QMenu& addSubmenu(const std::string& text);
    void addSeparator() { menu_.addSeparator(); }
    /// Shows it and returns when it has closed. The program goes on behind it.
    void run(const QPoint& screenPlace);

  private:
    HandlerGate& gate_;
    QMenu menu_;
};

} // namespace velmorant

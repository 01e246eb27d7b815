#pragma once

#include "desktop/wiring/Host.h"
#include "desktop/wiring/Panes.h"
#include "desktop/wiring/Rooms.h"

class QPoint;

namespace velmorant {

/// The context menu of the recording list. Every command passes the gate and works on the row that
/// was clicked, which is the selected one by then.
class ListMenu {
  public:
    ListMenu(Rooms& rooms, Panes& panes, Host& host, const Texts& texts)
        : m_rooms(rooms), m_panes(panes), m_host(host), m_texts(texts) {}
    /// Returns when the menu has closed. Row 0: nothing is shown.
    void show(int row, const QPoint& screenPlace);

  private:
    void showOnMap(int row);
    void showInFolder(int row);
    std::string path(int row) const;

    Rooms& m_rooms;
    Panes& m_panes;
    Host& m_host;
    const Texts& m_texts;
};

} // namespace velmorant

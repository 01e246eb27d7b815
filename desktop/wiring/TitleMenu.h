#pragma once

#include "desktop/wiring/Panes.h"

#include <functional>

class QPoint;

namespace velmorant {

/// The menu of the title area: what the logic has left of the system menu, and the update.
class TitleMenu {
  public:
    TitleMenu(Panes& panes, Host& host, const Texts& texts, std::function<void()> checkForUpdate)
        : m_panes(panes),
          m_host(host),
          m_texts(texts),
          m_checkForUpdate(std::move(checkForUpdate)) {}
    /// Shows it when the place of the frame lies in the title area; returns when it has closed.
    void show(const QPoint& framePlace);

  private:
    Panes& m_panes;
    Host& m_host;
    const Texts& m_texts;
    std::function<void()> m_checkForUpdate;
};

} // namespace velmorant

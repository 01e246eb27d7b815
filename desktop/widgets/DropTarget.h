#pragma once

#include "desktop/gate/GatedListener.h"
#include <QObject>
#include <string>
#include <vector>

class QWidget;

namespace velmorant {

/// Lets files and folders be dropped on a widget and on what it holds.
class DropTarget : public QObject {
    Q_OBJECT
  public:
    using Listener = GatedListener<std::vector<std::string>>; ///< paths

    /// Belongs to the widget.
    explicit DropTarget(QWidget& widget);
    /// Called after the drop has ended, so that it may ask questions.
    void onDrop(Listener listener) { m_listener = std::move(listener); }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    Listener m_listener;
};

} // namespace velmorant

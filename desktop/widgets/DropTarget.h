#pragma once

#include "desktop/system/HandlerGate.h"
#include <QObject>
#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace velmorant {

/// Lets files and folders be dropped on a widget and on what it holds.
class DropTarget : public QObject {
    Q_OBJECT
  public:
    using Listener = std::function<void(const std::vector<std::string>& paths)>;

    /// Belongs to the widget. The listener is called through the gate, after the drop has ended, so
    /// that it may ask questions.
    DropTarget(QWidget& widget, HandlerGate& gate, Listener listener);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    HandlerGate& gate_;
    Listener listener_;
};

} // namespace velmorant

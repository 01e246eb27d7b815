#pragma once

#include <QPoint>
#include <optional>

class QMouseEvent;
class QWidget;

namespace velmorant {

/// Moves a frameless window by the mouse: by the desktop's own move where it has one, else by hand.
class FrameDrag {
  public:
    explicit FrameDrag(QWidget& window) : window_(window) {}
    /// At the press that begins it.
    void begin(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void end() { offset_.reset(); }

  private:
    QWidget& window_;
    std::optional<QPoint> offset_; ///< of the pointer in the window
};

} // namespace velmorant

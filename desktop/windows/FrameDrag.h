#pragma once

#include <QPoint>
#include <optional>

class QMouseEvent;
class QWidget;

namespace velmorant {

/// Moves a frameless window by the mouse: by the desktop's own move where it has one, else by hand.
class FrameDrag {
  public:
    explicit FrameDrag(QWidget& window) : m_window(window) {}
    /// Call it on the press that begins the drag.
    void begin(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void end() { m_offset.reset(); }

  private:
    QWidget& m_window;
    std::optional<QPoint> m_offset; ///< of the pointer in the window
};

} // namespace velmorant

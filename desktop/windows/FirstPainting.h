#pragma once

#include <QObject>
#include <chrono>
#include <functional>

class QWidget;

namespace velmorant {

/// Reports once that a widget's first frame has reached the screen. Belongs to the widget.
class FirstPainting : public QObject {
  public:
    FirstPainting(QWidget& widget, std::function<void()> painted);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<void()> m_painted;
};

/// Shows a window and waits until it is painted, without user input, but no longer than `limit`: a
/// desktop that hides new windows must not block the program. True when it was painted.
bool showPainted(QWidget& window, QWidget& contents, std::chrono::milliseconds limit);

} // namespace velmorant

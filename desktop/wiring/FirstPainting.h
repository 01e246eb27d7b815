#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace velmorant {

/// Tells once that a widget's first picture has gone to the screen. Belongs to the widget.
class FirstPainting : public QObject {
  public:
    FirstPainting(QWidget& widget, std::function<void()> painted);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<void()> m_painted;
};

} // namespace velmorant

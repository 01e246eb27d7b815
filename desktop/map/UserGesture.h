#pragma once

#include <QElapsedTimer>
#include <QObject>

class QWidget;

namespace velmorant {

/// Knows whether the user has just clicked or pressed a key in a widget or in what it holds. The
/// page can call its own links too, and the browser control does not tell the two apart.
class UserGesture : public QObject {
    Q_OBJECT
  public:
    void watch(QWidget& widget);
    /// True once for each gesture, and only shortly after it.
    bool take();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QElapsedTimer m_since;
};

} // namespace velmorant

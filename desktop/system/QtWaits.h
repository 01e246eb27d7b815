#pragma once

#include "ports/Waits.h"
#include <QEventLoop>
#include <QPointer>
#include <QWidget>

namespace velmorant {

/// Waits inside a handler. User input that arrives meanwhile is delivered after the wait; timers
/// and other events that would call the logic are held back by the HandlerGate.
class QtWaits : public Waits {
  public:
    void sleep(std::chrono::milliseconds duration) override;
    void sleepUntil(std::chrono::milliseconds longest, const std::function<bool()>& over) override;
    void letEventsRun() override;

    /// Ends the sleep under way, if any: the user asked the waiting handler to end.
    void endSleep();

    /// The window that keeps answering the user during waits, for its "Cancel"; null: none.
    /// Not owned.
    void setAnsweringWindow(QWidget* window);
    QWidget* answeringWindow() const { return m_answering; }

  private:
    QPointer<QWidget> m_answering;
    QPointer<QEventLoop> m_sleeping;
};

} // namespace velmorant

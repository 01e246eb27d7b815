#pragma once

#include <QObject>
#include <deque>
#include <functional>
#include <vector>

namespace velmorant {

/// The one place that guarantees that no two handlers of the logic run at once.
///
/// Whatever calls the logic - a click, a timer tick, an event of the player, an answer of the map
/// page - calls it through runWhenFree(). While a handler runs, and while it waits inside an event
/// loop of its own, later ones queue and are delivered in their order after it has returned. A
/// modal window that a handler opens is different: the program goes on behind it, so the gate is
/// open again for as long as a ModalScope lives.
///
/// Lives in the GUI thread; runWhenFree() from another thread is not allowed.
class HandlerGate : public QObject {
    Q_OBJECT
  public:
    HandlerGate() = default;

    /// Runs the handler now when the gate is free and nothing queues, else as soon as it is free.
    void runWhenFree(std::function<void()> handler);

    /// True while a handler runs or waits.
    bool busy() const;

    /// Opens the gate inside a handler that shows a modal window.
    class ModalScope {
      public:
        explicit ModalScope(HandlerGate& gate);
        ~ModalScope();
        ModalScope(const ModalScope&) = delete;
        ModalScope& operator=(const ModalScope&) = delete;

      private:
        HandlerGate& gate_;
    };

  private:
    enum class Level { Handler, Modal };
    class LevelScope;

    void run(const std::function<void()>& handler);
    void deliverNext();
    void scheduleDelivery();

    std::vector<Level> levels_;
    std::deque<std::function<void()>> pending_;
};

} // namespace velmorant

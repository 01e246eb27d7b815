#pragma once

#include "desktop/gate/GatedListener.h"

#include <QObject>
#include <deque>
#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

namespace velmorant {

/// The one place that guarantees that no two handlers of the logic run at once.
///
/// Whatever calls the logic - a click, a key, a timer tick, an event of the player, an answer of
/// the map page - passes it: widgets and components take a GatedListener, which is made here, and
/// timers call runWhenFree(). While a handler runs, and while it waits inside an event loop of its
/// own, later ones queue and are delivered in their order after it has returned. A modal window
/// that a handler opens is different: the program goes on behind it, so the gate is open again for
/// as long as a ModalScope lives.
///
/// Lives in the GUI thread; runWhenFree() from another thread is not allowed.
class HandlerGate : public QObject {
    Q_OBJECT
  public:
    HandlerGate() = default;

    /// A listener that runs the handler through this gate, which must outlive it. Arguments are
    /// copied: they may have to wait.
    template <typename Handler>
    auto listener(Handler handler) {
        return make(std::function(std::move(handler)));
    }
    GatedDelivery delivery() {
        return listener([](const std::function<void()>& step) { step(); });
    }

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
        HandlerGate& m_gate;
    };

  private:
    enum class Level { Handler, Modal };
    class LevelScope;

    template <typename... Arguments>
    GatedListener<std::decay_t<Arguments>...> make(std::function<void(Arguments...)> handler) {
        using Listener = GatedListener<std::decay_t<Arguments>...>;
        const auto state = std::make_shared<typename Listener::State>();
        state->runWhenFree = [this](std::function<void()> call) { runWhenFree(std::move(call)); };
        state->handler = std::move(handler);
        return Listener(state);
    }

    void run(const std::function<void()>& handler);
    void deliverNext();
    void scheduleDelivery();

    std::vector<Level> m_levels;
    std::deque<std::function<void()>> m_pending;
};

} // namespace velmorant

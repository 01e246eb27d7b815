#pragma once

#include "desktop/gate/HandlerGate.h"
#include "ports/Timer.h"
#include <QTimer>
#include <memory>

namespace velmorant {

/// A window timer whose ticks pass the gate. At most one tick is held back: a timer that fired ten
/// times during a long wait ticks once afterwards.
class QtTimer : public Timer {
  public:
    /// The gate must outlive the timer.
    explicit QtTimer(HandlerGate& gate);
    void setInterval(std::chrono::milliseconds interval) override;
    void setEnabled(bool enabled) override;
    bool enabled() const override;
    void onTick(std::function<void()> tick) override;

  private:
    struct State {
        QTimer timer;
        std::function<void()> tick;
        bool held = false;
        unsigned starts = 0; ///< a held tick of an earlier start is void
    };

    static void fire(HandlerGate& gate, const std::shared_ptr<State>& state);

    std::shared_ptr<State> m_state;
};

} // namespace velmorant

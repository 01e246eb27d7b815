#include "desktop/system/QtTimer.h"

#include <utility>

namespace velmorant {

QtTimer::QtTimer(HandlerGate& gate) : m_state(std::make_shared<State>()) {
    m_state->timer.setTimerType(Qt::PreciseTimer);
    const std::weak_ptr<State> weak = m_state;
    QObject::connect(&m_state->timer, &QTimer::timeout, &gate, [&gate, weak] {
        if (const auto state = weak.lock())
            fire(gate, state);
    });
}

void QtTimer::fire(HandlerGate& gate, const std::shared_ptr<State>& state) {
    if (state->held)
        return;
    state->held = true;
    // The tick may come after the timer was destroyed, disabled or started anew.
    gate.runWhenFree([weak = std::weak_ptr<State>(state), start = state->starts] {
        const auto alive = weak.lock();
        if (!alive || alive->starts != start)
            return;
        alive->held = false;
        if (alive->timer.isActive() && alive->tick)
            alive->tick();
    });
}

void QtTimer::setInterval(std::chrono::milliseconds interval) {
    m_state->timer.setInterval(interval);
}

void QtTimer::setEnabled(bool enabled) {
    if (enabled == m_state->timer.isActive())
        return;
    ++m_state->starts;
    m_state->held = false;
    if (enabled)
        m_state->timer.start();
    else
        m_state->timer.stop();
}

bool QtTimer::enabled() const {
    return m_state->timer.isActive();
}

void QtTimer::onTick(std::function<void()> tick) {
    m_state->tick = std::move(tick);
}

} // namespace velmorant

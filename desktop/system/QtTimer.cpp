#include "desktop/system/QtTimer.h"

#include <utility>

namespace velmorant {

QtTimer::QtTimer(HandlerGate& gate) : state_(std::make_shared<State>()) {
    state_->timer.setTimerType(Qt::PreciseTimer);
    const std::weak_ptr<State> weak = state_;
    QObject::connect(&state_->timer, &QTimer::timeout, &gate, [&gate, weak] {
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
    state_->timer.setInterval(interval);
}

void QtTimer::setEnabled(bool enabled) {
    if (enabled == state_->timer.isActive())
        return;
    ++state_->starts;
    state_->held = false;
    if (enabled)
        state_->timer.start();
    else
        state_->timer.stop();
}

bool QtTimer::enabled() const {
    return state_->timer.isActive();
}

void QtTimer::onTick(std::function<void()> tick) {
    state_->tick = std::move(tick);
}

} // namespace velmorant

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <tuple>
#include <utility>

namespace velmorant {

class HandlerGate;

/// A listener of a widget or of a component that calls the logic, and does so through the gate
/// alone: only HandlerGate::listener() makes one, so that a plain function cannot be handed to what
/// asks for this type. An empty one has no receiver, and calling it does nothing.
///
/// Calls waiting in the gate are dropped when the last copy of the listener is destroyed or
/// replaced: their receiver is gone by then.
template <typename... Arguments>
class GatedListener {
  public:
    GatedListener() = default;
    explicit operator bool() const { return m_state != nullptr; }

    /// One call of the handler: now, or in its turn when the gate is free again.
    void operator()(Arguments... arguments) const {
        // The handler may replace the listener that calls it.
        const auto state = m_state;
        if (!state)
            return;
        state->runWhenFree(
            [held = std::weak_ptr(state), values = std::tuple(std::move(arguments)...)] {
                if (const auto alive = held.lock())
                    std::apply(alive->handler, values);
            });
    }

    /// For events of which only the latest counts, such as a resize: while the gate is busy a
    /// single call is held, with the most recent arguments.
    void latest(Arguments... arguments) const {
        const auto state = m_state;
        if (!state)
            return;
        const bool waits = state->newest.has_value();
        state->newest.emplace(std::move(arguments)...);
        if (!waits)
            state->runWhenFree([held = std::weak_ptr(state)] {
                if (const auto alive = held.lock())
                    std::apply(alive->handler, *std::exchange(alive->newest, std::nullopt));
            });
    }

  private:
    friend class HandlerGate;

    struct State {
        std::function<void(std::function<void()>)> runWhenFree;
        std::function<void(Arguments...)> handler;
        std::optional<std::tuple<Arguments...>> newest;
    };

    explicit GatedListener(std::shared_ptr<State> state) : m_state(std::move(state)) {}

    std::shared_ptr<State> m_state;
};

/// Defers the steps of a component that answers later, such as a transfer, until they may run.
using GatedDelivery = GatedListener<std::function<void()>>;

} // namespace velmorant

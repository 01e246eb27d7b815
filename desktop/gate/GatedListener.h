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
/// asks for this type. Empty it is nobody, and calls of it do nothing.
///
/// What waits in the gate is dropped when the last copy of the listener ends or is replaced: whom
/// it was for is gone then.
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

    /// For what only counts in its last form, as a size does: while the gate is busy one call is
    /// held, with the arguments that came last.
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

/// Takes steps of a component that answers later, such as a transfer, to the time when they may
/// run.
using GatedDelivery = GatedListener<std::function<void()>>;

} // namespace velmorant

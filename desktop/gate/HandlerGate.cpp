#include "desktop/gate/HandlerGate.h"

#include <QMetaObject>
#include <utility>

namespace velmorant {

class HandlerGate::LevelScope {
  public:
    LevelScope(HandlerGate& gate, Level level) : m_gate(gate) { m_gate.m_levels.push_back(level); }
    ~LevelScope() {
        m_gate.m_levels.pop_back();
        m_gate.scheduleDelivery();
    }
    LevelScope(const LevelScope&) = delete;
    LevelScope& operator=(const LevelScope&) = delete;

  private:
    HandlerGate& m_gate;
};

HandlerGate::ModalScope::ModalScope(HandlerGate& gate) : m_gate(gate) {
    m_gate.m_levels.push_back(Level::Modal);
    m_gate.scheduleDelivery();
}

HandlerGate::ModalScope::~ModalScope() {
    m_gate.m_levels.pop_back();
}

bool HandlerGate::busy() const {
    return !m_levels.empty() && m_levels.back() == Level::Handler;
}

void HandlerGate::runWhenFree(std::function<void()> handler) {
    if (busy() || !m_pending.empty()) {
        m_pending.push_back(std::move(handler));
        scheduleDelivery();
        return;
    }
    run(handler);
}

void HandlerGate::run(const std::function<void()>& handler) {
    const LevelScope scope(*this, Level::Handler);
    handler();
}

// One handler per pass of the event loop, so that painting and input come between two of them.
void HandlerGate::deliverNext() {
    if (busy() || m_pending.empty())
        return;
    const std::function<void()> handler = std::move(m_pending.front());
    m_pending.pop_front();
    run(handler);
}

void HandlerGate::scheduleDelivery() {
    if (!busy() && !m_pending.empty())
        QMetaObject::invokeMethod(this, &HandlerGate::deliverNext, Qt::QueuedConnection);
}

} // namespace velmorant

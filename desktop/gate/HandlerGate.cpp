#include "desktop/gate/HandlerGate.h"

#include <QMetaObject>
#include <utility>

namespace velmorant {

class HandlerGate::LevelScope {
  public:
    LevelScope(HandlerGate& gate, Level level) : gate_(gate) { gate_.levels_.push_back(level); }
    ~LevelScope() {
        gate_.levels_.pop_back();
        gate_.scheduleDelivery();
    }
    LevelScope(const LevelScope&) = delete;
    LevelScope& operator=(const LevelScope&) = delete;

  private:
    HandlerGate& gate_;
};

HandlerGate::ModalScope::ModalScope(HandlerGate& gate) : gate_(gate) {
    gate_.levels_.push_back(Level::Modal);
    gate_.scheduleDelivery();
}

HandlerGate::ModalScope::~ModalScope() {
    gate_.levels_.pop_back();
}

bool HandlerGate::busy() const {
    return !levels_.empty() && levels_.back() == Level::Handler;
}

void HandlerGate::runWhenFree(std::function<void()> handler) {
    if (busy() || !pending_.empty()) {
        pending_.push_back(std::move(handler));
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
    if (busy() || pending_.empty())
        return;
    const std::function<void()> handler = std::move(pending_.front());
    pending_.pop_front();
    run(handler);
}

void HandlerGate::scheduleDelivery() {
    if (!busy() && !pending_.empty())
        QMetaObject::invokeMethod(this, &HandlerGate::deliverNext, Qt::QueuedConnection);
}

} // namespace velmorant

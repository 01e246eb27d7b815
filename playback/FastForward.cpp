#include "playback/FastForward.h"

#include "common/textRules.h"
#include "common/trapErrors.h"

#include <chrono>

namespace velmorant {

namespace {

constexpr std::chrono::milliseconds stepInterval{100};

} // namespace

FastForward::FastForward(Timer& tFast, PlayerControls& controls, frmChild& player)
    : m_tFast(tFast), m_controls(controls), m_player(player) {
    m_tFast.setInterval(stepInterval);
    m_tFast.onTick([this] { tick(); });
}

void FastForward::start(FastDirection direction) {
    if (!m_player.isPlaying())
        return;
    m_tag = direction == FastDirection::Forward ? "1" : "-1";
    m_tFast.setEnabled(true);
    if (onChanged)
        onChanged();
}

void FastForward::stop() {
    if (!running())
        return;
    m_tFast.setEnabled(false);
    if (onChanged)
        onChanged();
}

void FastForward::tick() {
    trapErrors([this] {
        if (!m_player.isPlaying()) {
            stop();
            return;
        }
        const int position = wholeSeconds(m_controls.currentPosition());
        if (position < 1 || position > m_controls.duration().value_or(0.0) - 1.0) {
            m_controls.pause();
            stop();
            return;
        }
        m_player.seek(position + toInt32(m_tag));
    });
}

} // namespace velmorant

#include "playback/PositionFollow.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "common/trapErrors.h"

#include <algorithm>
#include <array>
#include <vector>

namespace velmorant {

namespace {

const std::string& field(const std::vector<std::string>& fields, std::size_t index) {
    if (index >= fields.size())
        throw StepError("Subscript out of range: a text of " + std::to_string(fields.size()) +
                        " fields");
    return fields[index];
}

} // namespace

void PositionFollow::UpdateControlBand(const std::string& positionText) {
    trapErrors([&] {
        const bool muted = m_needs.player.mute();
        m_needs.controlBar.setOn("speaker", muted);
        m_needs.controlBar.setValue("volume", muted ? 0 : m_needs.player.volume());
        const std::vector<std::string> fields = split(positionText, '|');
        updateProgress(field(fields, 0), field(fields, 1));
        if (m_needs.state.currentTrack == nullptr)
            return;
        moveCursor(toInt16(field(fields, 0)));
        ShowDot(dotText(*m_needs.state.currentTrack));
    });
}

void PositionFollow::updateProgress(const std::string& position, const std::string& length) {
    const std::int16_t whole = toInt16(length);
    if (whole <= 1)
        return;
    m_publishedDuration = whole;
    const double share = static_cast<double>(toInt16(position)) / whole * 100.0;
    m_needs.controlBar.setValue("playprogress", std::clamp<int>(toInt16(share), 0, 100));
}

void PositionFollow::moveCursor(std::int16_t second) {
    clsDot& track = *m_needs.state.currentTrack;
    if (second == 0)
        track.lPlayLocal(1);
    else
        track.ForcePlayLocal(second);
    if (track.lPlayLocal() == 0)
        track.lPlayLocal(1);
    moveMarker();
}

std::string PositionFollow::dotText(const clsDot& track) {
    return numberText(track.dSpeed()) + "|" + track.sLonLat() + "|" + track.strDate() + "|" +
           std::to_string(track.lPlayLocal()) + "|" + std::to_string(track.iAngelValue());
}

void PositionFollow::moveMarker() {
    if (m_needs.state.currentTrack != nullptr)
        m_needs.chart.setCursor(m_needs.state.currentTrack->lPlayLocal() - 1.0);
}

void PositionFollow::ShowDot(const std::string& text) {
    trapErrors([&] {
        const std::vector<std::string> fields = split(text, '|');
        showSpeed(field(fields, 0));
        if (m_needs.page.ready())
            m_needs.page.MoveCar(field(fields, 1) + "|" + field(fields, 2) + "|" +
                                 field(fields, 4) + "|" + field(fields, 5));
    });
}

void PositionFollow::showSpeed(const std::string& speed) {
    constexpr std::array<const char*, 3> items = {"A1", "A2", "A3"};
    const double shown = toDouble(speed) * m_needs.state.settings.speedFactor;
    const std::string digits = zeroPadded(toInt16(shown), 3);
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (digits[i] < '0' || digits[i] > '9')
            throw StepError("no digit shows a speed of " + digits);
        m_needs.controlBar.setDigit(items[i], digits[i] - '0');
    }
}

} // namespace velmorant

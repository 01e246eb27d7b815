#include "playback/MomentCard.h"

#include "common/SpeedUnit.h"
#include "common/textRules.h"
#include "common/trapErrors.h"
#include "recordings/recordedMoment.h"

#include <cmath>

namespace velmorant {

namespace {

/// Five decimals are about a metre.
std::string degrees(double value) {
    return numberText(std::round(value * 1e5) / 1e5);
}

} // namespace

void MomentCard::Show() {
    trapErrors([this] {
        if (m_needs.player.isPlayingOrPaused())
            showPosition(m_previewed
                             ? m_needs.controls.duration().value_or(0.0) * *m_previewed / 100.0
                             : m_needs.player.position());
        else
            clear();
    });
}

void MomentCard::Preview(double percent) {
    m_previewed = percent;
    Show();
}

void MomentCard::EndPreview() {
    m_previewed.reset();
}

void MomentCard::ShowUnit() {
    trapErrors([this] {
        m_needs.controlBar.setText("place.unit",
                                   std::string(speedSign(m_needs.state.settings.unitCode)));
    });
}

void MomentCard::showPosition(double position) {
    m_needs.controlBar.setText("place.elapsed", minutesAndSeconds(position));
    m_needs.controlBar.setText("place.duration",
                               minutesAndSeconds(m_needs.controls.duration().value_or(0.0)));
    m_needs.frame.setText("place.recording", fileNameOf(m_needs.paths, m_needs.controls.url()));
    std::string shown;
    std::string beside;
    if (const auto moment = recordedMoment(m_needs.state.currentTrack.get(), position)) {
        const bool utc = moment->clock == RecordedClock::Utc;
        const int offset = utc && m_needs.zoneOffset ? m_needs.zoneOffset(moment->seconds) : 0;
        shown = dateAndTime(moment->seconds + offset * std::int64_t{60});
        beside = utc ? timeOfDay(moment->seconds) + " UTC"
                     : m_needs.texts.addition("moment.cameraClock");
    }
    m_needs.frame.setText("place.moment", shown);
    m_needs.frame.setText("place.utc", beside);
    showPlace(position);
}

void MomentCard::showPlace(double position) {
    const auto place = recordedPlace(m_needs.state.currentTrack.get(), position);
    m_needs.frame.setText("place.longitude", place ? degrees(place->longitude) : "");
    m_needs.frame.setText("place.latitude", place ? degrees(place->latitude) : "");
}

void MomentCard::clear() {
    m_previewed.reset();
    for (const char* element : {"place.elapsed", "place.duration"})
        m_needs.controlBar.setText(element, "");
    for (const char* element :
         {"place.recording", "place.moment", "place.utc", "place.longitude", "place.latitude"})
        m_needs.frame.setText(element, "");
}

} // namespace velmorant

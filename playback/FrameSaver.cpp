#include "playback/FrameSaver.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "common/trapErrors.h"
#include "recordings/recordedMoment.h"

#include <algorithm>

namespace velmorant {

void FrameSaver::Save() {
    trapErrors([this] {
        if (!m_needs.player.isPlayingOrPaused())
            return;
        // The picture is the one of the moment of the command, not of the dialog's end.
        const bool playing = m_needs.player.isPlaying();
        m_needs.controls.pause();
        try {
            save();
        } catch (const StepError& error) {
            m_needs.messages.show(error.what(), m_needs.texts.byOffset(3011), MessageStyle::Stop);
        }
        if (playing)
            m_needs.controls.play();
    });
}

void FrameSaver::save() {
    const double position = m_needs.player.position();
    const std::string path =
        m_needs.dialogs.saveFile({m_needs.texts.addition("frame.title"),
                                  m_needs.texts.addition("frame.filter"), defaultName(position)});
    if (!path.empty())
        m_needs.writer.saveFrame(path, details(position));
}

FrameDetails FrameSaver::details(double position) const {
    FrameDetails details;
    if (const auto moment = recordedMoment(m_needs.state.currentTrack.get(), position)) {
        if (moment->clock == RecordedClock::Utc)
            details.utcSeconds = moment->seconds;
        else
            details.cameraSeconds = moment->seconds;
    }
    if (const auto place = recordedPlace(m_needs.state.currentTrack.get(), position)) {
        details.longitude = place->longitude;
        details.latitude = place->latitude;
        details.heading = place->heading;
    }
    return details;
}

/// The recording's name and the position, for example "103045_01-05.jpg".
std::string FrameSaver::defaultName(double position) const {
    const std::string file = fileNameOf(m_needs.paths, m_needs.controls.url());
    std::string time = minutesAndSeconds(position);
    std::replace(time.begin(), time.end(), ':', '-');
    return file.substr(0, file.rfind('.')) + "_" + time + ".jpg";
}

} // namespace velmorant

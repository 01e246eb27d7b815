#include "playback/StillPicture.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "common/trapErrors.h"

#include <string>

namespace velmorant {

namespace {

// The frame is 1024 x 708 and holds the picture at (10, 120).
constexpr int fromRight = 1024 - 10;
constexpr int fromBottom = 708 - 120;

std::string fileNameOfMoment(const LocalTime& time) {
    return zeroPadded(time.year, 4) + zeroPadded(time.month, 2) + zeroPadded(time.day, 2) +
           zeroPadded(time.hour, 2) + zeroPadded(time.minute, 2) + zeroPadded(time.second, 2);
}

} // namespace

PixelRectangle StillPicture::captureRectangle() const {
    const Screen& screen = m_needs.screen;
    return {screen.width() / screen.twipsPerPixelX() - fromRight,
            screen.height() / screen.twipsPerPixelY() - fromBottom, m_needs.player.pictureWidth(),
            m_needs.player.pictureHeight()};
}

void StillPicture::Take() {
    trapErrors([this] {
        try {
            save();
        } catch (const StepError& error) {
            m_needs.messages.show(error.what(), m_needs.texts.byOffset(3011), MessageStyle::Stop);
        }
    });
}

void StillPicture::save() {
    m_needs.capture.capture(captureRectangle());
    const std::string name =
        m_needs.dialogs.saveFile({m_needs.texts.byOffset(3039), m_needs.texts.byOffset(3038),
                                  fileNameOfMoment(m_needs.clock.localTime())});
    if (!name.empty())
        m_needs.capture.savePicture(name);
}

} // namespace velmorant

#pragma once

#include "desktop/player/MpvPlayer.h"
#include "playback/FrameSaver.h"

#include <QByteArray>

namespace velmorant {

/// Writes the player's decoded picture with its moment and place in the EXIF, through Exiv2.
class ExifFrameWriter : public FrameWriter {
  public:
    explicit ExifFrameWriter(const MpvPlayer& player) : m_player(player) {}
    void saveFrame(const std::string& path, const FrameDetails& details) override;
    /// A picture file's bytes (JPEG or PNG) with the details added; throws StepError.
    static QByteArray withDetails(const QByteArray& picture, const FrameDetails& details);

  private:
    const MpvPlayer& m_player;
};

} // namespace velmorant

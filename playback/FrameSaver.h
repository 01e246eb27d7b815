#pragma once

#include "playback/frmChild.h"
#include "ports/FileDialogs.h"
#include "ports/HostPaths.h"
#include "ports/MessageBox.h"
#include "ports/Texts.h"
#include "recordings/ProgramState.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velmorant {

/// What is written into a saved picture; unknown values are absent.
struct FrameDetails {
    std::optional<std::int64_t> utcSeconds;    ///< since 1970
    std::optional<std::int64_t> cameraSeconds; ///< the recorder's own clock, where it is not UTC
    std::optional<double> longitude;           ///< decimal degrees, with latitude only
    std::optional<double> latitude;
    std::optional<double> heading; ///< degrees clockwise from north, with the place only
};

/// Writes the decoded picture that is shown.
class FrameWriter {
  public:
    virtual ~FrameWriter() = default;
    /// At its full size, as PNG for a name that ends in ".png", else as JPEG, with the details in
    /// its EXIF: written beside, then renamed. Throws StepError with path and reason.
    virtual void saveFrame(const std::string& path, const FrameDetails& details) = 0;
};

/// What saving a frame works with; all of it must outlive its user.
struct FrameSaverNeeds {
    FrameWriter& writer;
    FileDialogs& dialogs;
    MessageBox& messages;
    Texts& texts;
    HostPaths& paths;
    PlayerControls& controls;
    frmChild& player;
    ProgramState& state;
};

/// The command "Save frame": asks for a name and writes the picture that is shown.
class FrameSaver {
  public:
    explicit FrameSaver(const FrameSaverNeeds& needs) : m_needs(needs) {}

    void Save(); ///< does nothing while nothing is open

  private:
    void save();
    FrameDetails details(double position) const;
    std::string defaultName(double position) const;

    FrameSaverNeeds m_needs;
};

} // namespace velmorant

#pragma once

#include <optional>
#include <string>

namespace velmorant {

/// Play states as the player publishes them, and two that it answers while a file opens, which
/// takes a while: Undefined until something is asked of that file, then what it will do once it is
/// open. No event tells of those two.
enum class PlayState {
    Undefined = 0,
    Stopped = 1,
    Paused = 2,
    Playing = 3,
    MediaEnded = 8,
    OpeningToPlay = 9,
    OpeningToPause = 10
};

/// Opens and plays one recording at a time. Requests made while a file is still opening are held
/// until it is open.
class PlayerControls {
  public:
    virtual ~PlayerControls() = default;
    /// Opens the file; plays nothing yet. The empty path closes the present file.
    virtual void setUrl(const std::string& path) = 0;
    virtual std::string url() const = 0; ///< the path last set
    virtual void play() = 0;             ///< does nothing without a file
    virtual void pause() = 0; ///< pauses what plays or is about to; otherwise does nothing
    virtual void stop() = 0;  ///< back to the start
    /// Seconds from the start, at a seek at once its target; absent while the player knows none, as
    /// while a file opens.
    virtual std::optional<double> currentPosition() const = 0;
    virtual void setCurrentPosition(double seconds) = 0;
    virtual std::optional<double> duration() const = 0; ///< seconds
    virtual PlayState playState() const = 0;
};

class PlayerSettings {
  public:
    virtual ~PlayerSettings() = default;
    virtual bool mute() const = 0;
    virtual void setMute(bool mute) = 0;
    virtual int volume() const = 0;         ///< 0..100
    virtual void setVolume(int volume) = 0; ///< clamped to 0..100
    virtual double rate() const = 0;        ///< 1 is normal
    virtual void setRate(double rate) = 0;  ///< clamped to 0.01..100; what is no number is ignored
};

/// The player's picture on the window.
class PlayerView {
  public:
    virtual ~PlayerView() = default;
    virtual void setVisible(bool visible) = 0;
    virtual bool fullScreen() const = 0;
    virtual void setFullScreen(bool fullScreen) = 0;
    virtual void setUiMode(const std::string& mode) = 0; ///< "None": no controls of its own
    virtual void setSize(int width, int height) = 0;     ///< pixels
    /// The picture shown behind the player; false when the file cannot be read as a picture.
    virtual bool setBackgroundPicture(const std::string& path) = 0;
};

} // namespace velmorant

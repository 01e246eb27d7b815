#pragma once

#include "playback/PositionFollow.h"
#include "ports/BandContainer.h"
#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/MediaPlayer.h"
#include "ports/MessageBox.h"
#include "ports/Screen.h"
#include "ports/Skin.h"
#include "ports/Texts.h"
#include "ports/Timer.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace velmorant {

/// What the player window works with; all of it must outlive its user.
struct ChildNeeds {
    PlayerControls& player; ///< qvWmp, the visible one
    PlayerSettings& settings;
    PlayerView& view;
    PlayerControls& hiddenPlayer; ///< qvbk
    PlayerSettings& hiddenSettings;
    Timer& tPlayTime;
    Skin& controlBar;
    BandContainer& bands; ///< of the main window, with the band "ControlBand"
    Screen& screen;
    FileSystem& files;
    HostPaths& paths;
    MessageBox& messages;
    Texts& texts;
    PositionFollow& follow;
    std::function<void()> mediaEnded; ///< of the play queue: the next marked row follows
    /// Of the play queue: the playing row cannot be played, for this reason.
    std::function<void(const std::string& reason)> playbackFailed;
};

/// The player window: samples the player and pushes its state to the control bar and the map, keeps
/// the last position and the rate, and goes on to the next recording at the end of one.
class frmChild {
  public:
    explicit frmChild(ChildNeeds needs);

    void Load();
    void Resize();                                ///< of the window
    void ResizeBackground(int width, int height); ///< of the picture box picBack, pixels

    void PlayStateChange(PlayState state);
    /// The player cannot open or decode what it was given.
    void PlaybackFailed(const std::string& path, const std::string& reason);
    void PictureClicked();      ///< leaves full screen
    void PictureMousePressed(); ///< keeps the player's own controls away

    /// Opens a recording and plays it at the rate kept here, with its position followed. A failing
    /// step does not prevent the others.
    void playRecording(const std::string& path);
    void openRecording(const std::string& path); ///< and shows the picture; plays nothing yet
    void enablePlayTimer();
    /// Returns to the idle window: background picture, timer off.
    void showBackground();

    /// Every seek of the program goes through here: the tag keeps the whole second sought, so that
    /// a resume goes there.
    void seek(double seconds);

    bool isPlaying() const;         ///< state 3
    bool isPlayingOrPaused() const; ///< states 3 and 2
    bool isOpening() const;         ///< a recording opens and will play or pause
    bool willPlay() const;          ///< it plays, or will as soon as it is open
    double position() const;        ///< seconds; 0 while unknown
    std::int16_t wholeDuration() const;

    const std::string& tag() const { return m_tag; } ///< last position in whole seconds; "-1" first
    const std::string& rateTag() const { return m_rateTag; }
    void setRateTag(double rate);
    void applyRate(); ///< the rate tag becomes the player's rate

    int pictureWidth() const { return m_pictureWidth; } ///< pixels
    int pictureHeight() const { return m_pictureHeight; }

    /// Called on every change of the play state, and on every tick of the position timer.
    std::function<void(PlayState)> onPlayStateChanged;
    std::function<void()> onTicked;

  private:
    void tick();
    void publish();

    ChildNeeds m_needs;
    std::string m_tag = "-1";
    std::string m_rateTag = "1";
    int m_pictureWidth = 0;
    int m_pictureHeight = 0;
};

/// A number of seconds as whole ones: nearest, halves to even; beyond 16 bits the greatest value;
/// 0 when unknown.
std::int16_t wholeSeconds(std::optional<double> seconds);

} // namespace velmorant

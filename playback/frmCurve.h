#pragma once

#include "playback/CurveChart.h"
#include "playback/FastForward.h"
#include "playback/PlaybackRate.h"
#include "playback/PositionFollow.h"
#include "playback/StillPicture.h"
#include "playback/frmChild.h"
#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/MediaPlayer.h"
#include "ports/MessageBox.h"
#include "ports/Skin.h"
#include "ports/Texts.h"
#include "ports/Timer.h"
#include "ports/Window.h"
#include "ports/loadSkin.h"
#include "recordings/ProgramState.h"
#include "recordings/RecordingList.h"
#include "recordings/RowStart.h"

#include <functional>
#include <string>

namespace velmorant {

enum class StepDirection { Back, Forward };

/// What the control bar works with; all of it must outlive its user.
struct CurveNeeds {
    PlayerControls& controls;
    PlayerSettings& settings;
    Skin& skin;
    Timer& tFast;
    FileSystem& files;
    HostPaths& paths;
    MessageBox& messages;
    Texts& texts;
    Window& window;
    frmChild& player;
    CurveChart& chart;
    StillPicture& still;
    PositionFollow& follow;
    const RecordingList& list;
    ProgramState& state;
    std::function<RowStart(int row)> startRow; ///< as the play queue starts a row
    /// Pauses the player and shows the next or the previous picture.
    std::function<void(StepDirection)> stepFrame;
    std::function<void()> saveFrame; ///< the decoded picture at its full size
};

/// The control bar: its buttons, its three sliders, fast forward and rewind, and what keys and the
/// wheel do to the player.
class frmCurve {
  public:
    explicit frmCurve(CurveNeeds needs);

    /// Without its skin the box has been shown and the window was closed.
    SkinLoad Load();

    /// A button by its name, in any case: "SPEAKER", "CMDPLAY", "PAUSE", "STOP", "HEAD", "END",
    /// "BACK", "FAST", "SPEED", "GS", "PHOTO", and "SAVEFRAME".
    void ButtonClicked(const std::string& name);
    /// A slider by its name, in any case: "PLAYPROGRESS", "PLAYSPEED", "VOLUME".
    void SliderChanged(const std::string& name);
    /// The reset of the bar's display: empties the chart and returns the progress to 0.
    void ResetDisplay();
    void PlayStateChanged(PlayState state); ///< frmChild::onPlayStateChanged

    // What keys and the wheel add.
    void TogglePlay();
    void StepSeconds(double seconds);
    void StepFrame(StepDirection direction);
    void ChangeVolume(int by); ///< a change upwards ends muting
    void ChooseRate(int step); ///< 1..5, from the slowest to the fastest

  private:
    void toggleSpeaker();
    void play();
    void resume();
    void playFirstMarked();
    void stopPlaying();
    bool startFirst(int from, int to, int step);
    void chooseMode(ChartMode mode);
    void seekToProgress();
    void chooseRate(const PlaybackRate& rate);
    void showVolume();
    void showStates();
    void showNotice(int offset);

    CurveNeeds m_needs;
    FastForward m_fast;
    bool m_resumeInPlace = false; ///< the user stepped to a picture: a resume keeps it
};

} // namespace velmorant

#pragma once

#include "desktop/gate/GatedListener.h"
#include "desktop/player/DecodedFrame.h"
#include "desktop/player/MpvHandle.h"
#include "desktop/player/PictureListener.h"
#include "ports/MediaPlayer.h"

#include <QObject>

#include <memory>

namespace velmorant {

enum class VideoOutput {
    Software, ///< drawn by the processor into a plain widget
    OpenGl,   ///< for a real graphics processor and high resolutions
    None      ///< decoded and dropped: a player that is never visible
};
enum class AudioOutput { System, None };
enum class FrameStep { Back, Forward };

/// The media player on libmpv. It opens local files alone: nothing in a recording, be it a playlist
/// under a recording's name, makes it open anything else.
///
/// playState(): Undefined while nothing is open and while a file opens of which nothing is asked
/// yet; Stopped once it is open, after stop() and after the end; Paused and Playing. At the end of
/// a playing recording the event MediaEnded is sent, then Stopped; the picture stays the last one
/// and the next play() starts over. A pause at the end of the file does not count as the end.
///
/// All events are sent from the event loop, never from inside a call. Where there is no sound card
/// the recording plays without sound.
class MpvPlayer : public PlayerControls, public PlayerSettings {
  public:
    /// Path and reason.
    using FailureListener = GatedListener<std::string, std::string>;

    /// Throws StepError when libmpv cannot be started.
    MpvPlayer(VideoOutput video, AudioOutput audio);
    ~MpvPlayer() override;
    MpvPlayer(const MpvPlayer&) = delete;
    MpvPlayer& operator=(const MpvPlayer&) = delete;

    void setUrl(const std::string& path) override;
    std::string url() const override { return m_url; }
    void play() override;
    void pause() override;
    void stop() override;
    /// While a seek is under way, its target.
    std::optional<double> currentPosition() const override;
    /// Exact: the first picture at or after that time; past the end the last picture.
    void setCurrentPosition(double seconds) override;
    std::optional<double> duration() const override { return m_duration; }
    PlayState playState() const override { return m_state; }

    bool mute() const override { return m_mute; }
    void setMute(bool mute) override;
    int volume() const override { return m_volume; }
    void setVolume(int volume) override;
    double rate() const override { return m_rate; }
    /// The pitch stays. Clamped to 0.01 .. 100; NaN is ignored.
    void setRate(double rate) override;

    /// A seek is held or under way; its picture has not arrived yet.
    bool seeking() const { return m_heldSeek || m_seekTarget; }
    /// Pauses and shows the next or the previous picture.
    void stepFrame(FrameStep direction);
    /// The picture shown now; absent when there is none.
    std::optional<DecodedFrame> decodedFrame() const;

    void onPlayStateChange(GatedListener<PlayState> listener);
    /// The recording cannot be opened or holds no picture that can be decoded: path and libmpv's
    /// reason. The player is then closed but for its url(); play() tries it again.
    void onOpenFailed(FailureListener listener);
    /// The recording ended clearly before its duration, as when a card is pulled out or a file is
    /// cut off; sent before MediaEnded.
    void onEndedEarly(FailureListener listener);

    /// For the widget that shows the picture. The core lives until both have released it.
    std::shared_ptr<MpvHandle> handle() const { return m_handle; }
    VideoOutput videoOutput() const { return m_video; }
    std::shared_ptr<PictureLink> link() const { return m_link; }
    /// The widget can draw now: with OpenGl nothing is opened before.
    void pictureReady();
    void pictureLost();

  private:
    enum class Wanted { Nothing, Play, Pause };
    enum class Phase { Closed, WaitingForPicture, Opening, Opened };
    struct ObservedProperty;
    static const ObservedProperty observedProperties[];

    void observeProperties();
    void open();
    void readEvents();
    void handleEvent(const mpv_event& event);
    void commandReplied(const mpv_event& event);
    void fileEnded(const mpv_event_end_file& end);
    void playbackRestarted();
    void propertyReplied(const mpv_event& event);
    void logMessage(const mpv_event_log_message& message);
    void positionChanged(const mpv_event_property& property);
    void durationChanged(const mpv_event_property& property);
    void endReachedChanged(const mpv_event_property& property);

    void seek(double seconds);
    void step(int frames);
    void opened();
    void askForEnd();
    void ended();
    void failed(const std::string& reason);
    void report(FailureListener MpvPlayer::*listener, const std::string& reason);
    void showWhatIsWanted();
    void setState(PlayState state);
    void sendState(PlayState state);

    QObject m_context; ///< destroying it drops what is queued for it
    VideoOutput m_video;
    std::shared_ptr<MpvHandle> m_handle;
    std::shared_ptr<PictureLink> m_link = std::make_shared<PictureLink>();
    bool m_pictureReady;

    std::string m_url;
    Phase m_phase = Phase::Closed;
    Wanted m_wanted = Wanted::Nothing;
    PlayState m_state = PlayState::Undefined;
    std::uint64_t m_lastRequest = 0;    ///< numbers the requests whose replies matter
    std::uint64_t m_loadRequest = 0;    ///< of the present file
    std::uint64_t m_seekRequest = 0;    ///< of the last seek
    std::int64_t m_entry = -1;          ///< libmpv's number of the present file
    std::int64_t m_startedEntry = -1;   ///< of the file that libmpv works on
    std::optional<double> m_heldSeek;   ///< until the file is open
    std::optional<double> m_seekTarget; ///< until its picture is there
    bool m_seekExecuted = false;
    bool m_steppingBack = false; ///< until its picture is there; libmpv loses a step before
    int m_heldSteps = 0;         ///< asked for meanwhile; back is negative
    bool m_atEnd = false;        ///< ended by itself: the next play() starts over
    std::optional<double> m_position;
    std::optional<double> m_duration;
    std::string m_firstError; ///< of libmpv's log since the file was set
    bool m_mute = false;
    int m_volume = 100;
    double m_rate = 1;

    GatedListener<PlayState> m_stateListener;
    FailureListener m_failureListener;
    FailureListener m_earlyEndListener;
};

} // namespace velmorant

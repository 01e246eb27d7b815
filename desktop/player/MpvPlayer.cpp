#include "desktop/player/MpvPlayer.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <locale>
#include <sstream>

namespace velmorant {

namespace {

MpvHandle::Options optionsFor(VideoOutput video, AudioOutput audio) {
    MpvHandle::Options options = {
        // Nothing of the user's own player set-up, no keys and no texts of its own.
        {"config", "no"},
        {"terminal", "no"},
        {"osd-level", "0"},
        {"input-default-bindings", "no"},
        {"input-vo-keyboard", "no"},
        {"sub-auto", "no"},
        {"audio-file-auto", "no"},
        // A playlist or a manifest under a recording's name must not open other files or addresses.
        {"demuxer", "lavf"},
        {"demuxer-lavf-o", "protocol_whitelist=file"},
        {"access-references", "no"},
        {"idle", "yes"},
        {"pause", "yes"},
        {"keep-open", "yes"},
        {"keep-open-pause", "no"},
        {"hr-seek", "yes"},
        {"audio-pitch-correction", "yes"},
        {"volume-max", "100"},
        {"audio-client-name", "Velmorant DVR Tools"},
        // The default probing of all drivers crashes or hangs where there is no sound card; without
        // the fall-back the end of a file arrives as an error there.
        {"ao", audio == AudioOutput::System ? "pipewire,pulse,alsa" : "null"},
        {"audio-fallback-to-null", "yes"},
        {"vo", video == VideoOutput::None ? "null" : "libmpv"},
        {"hwdec", video == VideoOutput::OpenGl ? "auto-safe" : "no"},
    };
    return options;
}

std::string secondsText(double seconds) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(6);
    text << std::fixed << seconds;
    return text.str();
}

} // namespace

MpvPlayer::MpvPlayer(VideoOutput video, AudioOutput audio)
    : m_video(video),
      m_handle(std::make_shared<MpvHandle>(optionsFor(video, audio))),
      m_pictureReady(video != VideoOutput::OpenGl) {
    m_link->player = this;
    observeProperties();
    mpv_set_wakeup_callback(
        m_handle->get(),
        [](void* self) {
            auto* player = static_cast<MpvPlayer*>(self);
            QMetaObject::invokeMethod(
                &player->m_context, [player] { player->readEvents(); }, Qt::QueuedConnection);
        },
        this);
}

MpvPlayer::~MpvPlayer() {
    m_link->player = nullptr;
    mpv_set_wakeup_callback(m_handle->get(), nullptr, nullptr);
    // The widget may hold the core a little longer: silence it now.
    m_handle->command({"stop"});
}

void MpvPlayer::setUrl(const std::string& path) {
    m_url = path;
    m_wanted = Wanted::Nothing;
    m_heldSeek.reset();
    open();
}

void MpvPlayer::open() {
    m_entry = -1;
    m_loadRequest = 0;
    m_seekTarget.reset();
    m_position.reset();
    m_duration.reset();
    m_firstError.clear();
    m_steppingBack = false;
    m_heldSteps = 0;
    m_atEnd = false;
    setState(PlayState::Undefined);
    m_handle->setFlag("pause", true);
    if (m_url.empty()) {
        m_phase = Phase::Closed;
        m_handle->command({"stop"});
        if (m_link->picture)
            m_link->picture->clearPicture();
        return;
    }
    if (m_link->picture)
        m_link->picture->holdPicture();
    if (!m_pictureReady) {
        m_phase = Phase::WaitingForPicture;
        return;
    }
    m_phase = Phase::Opening;
    // An absolute path is never taken for an address.
    const QString path = QFileInfo(QString::fromStdString(m_url)).absoluteFilePath();
    m_loadRequest = ++m_lastRequest;
    m_handle->command({"loadfile", path.toStdString()}, m_loadRequest);
    showWhatIsWanted();
}

void MpvPlayer::pictureReady() {
    m_pictureReady = true;
    if (m_phase == Phase::WaitingForPicture) {
        open();
    } else if (m_phase != Phase::Closed) {
        // A new drawing context: the picture's output has to be opened again.
        m_handle->setText("vid", "no");
        m_handle->setText("vid", "auto");
    }
}

void MpvPlayer::pictureLost() {
    m_pictureReady = false;
}

void MpvPlayer::play() {
    if (m_url.empty() || m_wanted == Wanted::Play)
        return;
    m_wanted = Wanted::Play;
    if (m_phase == Phase::Closed)
        open();
    if (m_phase != Phase::Opened) {
        showWhatIsWanted();
        return;
    }
    if (m_atEnd)
        seek(0);
    m_handle->setFlag("pause", false);
    setState(PlayState::Playing);
    // libmpv does not report an end that was reached by a seek in the pause.
    if (!m_seekTarget)
        askForEnd();
}

void MpvPlayer::pause() {
    if (m_wanted != Wanted::Play)
        return;
    m_wanted = Wanted::Pause;
    if (m_phase != Phase::Opened) {
        showWhatIsWanted();
        return;
    }
    m_handle->setFlag("pause", true);
    setState(PlayState::Paused);
}

void MpvPlayer::stop() {
    m_wanted = Wanted::Nothing;
    m_heldSeek.reset();
    if (m_phase != Phase::Opened) {
        showWhatIsWanted();
        return;
    }
    m_handle->setFlag("pause", true);
    seek(0);
    setState(PlayState::Stopped);
}

std::optional<double> MpvPlayer::currentPosition() const {
    if (m_heldSeek)
        return m_heldSeek;
    if (m_phase != Phase::Opened)
        return std::nullopt;
    if (m_seekTarget)
        return m_seekTarget;
    return m_atEnd ? 0 : m_position;
}

void MpvPlayer::setCurrentPosition(double seconds) {
    if (m_url.empty() || !std::isfinite(seconds))
        return;
    const double target = std::max(0.0, seconds);
    if (m_phase == Phase::Opened)
        seek(target);
    else
        m_heldSeek = target;
}

void MpvPlayer::seek(double seconds) {
    m_atEnd = false;
    m_steppingBack = false;
    m_heldSteps = 0;
    m_seekTarget = m_duration ? std::min(seconds, *m_duration) : seconds;
    m_seekExecuted = false;
    m_seekRequest = ++m_lastRequest;
    m_handle->command({"seek", secondsText(seconds), "absolute+exact"}, m_seekRequest);
}

void MpvPlayer::setMute(bool mute) {
    m_mute = mute;
    m_handle->setFlag("mute", mute);
}

void MpvPlayer::setVolume(int volume) {
    m_volume = std::clamp(volume, 0, 100);
    m_handle->setNumber("volume", m_volume);
}

void MpvPlayer::setRate(double rate) {
    if (!std::isfinite(rate) || rate == m_rate)
        return;
    m_rate = std::clamp(rate, 0.01, 100.0);
    m_handle->setNumber("speed", m_rate);
}

void MpvPlayer::stepFrame(FrameStep direction) {
    if (m_phase != Phase::Opened)
        return;
    m_wanted = Wanted::Pause;
    m_atEnd = false;
    m_handle->setFlag("pause", true);
    setState(PlayState::Paused);
    step(direction == FrameStep::Forward ? 1 : -1);
}

void MpvPlayer::step(int frames) {
    m_heldSteps += frames;
    if (m_steppingBack || m_heldSteps == 0)
        return;
    const bool back = m_heldSteps < 0;
    m_heldSteps += back ? 1 : -1;
    m_steppingBack = back;
    m_handle->command({back ? "frame-back-step" : "frame-step"});
}

std::optional<DecodedFrame> MpvPlayer::decodedFrame() const {
    std::array<const char*, 3> words = {"screenshot-raw", "video", nullptr};
    mpv_node node;
    if (m_phase != Phase::Opened || mpv_command_ret(m_handle->get(), words.data(), &node) < 0)
        return std::nullopt;
    DecodedFrame frame;
    std::int64_t stride = 0;
    const mpv_byte_array* pixels = nullptr;
    for (int i = 0; node.format == MPV_FORMAT_NODE_MAP && i < node.u.list->num; ++i) {
        const std::string key = node.u.list->keys[i];
        const mpv_node& value = node.u.list->values[i];
        if (key == "w")
            frame.width = static_cast<int>(value.u.int64);
        else if (key == "h")
            frame.height = static_cast<int>(value.u.int64);
        else if (key == "stride")
            stride = value.u.int64;
        else if (key == "data")
            pixels = value.u.ba;
    }
    const auto width = static_cast<std::size_t>(frame.width);
    const auto height = static_cast<std::size_t>(frame.height);
    const bool whole = pixels && stride >= frame.width * std::int64_t{4} &&
                       pixels->size >= static_cast<std::size_t>(stride) * height;
    frame.rgb.reserve(width * height * 3);
    for (std::size_t y = 0; whole && y < height; ++y) {
        const auto* row =
            static_cast<const std::uint8_t*>(pixels->data) + y * static_cast<std::size_t>(stride);
        for (std::size_t x = 0; x < width; ++x) // libmpv gives blue, green, red, unused
            frame.rgb.insert(frame.rgb.end(), {row[x * 4 + 2], row[x * 4 + 1], row[x * 4]});
    }
    mpv_free_node_contents(&node);
    return whole ? std::optional(std::move(frame)) : std::nullopt;
}

void MpvPlayer::onPlayStateChange(GatedListener<PlayState> listener) {
    m_stateListener = std::move(listener);
}

void MpvPlayer::onOpenFailed(FailureListener listener) {
    m_failureListener = std::move(listener);
}

void MpvPlayer::onEndedEarly(FailureListener listener) {
    m_earlyEndListener = std::move(listener);
}

/// While the file opens, which is no event: nothing plays or pauses yet.
void MpvPlayer::showWhatIsWanted() {
    m_state = m_wanted == Wanted::Play    ? PlayState::OpeningToPlay
              : m_wanted == Wanted::Pause ? PlayState::OpeningToPause
                                          : PlayState::Undefined;
}

void MpvPlayer::setState(PlayState state) {
    const bool opening =
        m_state == PlayState::OpeningToPlay || m_state == PlayState::OpeningToPause;
    const PlayState told = opening ? PlayState::Undefined : m_state;
    m_state = state;
    if (state != told)
        sendState(state);
}

void MpvPlayer::sendState(PlayState state) {
    QMetaObject::invokeMethod(
        &m_context, [this, state] { m_stateListener(state); }, Qt::QueuedConnection);
}

} // namespace velmorant

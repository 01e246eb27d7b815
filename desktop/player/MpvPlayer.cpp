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
    : video_(video),
      handle_(std::make_shared<MpvHandle>(optionsFor(video, audio))),
      pictureReady_(video != VideoOutput::OpenGl) {
    link_->player = this;
    observeProperties();
    mpv_set_wakeup_callback(
        handle_->get(),
        [](void* self) {
            auto* player = static_cast<MpvPlayer*>(self);
            QMetaObject::invokeMethod(
                &player->context_, [player] { player->readEvents(); }, Qt::QueuedConnection);
        },
        this);
}

MpvPlayer::~MpvPlayer() {
    link_->player = nullptr;
    mpv_set_wakeup_callback(handle_->get(), nullptr, nullptr);
    // The widget may hold the core a little longer: silence it now.
    handle_->command({"stop"});
}

void MpvPlayer::setUrl(const std::string& path) {
    url_ = path;
    wanted_ = Wanted::Nothing;
    heldSeek_.reset();
    open();
}

void MpvPlayer::open() {
    entry_ = -1;
    loadRequest_ = 0;
    seekTarget_.reset();
    position_.reset();
    duration_.reset();
    firstError_.clear();
    steppingBack_ = false;
    heldSteps_ = 0;
    atEnd_ = false;
    setState(PlayState::Undefined);
    handle_->setFlag("pause", true);
    if (url_.empty()) {
        phase_ = Phase::Closed;
        handle_->command({"stop"});
        if (link_->picture)
            link_->picture->clearPicture();
        return;
    }
    if (link_->picture)
        link_->picture->holdPicture();
    if (!pictureReady_) {
        phase_ = Phase::WaitingForPicture;
        return;
    }
    phase_ = Phase::Opening;
    // An absolute path is never taken for an address.
    const QString path = QFileInfo(QString::fromStdString(url_)).absoluteFilePath();
    loadRequest_ = ++lastRequest_;
    handle_->command({"loadfile", path.toStdString()}, loadRequest_);
    showWhatIsWanted();
}

void MpvPlayer::pictureReady() {
    pictureReady_ = true;
    if (phase_ == Phase::WaitingForPicture) {
        open();
    } else if (phase_ != Phase::Closed) {
        // A new drawing context: the picture's output has to be opened again.
        handle_->setText("vid", "no");
        handle_->setText("vid", "auto");
    }
}

void MpvPlayer::pictureLost() {
    pictureReady_ = false;
}

void MpvPlayer::play() {
    if (url_.empty() || wanted_ == Wanted::Play)
        return;
    wanted_ = Wanted::Play;
    if (phase_ == Phase::Closed)
        open();
    if (phase_ != Phase::Opened) {
        showWhatIsWanted();
        return;
    }
    if (atEnd_)
        seek(0);
    handle_->setFlag("pause", false);
    setState(PlayState::Playing);
    // libmpv does not report an end that was reached by a seek in the pause.
    if (!seekTarget_)
        askForEnd();
}

void MpvPlayer::pause() {
    if (wanted_ != Wanted::Play)
        return;
    wanted_ = Wanted::Pause;
    if (phase_ != Phase::Opened) {
        showWhatIsWanted();
        return;
    }
    handle_->setFlag("pause", true);
    setState(PlayState::Paused);
}

void MpvPlayer::stop() {
    wanted_ = Wanted::Nothing;
    heldSeek_.reset();
    if (phase_ != Phase::Opened) {
        showWhatIsWanted();
        return;
    }
    handle_->setFlag("pause", true);
    seek(0);
    setState(PlayState::Stopped);
}

std::optional<double> MpvPlayer::currentPosition() const {
    if (heldSeek_)
        return heldSeek_;
    if (phase_ != Phase::Opened)
        return std::nullopt;
    if (seekTarget_)
        return seekTarget_;
    return atEnd_ ? 0 : position_;
}

void MpvPlayer::setCurrentPosition(double seconds) {
    if (url_.empty() || !std::isfinite(seconds))
        return;
    const double target = std::max(0.0, seconds);
    if (phase_ == Phase::Opened)
        seek(target);
    else
        heldSeek_ = target;
}

void MpvPlayer::seek(double seconds) {
    atEnd_ = false;
    steppingBack_ = false;
    heldSteps_ = 0;
    seekTarget_ = duration_ ? std::min(seconds, *duration_) : seconds;
    seekExecuted_ = false;
    seekRequest_ = ++lastRequest_;
    handle_->command({"seek", secondsText(seconds), "absolute+exact"}, seekRequest_);
}

void MpvPlayer::setMute(bool mute) {
    mute_ = mute;
    handle_->setFlag("mute", mute);
}

void MpvPlayer::setVolume(int volume) {
    volume_ = std::clamp(volume, 0, 100);
    handle_->setNumber("volume", volume_);
}

void MpvPlayer::setRate(double rate) {
    if (!std::isfinite(rate) || rate == rate_)
        return;
    rate_ = std::clamp(rate, 0.01, 100.0);
    handle_->setNumber("speed", rate_);
}

void MpvPlayer::stepFrame(FrameStep direction) {
    if (phase_ != Phase::Opened)
        return;
    wanted_ = Wanted::Pause;
    atEnd_ = false;
    handle_->setFlag("pause", true);
    setState(PlayState::Paused);
    step(direction == FrameStep::Forward ? 1 : -1);
}

void MpvPlayer::step(int frames) {
    heldSteps_ += frames;
    if (steppingBack_ || heldSteps_ == 0)
        return;
    const bool back = heldSteps_ < 0;
    heldSteps_ += back ? 1 : -1;
    steppingBack_ = back;
    handle_->command({back ? "frame-back-step" : "frame-step"});
}

std::optional<DecodedFrame> MpvPlayer::decodedFrame() const {
    std::array<const char*, 3> words = {"screenshot-raw", "video", nullptr};
    mpv_node node;
    if (phase_ != Phase::Opened || mpv_command_ret(handle_->get(), words.data(), &node) < 0)
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
    stateListener_ = std::move(listener);
}

void MpvPlayer::onOpenFailed(FailureListener listener) {
    failureListener_ = std::move(listener);
}

void MpvPlayer::onEndedEarly(FailureListener listener) {
    earlyEndListener_ = std::move(listener);
}

/// While the file opens, which is no event: nothing plays or pauses yet.
void MpvPlayer::showWhatIsWanted() {
    state_ = wanted_ == Wanted::Play    ? PlayState::OpeningToPlay
             : wanted_ == Wanted::Pause ? PlayState::OpeningToPause
                                        : PlayState::Undefined;
}

void MpvPlayer::setState(PlayState state) {
    const bool opening = state_ == PlayState::OpeningToPlay || state_ == PlayState::OpeningToPause;
    const PlayState told = opening ? PlayState::Undefined : state_;
    state_ = state;
    if (state != told)
        sendState(state);
}

void MpvPlayer::sendState(PlayState state) {
    QMetaObject::invokeMethod(
        &context_, [this, state] { stateListener_(state); }, Qt::QueuedConnection);
}

} // namespace velmorant

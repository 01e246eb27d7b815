// What libmpv reports to MpvPlayer.
#include "desktop/player/MpvPlayer.h"

#include <cstring>
#include <sstream>

namespace velmorant {

namespace {

/// A recording that ends more than this before its duration was cut off.
constexpr double earlyEndSeconds = 2;
/// Numbers of questions; those of commands stay below.
constexpr std::uint64_t videoTrackQuestion = std::uint64_t{1} << 63;
constexpr std::uint64_t endReachedQuestion = std::uint64_t{1} << 62;

std::string clockText(double seconds) {
    const int whole = static_cast<int>(seconds);
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << whole / 60 << (whole % 60 < 10 ? ":0" : ":") << whole % 60;
    return text.str();
}

std::optional<double> numberOf(const mpv_event_property& property) {
    if (property.format != MPV_FORMAT_DOUBLE)
        return std::nullopt;
    return *static_cast<const double*>(property.data);
}

} // namespace

struct MpvPlayer::ObservedProperty {
    const char* name;
    mpv_format format;
    void (MpvPlayer::*handler)(const mpv_event_property&);
};

const MpvPlayer::ObservedProperty MpvPlayer::observedProperties[] = {
    {"time-pos", MPV_FORMAT_DOUBLE, &MpvPlayer::positionChanged},
    {"duration", MPV_FORMAT_DOUBLE, &MpvPlayer::durationChanged},
    {"eof-reached", MPV_FORMAT_FLAG, &MpvPlayer::endReachedChanged},
};

void MpvPlayer::observeProperties() {
    for (const ObservedProperty& property : observedProperties)
        mpv_observe_property(handle_->get(), 0, property.name, property.format);
    mpv_request_log_messages(handle_->get(), "error");
}

void MpvPlayer::readEvents() {
    for (;;) {
        const mpv_event* const event = mpv_wait_event(handle_->get(), 0);
        if (event->event_id == MPV_EVENT_NONE)
            return;
        handleEvent(*event);
    }
}

void MpvPlayer::handleEvent(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_PROPERTY_CHANGE: {
        const auto& property = *static_cast<const mpv_event_property*>(event.data);
        for (const ObservedProperty& observed : observedProperties)
            if (std::strcmp(observed.name, property.name) == 0)
                (this->*observed.handler)(property);
        break;
    }
    case MPV_EVENT_LOG_MESSAGE:
        logMessage(*static_cast<const mpv_event_log_message*>(event.data));
        break;
    case MPV_EVENT_COMMAND_REPLY:
        commandReplied(event);
        break;
    case MPV_EVENT_START_FILE:
        startedEntry_ = static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id;
        break;
    case MPV_EVENT_FILE_LOADED:
        if (startedEntry_ == entry_ && heldSeek_) {
            seek(*heldSeek_);
            heldSeek_.reset();
        }
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        playbackRestarted();
        break;
    case MPV_EVENT_GET_PROPERTY_REPLY:
        propertyReplied(event);
        break;
    case MPV_EVENT_END_FILE:
        fileEnded(*static_cast<const mpv_event_end_file*>(event.data));
        break;
    default:
        break;
    }
}

void MpvPlayer::commandReplied(const mpv_event& event) {
    if (event.reply_userdata == loadRequest_ && loadRequest_ != 0) {
        if (event.error < 0) {
            failed(mpv_error_string(event.error));
            return;
        }
        const mpv_node& result = static_cast<const mpv_event_command*>(event.data)->result;
        for (int i = 0; result.format == MPV_FORMAT_NODE_MAP && i < result.u.list->num; ++i)
            if (std::strcmp(result.u.list->keys[i], "playlist_entry_id") == 0)
                entry_ = result.u.list->values[i].u.int64;
    } else if (event.reply_userdata == seekRequest_ && seekRequest_ != 0) {
        seekExecuted_ = true;
        if (event.error < 0)
            seekTarget_.reset();
    }
}

void MpvPlayer::logMessage(const mpv_event_log_message& message) {
    if (!firstError_.empty())
        return;
    firstError_ = message.text;
    firstError_.erase(firstError_.find_last_not_of("\r\n .") + 1);
}

void MpvPlayer::playbackRestarted() {
    if (startedEntry_ != entry_)
        return;
    if (seekExecuted_ && seekTarget_) {
        position_ = seekTarget_;
        seekTarget_.reset();
    }
    if (steppingBack_) {
        steppingBack_ = false;
        step(0);
    }
    if (phase_ == Phase::Opening)
        mpv_get_property_async(handle_->get(), loadRequest_ | videoTrackQuestion, "vid",
                               MPV_FORMAT_STRING);
    else if (state_ == PlayState::Playing)
        askForEnd();
}

void MpvPlayer::propertyReplied(const mpv_event& event) {
    const auto& property = *static_cast<const mpv_event_property*>(event.data);
    if (event.reply_userdata == endReachedQuestion) {
        const bool end = event.error >= 0 && *static_cast<int*>(property.data) != 0;
        if (end && state_ == PlayState::Playing && (!seekTarget_ || seekExecuted_))
            ended();
    } else if (event.reply_userdata == (loadRequest_ | videoTrackQuestion) &&
               phase_ == Phase::Opening) {
        if (event.error >= 0 && std::strcmp(*static_cast<char**>(property.data), "no") != 0)
            opened();
        else
            failed("no picture that can be decoded");
    }
}

void MpvPlayer::opened() {
    phase_ = Phase::Opened;
    if (link_->picture)
        link_->picture->showPicture();
    if (heldSeek_) {
        seek(*heldSeek_);
        heldSeek_.reset();
    }
    if (wanted_ == Wanted::Play)
        handle_->setFlag("pause", false);
    setState(wanted_ == Wanted::Play    ? PlayState::Playing
             : wanted_ == Wanted::Pause ? PlayState::Paused
                                        : PlayState::Stopped);
}

void MpvPlayer::fileEnded(const mpv_event_end_file& end) {
    if (end.playlist_entry_id != entry_ || phase_ == Phase::Closed)
        return;
    if (end.reason == MPV_END_FILE_REASON_ERROR)
        failed(mpv_error_string(end.error));
    else if (end.reason == MPV_END_FILE_REASON_EOF && phase_ == Phase::Opening)
        failed("no picture that can be decoded");
    else if (end.reason == MPV_END_FILE_REASON_EOF)
        ended();
}

void MpvPlayer::failed(const std::string& reason) {
    phase_ = Phase::Closed;
    wanted_ = Wanted::Nothing;
    heldSeek_.reset();
    seekTarget_.reset();
    position_.reset();
    duration_.reset();
    entry_ = -1;
    handle_->command({"stop"});
    if (link_->picture)
        link_->picture->clearPicture();
    setState(PlayState::Undefined);
    report(&MpvPlayer::failureListener_, reason);
}

void MpvPlayer::report(FailureListener MpvPlayer::*listener, const std::string& reason) {
    // Queued behind libmpv's log, whose lines arrive after the event that they explain.
    QMetaObject::invokeMethod(
        &context_,
        [this, listener, path = url_, reason] {
            const bool same = path == url_ && !firstError_.empty();
            (this->*listener)(path, same ? reason + ": " + firstError_ : reason);
        },
        Qt::QueuedConnection);
}

void MpvPlayer::positionChanged(const mpv_event_property& property) {
    position_ = numberOf(property);
}

void MpvPlayer::durationChanged(const mpv_event_property& property) {
    duration_ = numberOf(property);
}

void MpvPlayer::endReachedChanged(const mpv_event_property& property) {
    const bool end = property.format == MPV_FORMAT_FLAG && *static_cast<int*>(property.data) != 0;
    if (!end || state_ != PlayState::Playing)
        return;
    if (!seekTarget_)
        ended();
    else if (seekExecuted_)
        // Either the seek went to the end, or this is old news from before it.
        askForEnd();
}

void MpvPlayer::askForEnd() {
    mpv_get_property_async(handle_->get(), endReachedQuestion, "eof-reached", MPV_FORMAT_FLAG);
}

void MpvPlayer::ended() {
    handle_->setFlag("pause", true);
    wanted_ = Wanted::Nothing;
    atEnd_ = true;
    seekTarget_.reset();
    if (position_ && duration_ && *position_ + earlyEndSeconds < *duration_)
        report(&MpvPlayer::earlyEndListener_,
               "ends at " + clockText(*position_) + " of " + clockText(*duration_));
    sendState(PlayState::MediaEnded);
    state_ = PlayState::Undefined;
    setState(PlayState::Stopped);
}

} // namespace velmorant

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
        mpv_observe_property(m_handle->get(), 0, property.name, property.format);
    mpv_request_log_messages(m_handle->get(), "error");
}

void MpvPlayer::readEvents() {
    for (;;) {
        const mpv_event* const event = mpv_wait_event(m_handle->get(), 0);
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
        m_startedEntry = static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id;
        break;
    case MPV_EVENT_FILE_LOADED:
        if (m_startedEntry == m_entry && m_heldSeek) {
            seek(*m_heldSeek);
            m_heldSeek.reset();
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
    if (event.reply_userdata == m_loadRequest && m_loadRequest != 0) {
        if (event.error < 0) {
            failed(mpv_error_string(event.error));
            return;
        }
        const mpv_node& result = static_cast<const mpv_event_command*>(event.data)->result;
        for (int i = 0; result.format == MPV_FORMAT_NODE_MAP && i < result.u.list->num; ++i)
            if (std::strcmp(result.u.list->keys[i], "playlist_entry_id") == 0)
                m_entry = result.u.list->values[i].u.int64;
    } else if (event.reply_userdata == m_seekRequest && m_seekRequest != 0) {
        m_seekExecuted = true;
        if (event.error < 0)
            m_seekTarget.reset();
    }
}

void MpvPlayer::logMessage(const mpv_event_log_message& message) {
    if (!m_firstError.empty())
        return;
    m_firstError = message.text;
    m_firstError.erase(m_firstError.find_last_not_of("\r\n .") + 1);
}

void MpvPlayer::playbackRestarted() {
    if (m_startedEntry != m_entry)
        return;
    if (m_seekExecuted && m_seekTarget) {
        m_position = m_seekTarget;
        m_seekTarget.reset();
    }
    if (m_steppingBack) {
        m_steppingBack = false;
        step(0);
    }
    if (m_phase == Phase::Opening)
        mpv_get_property_async(m_handle->get(), m_loadRequest | videoTrackQuestion, "vid",
                               MPV_FORMAT_STRING);
    else if (m_state == PlayState::Playing)
        askForEnd();
}

void MpvPlayer::propertyReplied(const mpv_event& event) {
    const auto& property = *static_cast<const mpv_event_property*>(event.data);
    if (event.reply_userdata == endReachedQuestion) {
        const bool end = event.error >= 0 && *static_cast<int*>(property.data) != 0;
        if (end && m_state == PlayState::Playing && (!m_seekTarget || m_seekExecuted))
            ended();
    } else if (event.reply_userdata == (m_loadRequest | videoTrackQuestion) &&
               m_phase == Phase::Opening) {
        if (event.error >= 0 && std::strcmp(*static_cast<char**>(property.data), "no") != 0)
            opened();
        else
            failed("no picture that can be decoded");
    }
}

void MpvPlayer::opened() {
    m_phase = Phase::Opened;
    if (m_link->picture)
        m_link->picture->showPicture();
    if (m_heldSeek) {
        seek(*m_heldSeek);
        m_heldSeek.reset();
    }
    if (m_wanted == Wanted::Play)
        m_handle->setFlag("pause", false);
    setState(m_wanted == Wanted::Play    ? PlayState::Playing
             : m_wanted == Wanted::Pause ? PlayState::Paused
                                         : PlayState::Stopped);
}

void MpvPlayer::fileEnded(const mpv_event_end_file& end) {
    if (end.playlist_entry_id != m_entry || m_phase == Phase::Closed)
        return;
    if (end.reason == MPV_END_FILE_REASON_ERROR)
        failed(mpv_error_string(end.error));
    else if (end.reason == MPV_END_FILE_REASON_EOF && m_phase == Phase::Opening)
        failed("no picture that can be decoded");
    else if (end.reason == MPV_END_FILE_REASON_EOF)
        ended();
}

void MpvPlayer::failed(const std::string& reason) {
    m_phase = Phase::Closed;
    m_wanted = Wanted::Nothing;
    m_heldSeek.reset();
    m_seekTarget.reset();
    m_position.reset();
    m_duration.reset();
    m_entry = -1;
    m_handle->command({"stop"});
    if (m_link->picture)
        m_link->picture->clearPicture();
    setState(PlayState::Undefined);
    report(&MpvPlayer::m_failureListener, reason);
}

void MpvPlayer::report(FailureListener MpvPlayer::*listener, const std::string& reason) {
    // Queued behind libmpv's log, whose lines arrive after the event that they explain.
    QMetaObject::invokeMethod(
        &m_context,
        [this, listener, path = m_url, reason] {
            const bool same = path == m_url && !m_firstError.empty();
            (this->*listener)(path, same ? reason + ": " + m_firstError : reason);
        },
        Qt::QueuedConnection);
}

void MpvPlayer::positionChanged(const mpv_event_property& property) {
    m_position = numberOf(property);
}

void MpvPlayer::durationChanged(const mpv_event_property& property) {
    m_duration = numberOf(property);
}

void MpvPlayer::endReachedChanged(const mpv_event_property& property) {
    const bool end = property.format == MPV_FORMAT_FLAG && *static_cast<int*>(property.data) != 0;
    if (!end || m_state != PlayState::Playing)
        return;
    if (!m_seekTarget)
        ended();
    else if (m_seekExecuted)
        // Either the seek went to the end, or this is old news from before it.
        askForEnd();
}

void MpvPlayer::askForEnd() {
    mpv_get_property_async(m_handle->get(), endReachedQuestion, "eof-reached", MPV_FORMAT_FLAG);
}

void MpvPlayer::ended() {
    m_handle->setFlag("pause", true);
    m_wanted = Wanted::Nothing;
    m_atEnd = true;
    m_seekTarget.reset();
    if (m_position && m_duration && *m_position + earlyEndSeconds < *m_duration)
        report(&MpvPlayer::m_earlyEndListener,
               "ends at " + clockText(*m_position) + " of " + clockText(*m_duration));
    sendState(PlayState::MediaEnded);
    m_state = PlayState::Undefined;
    setState(PlayState::Stopped);
}

} // namespace velmorant

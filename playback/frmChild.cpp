#include "playback/frmChild.h"

#include "common/textRules.h"
#include "common/trapErrors.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>

namespace velmorant {

namespace {

constexpr std::chrono::milliseconds sampleInterval{800};
constexpr int mapPaneHeight = 248; ///< pixels

} // namespace

std::int16_t wholeSeconds(std::optional<double> seconds) {
    if (!seconds || std::isnan(*seconds))
        return 0;
    using Limits = std::numeric_limits<std::int16_t>;
    return toInt16(std::clamp<double>(*seconds, Limits::min(), Limits::max()));
}

frmChild::frmChild(ChildNeeds needs) : m_needs(std::move(needs)) {
    m_needs.tPlayTime.setInterval(sampleInterval);
    m_needs.tPlayTime.onTick([this] { tick(); });
}

void frmChild::Load() {
    trapErrors([this] {
        const std::string picture = m_needs.paths.programFile("skin/support/playback.MP4");
        if (m_needs.files.fileExists(picture))
            m_needs.view.setBackgroundPicture(picture);
    });
    m_tag = "-1";
    m_rateTag = "1";
    trapErrors([this] { m_needs.controlBar.setOn("photo", true); });
    trapErrors([this] {
        const std::string clip = m_needs.paths.programFile("system/bk.MP4");
        if (!m_needs.files.fileExists(clip)) {
            m_needs.messages.show(m_needs.texts.byOffset(3037), m_needs.texts.byOffset(3011),
                                  MessageStyle::Stop);
            return;
        }
        m_needs.hiddenPlayer.setUrl(clip);
        m_needs.hiddenPlayer.play();
        m_needs.hiddenSettings.setMute(true);
    });
    trapErrors([this] { m_needs.view.setVisible(false); });
}

void frmChild::Resize() {
    trapErrors([this] {
        m_needs.bands.setHeight("ControlBand", mapPaneHeight * m_needs.screen.twipsPerPixelY());
        m_needs.bands.recalculateLayout();
    });
}

void frmChild::ResizeBackground(int width, int height) {
    m_pictureWidth = width;
    m_pictureHeight = height;
    trapErrors([&] { m_needs.view.setSize(width, height); });
}

void frmChild::PlayStateChange(PlayState state) {
    trapErrors([&] {
        if (state == PlayState::Playing || state == PlayState::Paused) {
            m_needs.controlBar.setOn("photo", false);
            m_needs.controlBar.setOn("photo", true);
        }
    });
    if (onPlayStateChanged)
        trapErrors([&] { onPlayStateChanged(state); });
    if (state == PlayState::MediaEnded)
        trapErrors([this] { m_needs.mediaEnded(); });
}

void frmChild::PlaybackFailed(const std::string& path, const std::string& reason) {
    trapErrors([&] {
        // A late report on a recording that has been left says nothing of the present one.
        if (path != m_needs.player.url())
            return;
        showBackground();
        m_needs.playbackFailed(reason);
    });
}

void frmChild::PictureClicked() {
    trapErrors([this] { m_needs.view.setFullScreen(false); });
}

void frmChild::PictureMousePressed() {
    trapErrors([this] { m_needs.view.setUiMode("None"); });
}

void frmChild::playRecording(const std::string& path) {
    trapErrors([&] { openRecording(path); });
    trapErrors([this] { m_needs.player.play(); });
    trapErrors([this] { enablePlayTimer(); });
    trapErrors([this] { applyRate(); });
}

void frmChild::openRecording(const std::string& path) {
    m_tag = "0";
    m_needs.player.setUrl(path);
    m_needs.view.setVisible(true);
}

void frmChild::enablePlayTimer() {
    m_needs.tPlayTime.setEnabled(true);
}

void frmChild::showBackground() {
    m_needs.tPlayTime.setEnabled(false);
    m_needs.view.setVisible(false);
}

void frmChild::seek(double seconds) {
    m_needs.player.setCurrentPosition(seconds);
    m_tag = std::to_string(wholeSeconds(seconds));
}

bool frmChild::isPlaying() const {
    return m_needs.player.playState() == PlayState::Playing;
}

bool frmChild::isPlayingOrPaused() const {
    return isPlaying() || m_needs.player.playState() == PlayState::Paused;
}

bool frmChild::isOpening() const {
    const PlayState state = m_needs.player.playState();
    return state == PlayState::OpeningToPlay || state == PlayState::OpeningToPause;
}

bool frmChild::willPlay() const {
    return isPlaying() || m_needs.player.playState() == PlayState::OpeningToPlay;
}

double frmChild::position() const {
    return m_needs.player.currentPosition().value_or(0.0);
}

std::int16_t frmChild::wholeDuration() const {
    return wholeSeconds(m_needs.player.duration());
}

void frmChild::setRateTag(double rate) {
    m_rateTag = numberText(rate);
}

void frmChild::applyRate() {
    m_needs.settings.setRate(toDouble(m_rateTag));
}

void frmChild::tick() {
    trapErrors([this] {
        m_tag = std::to_string(wholeSeconds(m_needs.player.currentPosition()));
        if (isPlayingOrPaused() && !m_needs.player.url().empty())
            publish();
    });
    if (onTicked)
        trapErrors([this] { onTicked(); });
}

void frmChild::publish() {
    m_needs.follow.UpdateControlBand(m_tag + "|" + std::to_string(wholeDuration()));
    applyRate();
    m_needs.follow.UpdateControlBand(m_tag + "|1");
}

} // namespace velmorant

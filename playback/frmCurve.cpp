#include "playback/frmCurve.h"

#include "common/textRules.h"
#include "common/trapErrors.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace velmorant {

frmCurve::frmCurve(CurveNeeds needs)
    : m_needs(std::move(needs)), m_fast(m_needs.tFast, m_needs.controls, m_needs.player) {
    m_fast.onChanged = [this] { showStates(); };
}

SkinLoad frmCurve::Load() {
    SkinLoad outcome = SkinLoad::Missing;
    trapErrors([&] {
        const std::string skin = m_needs.paths.programFile(
            "skin/control/MediaControl" + std::to_string(m_needs.state.settings.languageIndex) +
            ".mp4");
        outcome = loadSkin(m_needs.skin, skin, m_needs.files, m_needs.texts, m_needs.messages);
        if (outcome == SkinLoad::Missing)
            m_needs.window.close();
    });
    if (outcome == SkinLoad::Missing)
        return outcome;
    m_needs.chart.Load();
    m_needs.player.setRateTag(1.0);
    trapErrors([this] {
        m_needs.skin.setValue("playspeed", rateOfSlider(50).sliderValue);
        showVolume();
        showStates();
    });
    return outcome;
}

void frmCurve::ButtonClicked(const std::string& name) {
    struct Button {
        const char* name;
        std::function<void()> run;
    };
    const std::array<Button, 12> buttons = {{
        {"SPEAKER", [this] { toggleSpeaker(); }},
        {"CMDPLAY", [this] { play(); }},
        {"PAUSE",
         [this] {
             m_fast.stop();
             m_needs.controls.pause();
         }},
        {"STOP", [this] { stopPlaying(); }},
        {"HEAD", [this] { startFirst(m_needs.list.playingIndex() - 1, 1, -1); }},
        {"END", [this] { startFirst(m_needs.list.playingIndex() + 1, m_needs.list.count(), 1); }},
        {"BACK", [this] { m_fast.start(FastDirection::Rewind); }},
        {"FAST", [this] { m_fast.start(FastDirection::Forward); }},
        {"SPEED", [this] { chooseMode(ChartMode::Speed); }},
        {"GS", [this] { chooseMode(ChartMode::Acceleration); }},
        {"PHOTO", [this] { m_needs.still.Take(); }},
        {"SAVEFRAME",
         [this] {
             if (m_needs.saveFrame)
                 m_needs.saveFrame();
         }},
    }};
    for (const Button& button : buttons)
        if (equalsIgnoringCase(name, button.name))
            trapErrors(button.run);
    trapErrors([this] { showStates(); });
}

void frmCurve::SliderChanged(const std::string& name) {
    trapErrors([&] {
        if (equalsIgnoringCase(name, "PLAYPROGRESS"))
            seekToProgress();
        else if (equalsIgnoringCase(name, "PLAYSPEED"))
            chooseRate(rateOfSlider(m_needs.skin.value("playspeed")));
        else if (equalsIgnoringCase(name, "VOLUME"))
            m_needs.settings.setVolume(std::clamp(toInt32(m_needs.skin.value("volume")), 0, 100));
    });
}

void frmCurve::toggleSpeaker() {
    const bool muted = !m_needs.skin.isOn("speaker");
    m_needs.skin.setOn("speaker", muted);
    m_needs.settings.setMute(muted);
    showVolume();
}

void frmCurve::showVolume() {
    m_needs.skin.setValue("volume", m_needs.settings.mute() ? 0 : m_needs.settings.volume());
}

void frmCurve::play() {
    if (m_needs.player.isPlaying())
        m_fast.stop();
    else if (m_needs.player.isOpening())
        // The recording is chosen already; it only has to come.
        m_needs.controls.play();
    else if (m_needs.player.isPlayingOrPaused())
        resume();
    else
        playFirstMarked();
}

void frmCurve::resume() {
    m_fast.stop();
    if (!m_resumeInPlace)
        m_needs.player.seek(toDouble(m_needs.player.tag()));
    m_resumeInPlace = false;
    m_needs.controls.play();
    m_needs.player.applyRate();
}

void frmCurve::playFirstMarked() {
    if (m_needs.list.count() == 0)
        showNotice(3001);
    else if (!startFirst(1, m_needs.list.count(), 1))
        showNotice(3002);
}

void frmCurve::showNotice(int offset) {
    m_needs.messages.show(m_needs.texts.byOffset(offset), m_needs.texts.byOffset(3000),
                          MessageStyle::Information);
}

/// Tries to start the first marked row from `from` to `to`; rows whose file is missing are passed
/// over. False when there was no row to try.
bool frmCurve::startFirst(int from, int to, int step) {
    m_resumeInPlace = false;
    for (int row = from; step > 0 ? row <= to : row >= to; row += step)
        if (m_needs.list.marked(row) && m_needs.startRow(row) != RowStart::FileMissing)
            return true;
    return false;
}

void frmCurve::stopPlaying() {
    m_fast.stop();
    m_resumeInPlace = false;
    trapErrors([this] { m_needs.controls.stop(); });
    trapErrors([this] { m_needs.follow.ShowDot("0|0|0|0|0|0"); });
    ResetDisplay();
    trapErrors([this] { m_needs.player.showBackground(); });
}

void frmCurve::ResetDisplay() {
    m_needs.chart.Clear();
    trapErrors([this] { m_needs.skin.setValue("playprogress", 0); });
}

void frmCurve::chooseMode(ChartMode mode) {
    if (m_needs.chart.mode() == mode)
        return;
    m_needs.chart.setMode(mode);
    if (m_needs.player.isPlayingOrPaused())
        m_needs.chart.Draw();
}

void frmCurve::seekToProgress() {
    const int duration = m_needs.follow.publishedDuration();
    if (!m_needs.player.isPlayingOrPaused() || duration == 0)
        return;
    m_resumeInPlace = false;
    m_needs.player.seek(duration * m_needs.skin.value("playprogress") / 100.0);
}

void frmCurve::chooseRate(const PlaybackRate& rate) {
    m_needs.skin.setValue("playspeed", rate.sliderValue);
    m_needs.player.setRateTag(rate.rate);
    // The position timer applies it too; waiting for its tick would feel like a dead key.
    if (m_needs.player.isPlaying())
        m_needs.player.applyRate();
}

void frmCurve::PlayStateChanged(PlayState state) {
    if (state != PlayState::Playing)
        m_fast.stop();
    trapErrors([this] { showStates(); });
}

void frmCurve::showStates() {
    const bool playing = m_needs.player.isPlaying();
    const bool fast = m_fast.running();
    m_needs.skin.setOn("cmdplay", playing);
    m_needs.skin.setOn("pause", !playing && m_needs.player.isPlayingOrPaused());
    m_needs.skin.setOn("fast", fast && m_fast.tag() == "1");
    m_needs.skin.setOn("back", fast && m_fast.tag() == "-1");
    m_needs.skin.setOn("speed", m_needs.chart.mode() == ChartMode::Speed);
    m_needs.skin.setOn("gs", m_needs.chart.mode() == ChartMode::Acceleration);
}

void frmCurve::TogglePlay() {
    ButtonClicked(m_needs.player.willPlay() && !m_fast.running() ? "PAUSE" : "CMDPLAY");
}

void frmCurve::StepSeconds(double seconds) {
    trapErrors([&] {
        if (!m_needs.player.isPlayingOrPaused())
            return;
        const double end = m_needs.controls.duration().value_or(0.0);
        m_resumeInPlace = false;
        m_needs.player.seek(
            std::clamp(m_needs.player.position() + seconds, 0.0, std::max(end, 0.0)));
    });
}

void frmCurve::StepFrame(StepDirection direction) {
    trapErrors([&] {
        if (!m_needs.player.isPlayingOrPaused() || !m_needs.stepFrame)
            return;
        m_fast.stop();
        m_needs.stepFrame(direction);
        m_resumeInPlace = true;
    });
}

void frmCurve::ChangeVolume(int by) {
    trapErrors([&] {
        m_needs.settings.setVolume(std::clamp(m_needs.settings.volume() + by, 0, 100));
        if (by > 0 && m_needs.settings.mute()) {
            m_needs.skin.setOn("speaker", false);
            m_needs.settings.setMute(false);
        }
        showVolume();
    });
}

void frmCurve::ChooseRate(int step) {
    if (step < 1 || static_cast<std::size_t>(step) > playbackRates.size())
        return;
    trapErrors([&] { chooseRate(playbackRates[static_cast<std::size_t>(step) - 1]); });
}

} // namespace velmorant

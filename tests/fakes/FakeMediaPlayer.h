#pragma once

#include "ports/MediaPlayer.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmorant::fakes {

/// A player whose state the test sets; play, pause and stop set it as a player would. As with a
/// real one a file takes its time to open: it is open when the test says so.
class FakePlayerControls : public PlayerControls {
  public:
    void setUrl(const std::string& path) override {
        m_url = path;
        state = PlayState::Undefined;
        position.reset();
        length.reset();
        m_opening = !path.empty();
        call("url " + path);
    }
    std::string url() const override { return m_url; }
    void play() override {
        if (m_opening)
            state = PlayState::OpeningToPlay;
        else if (!m_url.empty())
            state = PlayState::Playing;
        call("play");
    }
    void pause() override {
        if (state == PlayState::OpeningToPlay)
            state = PlayState::OpeningToPause;
        else if (state == PlayState::Playing)
            state = PlayState::Paused;
        call("pause");
    }
    void stop() override {
        state = m_opening || m_url.empty() ? PlayState::Undefined : PlayState::Stopped;
        if (m_opening)
            position.reset();
        else if (!m_url.empty())
            position = 0;
        call("stop");
    }
    std::optional<double> currentPosition() const override { return position; }
    void setCurrentPosition(double seconds) override {
        if (!m_url.empty() && std::isfinite(seconds))
            position = std::clamp(seconds, 0.0, length.value_or(std::max(seconds, 0.0)));
        seeks.push_back(seconds);
        call("seek " + std::to_string(seconds));
    }
    /// The file is open: it does what was asked of it meanwhile.
    void finishOpening(double seconds) {
        if (!std::exchange(m_opening, false))
            return;
        length = seconds;
        position = std::clamp(position.value_or(0.0), 0.0, seconds);
        state = state == PlayState::OpeningToPlay    ? PlayState::Playing
                : state == PlayState::OpeningToPause ? PlayState::Paused
                                                     : PlayState::Stopped;
    }
    std::optional<double> duration() const override { return length; }
    PlayState playState() const override { return state; }

    PlayState state = PlayState::Undefined;
    std::optional<double> position;
    std::optional<double> length;
    std::vector<double> seeks;
    std::vector<std::string> calls;
    std::vector<std::string>* log = nullptr; ///< shared with other fakes to see an order of calls

  private:
    void call(const std::string& text) {
        calls.push_back(text);
        if (log != nullptr)
            log->push_back(text);
    }

    std::string m_url;
    bool m_opening = false;
};

class FakePlayerSettings : public PlayerSettings {
  public:
    bool mute() const override { return muted; }
    void setMute(bool mute) override { muted = mute; }
    int volume() const override { return loudness; }
    void setVolume(int volume) override { loudness = std::clamp(volume, 0, 100); }
    double rate() const override { return speed; }
    void setRate(double rate) override {
        if (std::isfinite(rate))
            speed = std::clamp(rate, 0.01, 100.0);
        rates.push_back(rate);
    }

    bool muted = false;
    int loudness = 50;
    double speed = 1.0;
    std::vector<double> rates;
};

class FakePlayerView : public PlayerView {
  public:
    void setVisible(bool visible) override { shown = visible; }
    bool fullScreen() const override { return full; }
    void setFullScreen(bool fullScreen) override { full = fullScreen; }
    void setUiMode(const std::string& mode) override { uiMode = mode; }
    void setSize(int newWidth, int newHeight) override {
        width = newWidth;
        height = newHeight;
    }
    bool setBackgroundPicture(const std::string& path) override {
        pictures.push_back(path);
        return readable;
    }

    bool shown = true;
    bool full = false;
    bool readable = true;
    std::string uiMode;
    int width = 0;
    int height = 0;
    std::vector<std::string> pictures;
};

} // namespace velmorant::fakes

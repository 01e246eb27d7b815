#pragma once

#include "ports/MediaPlayer.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace velmorant::fakes {

/// A player whose state the test sets; play, pause and stop set it as a player would.
class FakePlayerControls : public PlayerControls {
  public:
    void setUrl(const std::string& path) override {
        m_url = path;
        state = PlayState::Undefined;
        position = path.empty() ? std::nullopt : std::optional<double>(0.0);
        call("url " + path);
    }
    std::string url() const override { return m_url; }
    void play() override {
        state = PlayState::Playing;
        call("play");
    }
    void pause() override {
        state = PlayState::Paused;
        call("pause");
    }
    void stop() override {
        state = PlayState::Stopped;
        call("stop");
    }
    std::optional<double> currentPosition() const override { return position; }
    void setCurrentPosition(double seconds) override {
        position = seconds;
        seeks.push_back(seconds);
        call("seek " + std::to_string(seconds));
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
};

class FakePlayerSettings : public PlayerSettings {
  public:
    bool mute() const override { return muted; }
    void setMute(bool mute) override { muted = mute; }
    int volume() const override { return loudness; }
    void setVolume(int volume) override { loudness = std::clamp(volume, 0, 100); }
    double rate() const override { return speed; }
    void setRate(double rate) override {
        speed = rate;
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

#pragma once

#include "common/textRules.h"
#include "playback/frmCurve.h"
#include "tests/fakes/FakeChart.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeFileDialogs.h"
#include "tests/fakes/FakeWindow.h"
#include "tests/playback/PlayerFixture.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace velmorant {

/// A control bar among fakes, its player and list with five rows.
class ControlBarFixture : public PlayerFixture {
  protected:
    ControlBarFixture() {
        files.files["/program/skin/control/MediaControl1.mp4"] = "";
        state.settings.setLanguage(1001);
        state.settings.setUnit(1001);
        player.onPlayStateChanged = [this](PlayState next) { bar.PlayStateChanged(next); };
        list.append(std::vector<RecordingEntry>(5));
    }
    void click(const char* name) { bar.ButtonClicked(name); }
    void slide(const char* name, double value) {
        skin.values[lowerCase(name)] = value;
        bar.SliderChanged(name);
    }
    void mark(const std::vector<int>& rows) {
        for (int row = 1; row <= list.count(); ++row)
            list.setMark(row, std::count(rows.begin(), rows.end(), row) > 0 ? MarkState::Marked
                                                                            : MarkState::NotMarked);
    }
    /// As the play queue does it.
    RowStart startRow(int row) {
        starts.push_back(row);
        const auto outcome = outcomes.find(row);
        const RowStart result = outcome == outcomes.end() ? RowStart::Started : outcome->second;
        if (result == RowStart::FileMissing)
            list.setMark(row, MarkState::NotMarked);
        if (result == RowStart::Started)
            list.setPlayingIndex(row);
        return result;
    }
    void publishDuration(int seconds) { follow.UpdateControlBand("0|" + std::to_string(seconds)); }
    void addTrack() {
        state.currentTrack = std::make_shared<clsDot>();
        state.currentTrack->SetDot("", "", 5, 0, "0", "0", 0, 0, 0, 0, 0);
    }

    fakes::FakeTimer tFast{timers};
    fakes::FakeWindow window;
    fakes::FakeScreenCapture capture;
    fakes::FakeFileDialogs dialogs;
    fakes::FakeClock clock;
    std::map<int, RowStart> outcomes;
    std::vector<int> starts;
    std::vector<StepDirection> frames;
    int savedFrames = 0;
    CurveChart chart{
        {.chart = control, .texts = texts, .player = player, .follow = follow, .state = state}};
    StillPicture still{{.screen = screen,
                        .capture = capture,
                        .dialogs = dialogs,
                        .clock = clock,
                        .messages = messages,
                        .texts = texts,
                        .player = player}};
    frmCurve bar{{.controls = controls,
                  .settings = settings,
                  .skin = skin,
                  .tFast = tFast,
                  .files = files,
                  .paths = paths,
                  .messages = messages,
                  .texts = texts,
                  .window = window,
                  .player = player,
                  .chart = chart,
                  .still = still,
                  .follow = follow,
                  .list = list,
                  .state = state,
                  .startRow = [this](int row) { return startRow(row); },
                  .stepFrame = [this](StepDirection direction) { frames.push_back(direction); },
                  .saveFrame = [this] { ++savedFrames; }}};
};

} // namespace velmorant

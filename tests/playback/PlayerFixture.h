#pragma once

#include "playback/frmChild.h"
#include "recordings/RecordingList.h"
#include "tests/fakes/FakeBandContainer.h"
#include "tests/fakes/FakeChart.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeMapPage.h"
#include "tests/fakes/FakeMediaPlayer.h"
#include "tests/fakes/FakeMessageBox.h"
#include "tests/fakes/FakeScreen.h"
#include "tests/fakes/FakeSkin.h"
#include "tests/fakes/FakeTexts.h"
#include "tests/fakes/FakeTimers.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace velmorant {

/// A player window among fakes, its files all there.
class PlayerFixture : public ::testing::Test {
  protected:
    PlayerFixture() {
        files.files["/program/skin/support/playback.MP4"] = "";
        files.files["/program/system/bk.MP4"] = "";
    }

    void open(PlayState playState, double position, double duration) {
        player.openRecording("/card/1.MP4");
        controls.finishOpening(duration);
        controls.state = playState;
        controls.position = position;
        controls.length = duration;
    }

    /// A track of one dot per second, which becomes the current one.
    void loadTrack(int dots) {
        state.currentTrack = std::make_shared<clsDot>();
        for (int i = 0; i < dots; ++i)
            state.currentTrack->SetDot("", "", 0, i, "121.5", "25", 0, 90, 0, 0, 0);
    }

    fakes::FakeTimers timers;
    fakes::FakeTimer tPlayTime{timers};
    fakes::FakePlayerControls controls;
    fakes::FakePlayerSettings settings;
    fakes::FakePlayerView view;
    fakes::FakePlayerControls hidden;
    fakes::FakePlayerSettings hiddenSettings;
    fakes::FakeSkin skin;
    fakes::FakeBandContainer bands;
    fakes::FakeScreen screen;
    fakes::FakeFileSystem files;
    fakes::FakeHostPaths paths;
    fakes::FakeMessageBox messages;
    fakes::FakeTexts texts;
    fakes::FakeChart control;
    fakes::FakeMapPage page;
    ProgramState state;
    RecordingList list;
    int ends = 0;
    std::vector<std::string> failures;
    PositionFollow follow{
        {.player = settings, .controlBar = skin, .chart = control, .page = page, .state = state}};
    frmChild player{
        {.player = controls,
         .settings = settings,
         .view = view,
         .hiddenPlayer = hidden,
         .hiddenSettings = hiddenSettings,
         .tPlayTime = tPlayTime,
         .controlBar = skin,
         .bands = bands,
         .screen = screen,
         .files = files,
         .paths = paths,
         .messages = messages,
         .texts = texts,
         .follow = follow,
         .mediaEnded = [this] { ++ends; },
         .playbackFailed = [this](const std::string& reason) { failures.push_back(reason); }}};
};

} // namespace velmorant

#pragma once

#include "playback/frmChild.h"
#include "tests/fakes/FakeBandContainer.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeMediaPlayer.h"
#include "tests/fakes/FakeMessageBox.h"
#include "tests/fakes/FakeScreen.h"
#include "tests/fakes/FakeSkin.h"
#include "tests/fakes/FakeTexts.h"
#include "tests/fakes/FakeTimers.h"
#include "tests/playback/playbackFakes.h"

#include <gtest/gtest.h>

namespace velmorant {

/// A player window among fakes, its files all there.
class PlayerFixture : public ::testing::Test {
  protected:
    PlayerFixture() {
        files.files["/program/skin/support/playback.MP4"] = "";
        files.files["/program/system/bk.MP4"] = "";
    }

    void open(PlayState state, double position, double duration) {
        player.openRecording("/card/1.MP4");
        controls.finishOpening(duration);
        controls.state = state;
        controls.position = position;
        controls.length = duration;
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
    FakePositionFollowing follow;
    FakePlaybackList list;
    frmChild player{{controls, settings, view, hidden, hiddenSettings, tPlayTime, skin, bands,
                     screen, files, paths, messages, texts, follow, list}};
};

} // namespace velmorant

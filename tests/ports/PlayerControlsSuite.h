#pragma once

#include "ports/MediaPlayer.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace velmorant {

/// What every player must do, the real one and the fake alike, so that a room that works with the
/// fake works with the program. `Stage` sets a player up and lets its time pass:
///
///   PlayerControls& controls();      PlayerSettings& settings();
///   std::string recording();         a path that can be opened
///   double length();                 its seconds, 5 at least
///   bool waitFor(condition);         false when it does not come true in good time
template <typename Stage>
class PlayerControlsSuite : public testing::Test {
  protected:
    PlayerControls& player() { return m_stage.controls(); }
    bool reaches(PlayState state) {
        return m_stage.waitFor([&] { return player().playState() == state; });
    }
    void open() {
        player().setUrl(m_stage.recording());
        ASSERT_TRUE(reaches(PlayState::Stopped));
    }

    Stage m_stage;
};

TYPED_TEST_SUITE_P(PlayerControlsSuite);

TYPED_TEST_P(PlayerControlsSuite, does_nothing_without_a_file) {
    PlayerControls& player = this->player();
    player.play();
    player.pause();
    player.stop();
    player.setCurrentPosition(3);
    EXPECT_EQ(player.playState(), PlayState::Undefined);
    EXPECT_EQ(player.currentPosition(), std::nullopt);
    EXPECT_EQ(player.duration(), std::nullopt);
    EXPECT_EQ(player.url(), "");
}

TYPED_TEST_P(PlayerControlsSuite, opens_without_playing) {
    PlayerControls& player = this->player();
    player.setUrl(this->m_stage.recording());
    EXPECT_EQ(player.url(), this->m_stage.recording());
    EXPECT_EQ(player.playState(), PlayState::Undefined);
    EXPECT_EQ(player.currentPosition(), std::nullopt);
    ASSERT_TRUE(this->reaches(PlayState::Stopped));
    EXPECT_NEAR(player.currentPosition().value_or(-1), 0, 0.1);
    EXPECT_NEAR(player.duration().value_or(-1), this->m_stage.length(), 0.1);
}

TYPED_TEST_P(PlayerControlsSuite, says_while_it_opens_that_it_will_play) {
    PlayerControls& player = this->player();
    player.setUrl(this->m_stage.recording());
    player.play();
    EXPECT_EQ(player.playState(), PlayState::OpeningToPlay);
    player.play();
    EXPECT_EQ(player.playState(), PlayState::OpeningToPlay);
    EXPECT_TRUE(this->reaches(PlayState::Playing));
}

TYPED_TEST_P(PlayerControlsSuite, says_while_it_opens_that_it_will_pause) {
    PlayerControls& player = this->player();
    player.setUrl(this->m_stage.recording());
    player.pause();
    EXPECT_EQ(player.playState(), PlayState::Undefined) << "nothing was to play";
    player.play();
    player.pause();
    EXPECT_EQ(player.playState(), PlayState::OpeningToPause);
    EXPECT_TRUE(this->reaches(PlayState::Paused));
}

TYPED_TEST_P(PlayerControlsSuite, what_was_asked_last_while_it_opens_counts) {
    PlayerControls& player = this->player();
    player.setUrl(this->m_stage.recording());
    player.play();
    player.pause();
    player.play();
    EXPECT_EQ(player.playState(), PlayState::OpeningToPlay);
    player.stop();
    EXPECT_EQ(player.playState(), PlayState::Undefined);
    EXPECT_TRUE(this->reaches(PlayState::Stopped));
}

TYPED_TEST_P(PlayerControlsSuite, a_seek_while_it_opens_is_held) {
    PlayerControls& player = this->player();
    player.setUrl(this->m_stage.recording());
    player.setCurrentPosition(3);
    EXPECT_EQ(player.currentPosition(), 3);
    player.play();
    player.pause();
    ASSERT_TRUE(this->reaches(PlayState::Paused));
    EXPECT_NEAR(player.currentPosition().value_or(-1), 3, 0.1);
}

TYPED_TEST_P(PlayerControlsSuite, plays_pauses_and_stops_an_open_file) {
    ASSERT_NO_FATAL_FAILURE(this->open());
    PlayerControls& player = this->player();
    player.pause();
    EXPECT_EQ(player.playState(), PlayState::Stopped) << "nothing plays";
    player.play();
    EXPECT_EQ(player.playState(), PlayState::Playing);
    player.pause();
    EXPECT_EQ(player.playState(), PlayState::Paused);
    player.setCurrentPosition(3);
    EXPECT_EQ(player.currentPosition(), 3);
    player.stop();
    EXPECT_EQ(player.playState(), PlayState::Stopped);
    EXPECT_EQ(player.currentPosition(), 0);
}

TYPED_TEST_P(PlayerControlsSuite, a_seek_stays_within_the_recording) {
    ASSERT_NO_FATAL_FAILURE(this->open());
    PlayerControls& player = this->player();
    player.setCurrentPosition(-4);
    EXPECT_EQ(player.currentPosition(), 0);
    player.setCurrentPosition(this->m_stage.length() + 100);
    EXPECT_NEAR(player.currentPosition().value_or(-1), this->m_stage.length(), 0.1);
    player.setCurrentPosition(std::numeric_limits<double>::quiet_NaN());
    EXPECT_NEAR(player.currentPosition().value_or(-1), this->m_stage.length(), 0.1);
}

TYPED_TEST_P(PlayerControlsSuite, another_file_begins_anew) {
    ASSERT_NO_FATAL_FAILURE(this->open());
    PlayerControls& player = this->player();
    player.play();
    player.setCurrentPosition(3);
    player.setUrl(this->m_stage.recording());
    EXPECT_EQ(player.playState(), PlayState::Undefined);
    EXPECT_EQ(player.currentPosition(), std::nullopt);
    EXPECT_EQ(player.duration(), std::nullopt);
    EXPECT_TRUE(this->reaches(PlayState::Stopped));
    player.setUrl("");
    EXPECT_EQ(player.playState(), PlayState::Undefined);
    EXPECT_EQ(player.url(), "");
}

TYPED_TEST_P(PlayerControlsSuite, settings_stay_within_their_bounds) {
    PlayerSettings& settings = this->m_stage.settings();
    settings.setVolume(130);
    EXPECT_EQ(settings.volume(), 100);
    settings.setVolume(-1);
    EXPECT_EQ(settings.volume(), 0);
    settings.setMute(true);
    EXPECT_TRUE(settings.mute());
    EXPECT_EQ(settings.volume(), 0);
    settings.setRate(1.5);
    settings.setRate(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(settings.rate(), 1.5);
    settings.setRate(0);
    EXPECT_EQ(settings.rate(), 0.01);
    settings.setRate(1000);
    EXPECT_EQ(settings.rate(), 100);
}

REGISTER_TYPED_TEST_SUITE_P(PlayerControlsSuite, does_nothing_without_a_file, opens_without_playing,
                            says_while_it_opens_that_it_will_play,
                            says_while_it_opens_that_it_will_pause,
                            what_was_asked_last_while_it_opens_counts,
                            a_seek_while_it_opens_is_held, plays_pauses_and_stops_an_open_file,
                            a_seek_stays_within_the_recording, another_file_begins_anew,
                            settings_stay_within_their_bounds);

} // namespace velmorant

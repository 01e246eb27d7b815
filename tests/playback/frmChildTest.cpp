#include "playback/frmChild.h"

#include "tests/playback/PlayerFixture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace velmorant {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class frmChildTest : public PlayerFixture {};

TEST_F(frmChildTest, loading_prepares_an_idle_window) {
    player.Load();
    EXPECT_THAT(view.pictures, ElementsAre("/program/skin/support/playback.MP4"));
    EXPECT_EQ(player.tag(), "-1");
    EXPECT_EQ(player.rateTag(), "1");
    EXPECT_TRUE(skin.on["photo"]);
    EXPECT_THAT(hidden.calls, ElementsAre("url /program/system/bk.MP4", "play"));
    EXPECT_TRUE(hiddenSettings.muted);
    EXPECT_FALSE(view.shown);
    EXPECT_FALSE(tPlayTime.enabled());
    EXPECT_THAT(messages.shown, IsEmpty());
    EXPECT_THAT(controls.calls, IsEmpty());
    EXPECT_FALSE(settings.muted);
}

TEST_F(frmChildTest, a_missing_system_clip_is_reported_once_and_the_rest_works) {
    files.files.erase("/program/system/bk.MP4");
    player.Load();
    EXPECT_THAT(messages.shown,
                ElementsAre(fakes::ShownMessage{"<13037>", "<13011>", MessageStyle::Stop}));
    EXPECT_THAT(hidden.calls, IsEmpty());
    EXPECT_FALSE(view.shown);
    EXPECT_EQ(player.tag(), "-1");
}

TEST_F(frmChildTest, a_missing_background_picture_is_skipped_silently) {
    files.files.erase("/program/skin/support/playback.MP4");
    player.Load();
    EXPECT_THAT(view.pictures, IsEmpty());
    EXPECT_THAT(messages.shown, IsEmpty());
    EXPECT_EQ(hidden.calls.size(), 2u);
}

TEST_F(frmChildTest, resizing_gives_the_map_pane_248_pixels_and_the_player_the_whole_picture) {
    player.Resize();
    EXPECT_EQ(bands.heights["ControlBand"], 248 * 15);
    EXPECT_EQ(bands.layouts, 1);
    screen.twipsY = 12;
    player.Resize();
    EXPECT_EQ(bands.heights["ControlBand"], 248 * 12);
    player.ResizeBackground(656, 369);
    EXPECT_EQ(view.width, 656);
    EXPECT_EQ(view.height, 369);
    EXPECT_EQ(player.pictureWidth(), 656);
    EXPECT_EQ(player.pictureHeight(), 369);
}

TEST_F(frmChildTest, the_end_of_the_media_goes_on_with_the_list) {
    player.PlayStateChange(PlayState::MediaEnded);
    EXPECT_EQ(ends, 1);
    for (const PlayState other :
         {PlayState::Undefined, PlayState::Stopped, PlayState::Paused, PlayState::Playing})
        player.PlayStateChange(other);
    EXPECT_EQ(ends, 1);
}

TEST_F(frmChildTest, playing_and_pausing_refresh_the_photo_button) {
    for (const PlayState playState : {PlayState::Playing, PlayState::Paused}) {
        skin.calls.clear();
        player.PlayStateChange(playState);
        EXPECT_THAT(skin.calls, ElementsAre("setOn photo 0", "setOn photo 1"));
    }
    skin.calls.clear();
    player.PlayStateChange(PlayState::Stopped);
    EXPECT_THAT(skin.calls, IsEmpty());
}

TEST_F(frmChildTest, the_mouse_leaves_full_screen_and_keeps_the_players_own_controls_away) {
    view.full = true;
    player.PictureMousePressed();
    EXPECT_EQ(view.uiMode, "None");
    EXPECT_TRUE(view.full);
    player.PictureClicked();
    EXPECT_FALSE(view.full);
}

TEST_F(frmChildTest, a_tick_publishes_position_and_duration_then_the_position_alone) {
    open(PlayState::Playing, 30.2, 119.6);
    loadTrack(60);
    player.setRateTag(1.5);
    player.enablePlayTimer();
    timers.advance(799);
    EXPECT_THAT(page.cars, IsEmpty());
    timers.advance(1);
    EXPECT_THAT(page.cars, ElementsAre("121.5|25|30|90", "121.5|25|30|90"));
    EXPECT_EQ(follow.publishedDuration(), 120) << "the second call leaves it";
    EXPECT_EQ(skin.values["playprogress"], 25);
    EXPECT_EQ(player.tag(), "30");
    EXPECT_THAT(settings.rates, ElementsAre(1.5));
}

TEST_F(frmChildTest, the_timer_ticks_every_800_milliseconds_while_paused_too) {
    open(PlayState::Paused, 3, 10);
    loadTrack(10);
    player.enablePlayTimer();
    timers.advance(2400);
    EXPECT_EQ(page.cars.size(), 6u);
}

TEST_F(frmChildTest, other_states_only_sample_the_position) {
    for (const PlayState playState :
         {PlayState::Undefined, PlayState::Stopped, PlayState::MediaEnded}) {
        loadTrack(10);
        open(playState, 7, 10);
        tPlayTime.fire();
        EXPECT_EQ(player.tag(), "7");
        EXPECT_THAT(page.cars, IsEmpty());
        EXPECT_THAT(settings.rates, IsEmpty());
    }
}

TEST_F(frmChildTest, without_a_recording_nothing_is_published) {
    loadTrack(10);
    controls.state = PlayState::Paused;
    tPlayTime.fire();
    EXPECT_THAT(page.cars, IsEmpty());
}

TEST_F(frmChildTest, an_unknown_position_or_duration_reads_as_0) {
    open(PlayState::Playing, 0, 0);
    controls.position.reset();
    controls.length.reset();
    loadTrack(10);
    tPlayTime.fire();
    EXPECT_EQ(player.tag(), "0");
    EXPECT_EQ(page.cars.size(), 2u);
    EXPECT_EQ(page.cars.front(), "121.5|25|1|90");
    EXPECT_EQ(follow.publishedDuration(), 0);
}

TEST_F(frmChildTest, whole_seconds_are_rounded_to_nearest_and_halves_to_even) {
    EXPECT_EQ(wholeSeconds(0.5), 0);
    EXPECT_EQ(wholeSeconds(1.5), 2);
    EXPECT_EQ(wholeSeconds(2.5), 2);
    EXPECT_EQ(wholeSeconds(59.51), 60);
    EXPECT_EQ(wholeSeconds(std::nullopt), 0);
    EXPECT_EQ(wholeSeconds(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(wholeSeconds(36000.0), 32767) << "past the 16-bit range: its greatest value";
    EXPECT_EQ(wholeSeconds(1e300), 32767);
}

TEST_F(frmChildTest, the_rate_survives_a_change_of_recording) {
    open(PlayState::Playing, 1, 10);
    player.setRateTag(2);
    player.openRecording("/card/2.MP4");
    EXPECT_EQ(player.rateTag(), "2");
    player.applyRate();
    EXPECT_EQ(settings.speed, 2);
}

TEST_F(frmChildTest, a_seek_refreshes_the_tag_with_the_whole_second) {
    open(PlayState::Paused, 1, 100);
    player.seek(42.5);
    EXPECT_THAT(controls.seeks, ElementsAre(42.5));
    EXPECT_EQ(player.tag(), "42");
}

TEST_F(frmChildTest, opening_shows_the_picture_and_forgets_the_position_of_the_one_before) {
    player.Load();
    open(PlayState::Playing, 55, 60);
    tPlayTime.fire();
    player.openRecording("/card/2.MP4");
    EXPECT_TRUE(view.shown);
    EXPECT_EQ(player.tag(), "0");
    EXPECT_EQ(controls.url(), "/card/2.MP4");
    EXPECT_NE(controls.state, PlayState::Playing) << "opening plays nothing yet";
}

TEST_F(frmChildTest, playing_a_recording_opens_it_plays_follows_and_keeps_the_rate) {
    player.setRateTag(1.5);
    player.playRecording("/card/2.MP4");
    EXPECT_THAT(controls.calls, ElementsAre("url /card/2.MP4", "play"));
    EXPECT_TRUE(view.shown);
    EXPECT_TRUE(tPlayTime.enabled());
    EXPECT_THAT(settings.rates, ElementsAre(1.5));
}

TEST_F(frmChildTest, a_recording_that_cannot_be_played_hides_the_picture_and_is_handed_on) {
    open(PlayState::Playing, 0, 0);
    player.enablePlayTimer();
    player.PlaybackFailed("/card/1.MP4", "no video");
    EXPECT_THAT(failures, ElementsAre("no video"));
    EXPECT_FALSE(view.shown);
    EXPECT_FALSE(tPlayTime.enabled());
    EXPECT_THAT(messages.shown, IsEmpty()) << "a box would stall the queue";
}

TEST_F(frmChildTest, a_late_failure_of_another_recording_is_ignored) {
    open(PlayState::Playing, 0, 0);
    player.PlaybackFailed("/card/other.MP4", "no video");
    EXPECT_THAT(failures, IsEmpty());
    EXPECT_TRUE(view.shown);
}

TEST_F(frmChildTest, listeners_hear_of_states_and_ticks) {
    std::vector<PlayState> states;
    int ticks = 0;
    player.onPlayStateChanged = [&](PlayState next) { states.push_back(next); };
    player.onTicked = [&] { ++ticks; };
    player.PlayStateChange(PlayState::Playing);
    player.PlayStateChange(PlayState::MediaEnded);
    tPlayTime.fire();
    EXPECT_THAT(states, ElementsAre(PlayState::Playing, PlayState::MediaEnded));
    EXPECT_EQ(ticks, 1);
}

} // namespace
} // namespace velmorant

// Long because the bar has many commands, each with its rules.
#include "playback/frmCurve.h"

#include "common/textRules.h"
#include "tests/playback/ControlBarFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <vector>

namespace velmorant {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class frmCurveTest : public ControlBarFixture {};

TEST_F(frmCurveTest, loading_reads_the_skin_of_the_language) {
    EXPECT_EQ(bar.Load(), SkinLoad::Loaded);
    EXPECT_THAT(skin.loaded, ElementsAre("/program/skin/control/MediaControl1.mp4"));
    EXPECT_EQ(chart.tag(), "SPEED");
    EXPECT_EQ(player.rateTag(), "1");
    EXPECT_EQ(window.closes, 0);
    state.settings.setLanguage(1002);
    files.files["/program/skin/control/MediaControl2.mp4"] = "";
    bar.Load();
    EXPECT_EQ(skin.loaded.back(), "/program/skin/control/MediaControl2.mp4");
}

TEST_F(frmCurveTest, a_missing_skin_is_reported_and_closes_the_bar) {
    files.files.clear();
    EXPECT_EQ(bar.Load(), SkinLoad::Missing);
    EXPECT_THAT(messages.shown,
                ElementsAre(fakes::ShownMessage{"<13012>", "<13011>", MessageStyle::Stop}));
    EXPECT_EQ(window.closes, 1);
}

TEST_F(frmCurveTest, speaker_toggles_mute_and_the_volume_slider_shows_0_meanwhile) {
    settings.loudness = 70;
    click("SPEAKER");
    EXPECT_TRUE(settings.muted);
    EXPECT_TRUE(skin.on["speaker"]);
    EXPECT_EQ(skin.values["volume"], 0);
    click("speaker");
    EXPECT_FALSE(settings.muted);
    EXPECT_FALSE(skin.on["speaker"]);
    EXPECT_EQ(skin.values["volume"], 70);
}

TEST_F(frmCurveTest, play_with_an_empty_list_says_that_nothing_was_selected) {
    list.remove(1, list.count());
    click("CMDPLAY");
    EXPECT_THAT(messages.shown,
                ElementsAre(fakes::ShownMessage{"<13001>", "<13000>", MessageStyle::Information}));
    EXPECT_THAT(starts, IsEmpty());
}

TEST_F(frmCurveTest, play_with_no_marked_row_asks_for_one) {
    click("CMDPLAY");
    EXPECT_THAT(messages.shown,
                ElementsAre(fakes::ShownMessage{"<13002>", "<13000>", MessageStyle::Information}));
}

TEST_F(frmCurveTest, play_starts_the_first_marked_row) {
    mark({3, 5});
    for (const PlayState idle : {PlayState::Undefined, PlayState::Stopped}) {
        controls.state = idle;
        starts.clear();
        click("cmdplay");
        EXPECT_THAT(starts, ElementsAre(3));
    }
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(frmCurveTest, play_stays_with_a_recording_that_still_opens) {
    mark({1, 3});
    for (const char* way : {"button", "key"}) {
        player.openRecording("/card/3.MP4");
        controls.play();
        ASSERT_EQ(controls.state, PlayState::OpeningToPlay);
        controls.calls.clear();
        if (way == std::string("button")) {
            click("CMDPLAY");
            EXPECT_EQ(controls.state, PlayState::OpeningToPlay);
        } else {
            bar.TogglePlay();
            EXPECT_EQ(controls.state, PlayState::OpeningToPause);
            bar.TogglePlay();
            EXPECT_EQ(controls.state, PlayState::OpeningToPlay);
        }
        EXPECT_THAT(starts, IsEmpty()) << way;
        EXPECT_THAT(controls.seeks, IsEmpty()) << way;
        controls.finishOpening(60);
        EXPECT_EQ(controls.state, PlayState::Playing) << way;
        EXPECT_EQ(controls.url(), "/card/3.MP4");
    }
}

TEST_F(frmCurveTest, play_after_a_stop_of_a_recording_that_still_opens_is_as_after_any_stop) {
    mark({1, 3});
    player.openRecording("/card/3.MP4");
    controls.play();
    click("STOP");
    click("CMDPLAY");
    EXPECT_THAT(starts, ElementsAre(1));
}

TEST_F(frmCurveTest, play_passes_over_rows_whose_file_is_missing) {
    mark({2, 3, 5});
    outcomes = {{2, RowStart::FileMissing}, {3, RowStart::FileMissing}};
    click("CMDPLAY");
    EXPECT_THAT(starts, ElementsAre(2, 3, 5));
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(frmCurveTest, play_ends_as_with_nothing_marked_when_every_file_is_missing) {
    mark({2, 3});
    outcomes = {{2, RowStart::FileMissing}, {3, RowStart::FileMissing}};
    click("CMDPLAY");
    EXPECT_THAT(messages.shown,
                ElementsAre(fakes::ShownMessage{"<13002>", "<13000>", MessageStyle::Information}));
}

TEST_F(frmCurveTest, a_row_without_a_track_is_not_started_and_shows_no_box) {
    mark({2, 3});
    outcomes = {{2, RowStart::NoTrack}};
    click("CMDPLAY");
    EXPECT_THAT(starts, ElementsAre(2));
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(frmCurveTest, play_while_playing_does_nothing) {
    mark({1});
    open(PlayState::Playing, 10, 100);
    controls.calls.clear();
    click("CMDPLAY");
    EXPECT_THAT(controls.calls, IsEmpty());
    EXPECT_THAT(starts, IsEmpty());
}

TEST_F(frmCurveTest, play_while_fast_returns_to_normal_play) {
    open(PlayState::Playing, 10, 100);
    click("FAST");
    ASSERT_TRUE(tFast.enabled());
    click("CMDPLAY");
    EXPECT_FALSE(tFast.enabled());
    EXPECT_EQ(controls.state, PlayState::Playing);
    EXPECT_THAT(controls.seeks, IsEmpty());
}

TEST_F(frmCurveTest, play_while_paused_resumes_at_the_position_kept_in_the_tag) {
    open(PlayState::Paused, 12.4, 100);
    tPlayTime.fire();
    settings.rates.clear();
    controls.calls.clear();
    player.setRateTag(0.5);
    click("CMDPLAY");
    EXPECT_THAT(controls.calls, ElementsAre("seek 12.000000", "play"));
    EXPECT_THAT(settings.rates, ElementsAre(0.5));
    EXPECT_THAT(starts, IsEmpty());
}

TEST_F(frmCurveTest, a_resume_after_a_paused_seek_goes_to_the_second_sought) {
    open(PlayState::Paused, 12, 100);
    tPlayTime.fire();
    publishDuration(100);
    slide("PLAYPROGRESS", 60);
    click("CMDPLAY");
    EXPECT_THAT(controls.seeks, ElementsAre(60.0, 60.0));
}

TEST_F(frmCurveTest, pause_stops_fast_and_pauses) {
    open(PlayState::Playing, 10, 100);
    click("BACK");
    click("PAUSE");
    EXPECT_FALSE(tFast.enabled());
    EXPECT_EQ(controls.state, PlayState::Paused);
}

TEST_F(frmCurveTest, stop_returns_everything_to_idle) {
    addTrack();
    open(PlayState::Playing, 10, 100);
    player.enablePlayTimer();
    chart.Draw();
    click("FAST");
    skin.values["playprogress"] = 10;
    click("STOP");
    EXPECT_EQ(controls.state, PlayState::Stopped);
    EXPECT_THAT(page.cars, ElementsAre("0|0|0|0"));
    for (const auto& series : control.series)
        EXPECT_THAT(series, IsEmpty());
    EXPECT_EQ(skin.values["playprogress"], 0);
    EXPECT_FALSE(view.shown) << "the background picture is seen";
    EXPECT_FALSE(tPlayTime.enabled());
    EXPECT_FALSE(tFast.enabled());
}

struct Neighbour {
    const char* command;
    int playing;
    std::vector<int> starts;
};

TEST_F(frmCurveTest, head_and_end_start_the_marked_neighbour_whose_file_exists) {
    const Neighbour rows[] = {
        {"HEAD", 5, {4, 2}}, {"HEAD", 4, {2}}, {"HEAD", 2, {1}},   {"HEAD", 1, {}},
        {"HEAD", 0, {}},     {"END", 1, {2}},  {"END", 2, {4, 5}}, {"END", 4, {5}},
        {"END", 5, {}},      {"end", 0, {1}},  {"head", 3, {2}},
    };
    for (const Neighbour& row : rows) {
        list.setPlayingIndex(row.playing);
        starts.clear();
        mark({1, 2, 4, 5});
        outcomes = {{4, RowStart::FileMissing}};
        click(row.command);
        EXPECT_EQ(starts, row.starts) << row.command << " from " << row.playing;
    }
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(frmCurveTest, fast_and_back_work_only_while_playing) {
    for (const PlayState m_state :
         {PlayState::Undefined, PlayState::Stopped, PlayState::Paused, PlayState::MediaEnded}) {
        open(m_state, 10, 100);
        click("FAST");
        EXPECT_FALSE(tFast.enabled());
        click("BACK");
        EXPECT_FALSE(tFast.enabled());
    }
}

TEST_F(frmCurveTest, fast_forward_seeks_a_second_every_100_milliseconds) {
    open(PlayState::Playing, 10.4, 100);
    click("FAST");
    EXPECT_TRUE(skin.on["fast"]);
    timers.advance(300);
    EXPECT_THAT(controls.seeks, ElementsAre(11.0, 12.0, 13.0));
    EXPECT_EQ(player.tag(), "13");
    click("BACK");
    EXPECT_TRUE(skin.on["back"]);
    EXPECT_FALSE(skin.on["fast"]);
    timers.advance(200);
    EXPECT_THAT(controls.seeks, ElementsAre(11.0, 12.0, 13.0, 12.0, 11.0));
}

TEST_F(frmCurveTest, fast_forward_pauses_past_the_last_second_but_one) {
    open(PlayState::Playing, 97, 100);
    click("FAST");
    timers.advance(1000);
    EXPECT_THAT(controls.seeks, ElementsAre(98.0, 99.0, 100.0));
    EXPECT_EQ(controls.state, PlayState::Paused);
    EXPECT_FALSE(tFast.enabled());
}

TEST_F(frmCurveTest, rewind_pauses_below_second_1) {
    open(PlayState::Playing, 3, 100);
    click("BACK");
    timers.advance(1000);
    EXPECT_THAT(controls.seeks, ElementsAre(2.0, 1.0, 0.0));
    EXPECT_EQ(controls.state, PlayState::Paused);
    EXPECT_FALSE(tFast.enabled());
}

TEST_F(frmCurveTest, fast_stops_whenever_the_player_leaves_the_playing_state) {
    for (const PlayState next :
         {PlayState::Paused, PlayState::Stopped, PlayState::MediaEnded, PlayState::Undefined}) {
        open(PlayState::Playing, 10, 100);
        click("FAST");
        ASSERT_TRUE(tFast.enabled());
        controls.state = next;
        player.PlayStateChange(next);
        EXPECT_FALSE(tFast.enabled());
    }
    open(PlayState::Playing, 10, 100);
    click("FAST");
    controls.seeks.clear();
    controls.state = PlayState::Stopped;
    timers.advance(100);
    EXPECT_FALSE(tFast.enabled()) << "also when the event is still to come";
    EXPECT_THAT(controls.seeks, IsEmpty());
}

TEST_F(frmCurveTest, the_progress_slider_seeks_its_share_of_the_published_duration) {
    publishDuration(120);
    for (const PlayState active : {PlayState::Playing, PlayState::Paused}) {
        open(active, 10, 119.7);
        controls.seeks.clear();
        slide("PLAYPROGRESS", 25);
        EXPECT_THAT(controls.seeks, ElementsAre(30.0));
        EXPECT_EQ(player.tag(), "30");
    }
}

TEST_F(frmCurveTest, the_progress_slider_does_nothing_while_stopped_or_before_a_duration) {
    open(PlayState::Playing, 10, 120);
    slide("PLAYPROGRESS", 25);
    publishDuration(120);
    open(PlayState::Stopped, 10, 120);
    slide("PLAYPROGRESS", 25);
    EXPECT_THAT(controls.seeks, IsEmpty());
}

TEST_F(frmCurveTest, the_rate_slider_snaps_and_keeps_the_rate_for_the_timer) {
    open(PlayState::Paused, 10, 100);
    slide("PLAYSPEED", 5);
    EXPECT_EQ(skin.values["playspeed"], -7);
    EXPECT_EQ(player.rateTag(), "0.2");
    EXPECT_THAT(settings.rates, IsEmpty());
    tPlayTime.fire();
    EXPECT_THAT(settings.rates, ElementsAre(0.2));
    slide("playspeed", 80);
    EXPECT_EQ(skin.values["playspeed"], 85);
    EXPECT_EQ(player.rateTag(), "2");
}

TEST_F(frmCurveTest, a_rate_chosen_while_playing_is_heard_at_once) {
    open(PlayState::Playing, 10, 100);
    slide("PLAYSPEED", 65);
    EXPECT_THAT(settings.rates, ElementsAre(1.5));
}

TEST_F(frmCurveTest, the_volume_slider_sets_the_volume) {
    slide("VOLUME", 33.4);
    EXPECT_EQ(settings.loudness, 33);
    slide("volume", 100);
    EXPECT_EQ(settings.loudness, 100);
}

TEST_F(frmCurveTest, the_chart_mode_changes_and_is_drawn_while_a_recording_is_open) {
    addTrack();
    open(PlayState::Playing, 10, 100);
    click("GS");
    EXPECT_EQ(chart.tag(), "GS");
    EXPECT_EQ(control.series[3].size(), 1u);
    EXPECT_TRUE(skin.on["gs"]);
    EXPECT_FALSE(skin.on["speed"]);
    click("SPEED");
    EXPECT_EQ(chart.tag(), "SPEED");
    EXPECT_EQ(control.redraws, 2);
}

TEST_F(frmCurveTest, the_mode_that_is_already_shown_is_not_drawn_again) {
    addTrack();
    open(PlayState::Playing, 10, 100);
    click("SPEED");
    EXPECT_EQ(control.redraws, 0);
    click("GS");
    click("GS");
    EXPECT_EQ(control.redraws, 1);
}

TEST_F(frmCurveTest, while_stopped_only_the_choice_changes) {
    addTrack();
    open(PlayState::Stopped, 0, 100);
    click("GS");
    EXPECT_EQ(chart.tag(), "GS");
    EXPECT_EQ(control.redraws, 0);
}

TEST_F(frmCurveTest, photo_takes_a_still_picture) {
    dialogs.saveAnswers = {"a.jpg"};
    click("PHOTO");
    EXPECT_THAT(capture.saved, ElementsAre("a.jpg"));
    click("SAVEFRAME");
    EXPECT_EQ(savedFrames, 1);
}

TEST_F(frmCurveTest, an_unknown_name_does_nothing) {
    open(PlayState::Playing, 10, 100);
    controls.calls.clear();
    click("NOSUCH");
    bar.SliderChanged("NOSUCH");
    EXPECT_THAT(controls.calls, IsEmpty());
}

TEST_F(frmCurveTest, the_buttons_show_the_state_of_the_player) {
    open(PlayState::Playing, 10, 100);
    player.PlayStateChange(PlayState::Playing);
    EXPECT_TRUE(skin.on["cmdplay"]);
    EXPECT_FALSE(skin.on["pause"]);
    controls.state = PlayState::Paused;
    player.PlayStateChange(PlayState::Paused);
    EXPECT_FALSE(skin.on["cmdplay"]);
    EXPECT_TRUE(skin.on["pause"]);
}

TEST_F(frmCurveTest, one_key_plays_and_pauses) {
    mark({2});
    bar.TogglePlay();
    EXPECT_THAT(starts, ElementsAre(2));
    open(PlayState::Playing, 10, 100);
    bar.TogglePlay();
    EXPECT_EQ(controls.state, PlayState::Paused);
    bar.TogglePlay();
    EXPECT_EQ(controls.state, PlayState::Playing);
    click("FAST");
    bar.TogglePlay();
    EXPECT_EQ(controls.state, PlayState::Playing) << "first back to normal play";
    EXPECT_FALSE(tFast.enabled());
}

struct SecondsStep {
    double from;
    double by;
    double to;
};

TEST_F(frmCurveTest, steps_of_seconds_stay_inside_the_recording) {
    const SecondsStep rows[] = {{10.5, 5, 15.5}, {10.5, -1, 9.5}, {3, -5, 0}, {98, 5, 100}};
    for (const SecondsStep& row : rows) {
        open(PlayState::Playing, row.from, 100);
        controls.seeks.clear();
        bar.StepSeconds(row.by);
        EXPECT_THAT(controls.seeks, ElementsAre(row.to));
    }
    open(PlayState::Stopped, 10, 100);
    controls.seeks.clear();
    bar.StepSeconds(5);
    EXPECT_THAT(controls.seeks, IsEmpty());
}

TEST_F(frmCurveTest, a_resume_after_a_step_of_one_picture_stays_in_place) {
    open(PlayState::Paused, 10.48, 100);
    bar.StepFrame(StepDirection::Forward);
    bar.StepFrame(StepDirection::Back);
    EXPECT_THAT(frames, ElementsAre(StepDirection::Forward, StepDirection::Back));
    controls.calls.clear();
    click("CMDPLAY");
    EXPECT_THAT(controls.calls, ElementsAre("play")) << "no seek to a whole second";
    controls.state = PlayState::Paused;
    controls.calls.clear();
    click("CMDPLAY");
    EXPECT_EQ(controls.calls.size(), 2u) << "a later pause resumes at its second again";
}

TEST_F(frmCurveTest, pictures_are_not_stepped_while_stopped) {
    open(PlayState::Stopped, 0, 100);
    bar.StepFrame(StepDirection::Forward);
    EXPECT_THAT(frames, IsEmpty());
}

TEST_F(frmCurveTest, the_volume_changes_in_steps_and_upwards_ends_muting) {
    settings.loudness = 97;
    bar.ChangeVolume(5);
    EXPECT_EQ(settings.loudness, 100);
    EXPECT_EQ(skin.values["volume"], 100);
    click("SPEAKER");
    bar.ChangeVolume(-5);
    EXPECT_TRUE(settings.muted);
    EXPECT_EQ(skin.values["volume"], 0);
    bar.ChangeVolume(5);
    EXPECT_FALSE(settings.muted);
    EXPECT_FALSE(skin.on["speaker"]);
    EXPECT_EQ(skin.values["volume"], 100);
}

TEST_F(frmCurveTest, the_rates_can_be_chosen_by_number) {
    const std::pair<const char*, double> rates[] = {
        {"0.2", -7}, {"0.5", 20}, {"1", 43}, {"1.5", 65}, {"2", 85}};
    int step = 1;
    for (const auto& [tag, slider] : rates) {
        bar.ChooseRate(step++);
        EXPECT_EQ(player.rateTag(), tag);
        EXPECT_EQ(skin.values["playspeed"], slider);
    }
    bar.ChooseRate(0);
    bar.ChooseRate(6);
    EXPECT_EQ(player.rateTag(), "2");
}

} // namespace
} // namespace velmorant

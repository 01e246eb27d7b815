#include "desktop/player/MpvPlayer.h"

#include "desktop/gate/HandlerGate.h"
#include "desktop/player/VideoWidget.h"
#include "tests/desktop/eventLoop.h"
#include "tests/desktop/player/TestMedia.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

namespace velmorant {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class MpvPlayerTest : public testing::Test {
  protected:
    MpvPlayerTest() {
        m_player.onPlayStateChange(
            m_gate.listener([this](PlayState state) { m_states.push_back(state); }));
        m_player.onOpenFailed(
            m_gate.listener([this](const std::string& path, const std::string& reason) {
                m_failures.push_back(path + ": " + reason);
            }));
        m_player.onEndedEarly(
            m_gate.listener([this](const std::string& path, const std::string& reason) {
                m_earlyEnds.push_back(path + ": " + reason);
            }));
        m_widget.resize(320, 180);
        m_widget.setPictureSize(320, 180);
        m_widget.show();
        m_widget.setPictureVisible(true);
    }

    void open(TestMedium medium) {
        m_player.setUrl(testMedium(medium));
        ASSERT_TRUE(waitFor([this] { return m_player.playState() == PlayState::Stopped; }));
    }
    bool reaches(PlayState state) {
        return waitFor([this, state] { return m_player.playState() == state; });
    }
    /// The number, mod 100, of the decoded frame; -1 without one.
    int frame() const {
        const std::optional<DecodedFrame> frame = m_player.decodedFrame();
        return frame && !frame->rgb.empty() ? frameNumberOf(frame->rgb[0]) : -1;
    }
    bool showsFrame(int number) {
        return waitFor([this, number] { return frame() == number % 100; }, 3000);
    }

    HandlerGate m_gate;
    MpvPlayer m_player{VideoOutput::Software, AudioOutput::System};
    VideoWidget m_widget{m_player};
    std::vector<PlayState> m_states;
    std::vector<std::string> m_failures;
    std::vector<std::string> m_earlyEnds;
};

TEST_F(MpvPlayerTest, opens_a_recording_without_playing_it) {
    EXPECT_EQ(m_player.playState(), PlayState::Undefined);
    EXPECT_EQ(m_player.currentPosition(), std::nullopt);
    open(TestMedium::TenSeconds);
    EXPECT_EQ(m_player.url(), testMedium(TestMedium::TenSeconds));
    ASSERT_TRUE(waitFor([this] { return m_player.duration() && m_player.currentPosition(); }));
    EXPECT_NEAR(*m_player.duration(), 10, 0.1);
    EXPECT_TRUE(showsFrame(0));
    letRun(300);
    EXPECT_NEAR(*m_player.currentPosition(), 0, 0.001);
}

TEST_F(MpvPlayerTest, holds_play_and_seek_until_the_file_is_open) {
    m_player.setUrl(testMedium(TestMedium::TenSeconds));
    m_player.setCurrentPosition(4);
    m_player.play();
    EXPECT_EQ(m_player.currentPosition(), 4);
    ASSERT_TRUE(reaches(PlayState::Playing));
    ASSERT_TRUE(waitFor([this] { return m_player.currentPosition() > 4.2; }));
    EXPECT_LT(*m_player.currentPosition(), 6);
}

TEST_F(MpvPlayerTest, holds_a_pause_that_follows_a_held_play) {
    m_player.setUrl(testMedium(TestMedium::TenSeconds));
    m_player.play();
    m_player.pause();
    ASSERT_TRUE(reaches(PlayState::Paused));
    letRun(200);
    EXPECT_THAT(m_states, ElementsAre(PlayState::Paused));
    EXPECT_NEAR(*m_player.currentPosition(), 0, 0.001);
}

TEST_F(MpvPlayerTest, tells_each_change_of_its_state) {
    open(TestMedium::TenSeconds);
    m_player.play();
    ASSERT_TRUE(waitFor([this] { return m_player.currentPosition() > 0.2; }));
    m_player.pause();
    letRun(50);
    m_player.play();
    m_player.stop();
    letRun(50);
    EXPECT_THAT(m_states, ElementsAre(PlayState::Stopped, PlayState::Playing, PlayState::Paused,
                                      PlayState::Playing, PlayState::Stopped));
    EXPECT_NEAR(*m_player.currentPosition(), 0, 0.001);
    EXPECT_TRUE(showsFrame(0));
}

TEST_F(MpvPlayerTest, ends_with_media_ended_and_then_stopped_and_begins_anew) {
    open(TestMedium::Short);
    m_player.play();
    ASSERT_TRUE(waitFor([this] { return m_states.size() >= 4; }));
    EXPECT_THAT(m_states, ElementsAre(PlayState::Stopped, PlayState::Playing, PlayState::MediaEnded,
                                      PlayState::Stopped));
    EXPECT_EQ(frame(), 29);
    EXPECT_EQ(m_player.currentPosition(), 0);
    EXPECT_TRUE(m_earlyEnds.empty());
    m_player.play();
    ASSERT_TRUE(waitFor([this] { return m_states.size() >= 7; }));
    EXPECT_EQ(m_states[5], PlayState::MediaEnded);
}

TEST_F(MpvPlayerTest, seeks_to_the_exact_frame) {
    open(TestMedium::TenSeconds);
    for (const double seconds : {3.5, 0.1, 9.0, 4.0 / 3, 6.0, 2.0}) {
        SCOPED_TRACE(seconds);
        m_player.setCurrentPosition(seconds);
        EXPECT_NEAR(*m_player.currentPosition(), seconds, 0.0001);
        EXPECT_TRUE(m_player.seeking());
        EXPECT_TRUE(showsFrame(static_cast<int>(std::lround(seconds * 30)))) << frame();
        EXPECT_TRUE(waitFor([this] { return !m_player.seeking(); }));
        EXPECT_NEAR(*m_player.currentPosition(), seconds, 0.034);
    }
}

TEST_F(MpvPlayerTest, loses_no_seek_of_many_in_a_row) {
    open(TestMedium::TenSeconds);
    for (int i = 0; i < 100; ++i) {
        m_player.setCurrentPosition(i * 37 % 90 / 10.0);
        if (i % 3 == 0)
            letRun(5);
    }
    m_player.setCurrentPosition(5.5);
    EXPECT_TRUE(showsFrame(165)) << frame();
}

TEST_F(MpvPlayerTest, shows_the_last_frame_for_a_seek_past_the_end_and_does_not_end_while_paused) {
    open(TestMedium::TenSeconds);
    m_player.play();
    m_player.pause();
    m_player.setCurrentPosition(500);
    EXPECT_TRUE(showsFrame(299)) << frame();
    letRun(200);
    EXPECT_EQ(m_player.playState(), PlayState::Paused);
    EXPECT_NEAR(*m_player.currentPosition(), 10, 0.1);
    m_player.play();
    EXPECT_TRUE(reaches(PlayState::Stopped));
    letRun(20);
    EXPECT_THAT(m_states, testing::Contains(PlayState::MediaEnded));
}

TEST_F(MpvPlayerTest, ends_when_a_playing_recording_is_sought_past_its_end) {
    open(TestMedium::TenSeconds);
    m_player.play();
    ASSERT_TRUE(waitFor([this] { return m_player.currentPosition() > 0.1; }));
    m_player.setCurrentPosition(10);
    EXPECT_TRUE(reaches(PlayState::Stopped));
}

TEST_F(MpvPlayerTest, steps_single_frames_both_ways) {
    open(TestMedium::TenSeconds);
    m_player.setCurrentPosition(2);
    ASSERT_TRUE(showsFrame(60));
    m_player.stepFrame(FrameStep::Forward);
    EXPECT_TRUE(showsFrame(61)) << frame();
    EXPECT_EQ(m_player.playState(), PlayState::Paused);
    m_player.stepFrame(FrameStep::Back);
    EXPECT_TRUE(showsFrame(60)) << frame();
    m_player.stepFrame(FrameStep::Back);
    EXPECT_TRUE(showsFrame(59)) << frame();
    EXPECT_TRUE(
        waitFor([this] { return std::abs(*m_player.currentPosition() - 59 / 30.0) < 0.01; }));
}

TEST_F(MpvPlayerTest, plays_at_the_rate_asked_for) {
    open(TestMedium::TenSeconds);
    m_player.setRate(4);
    EXPECT_EQ(m_player.rate(), 4);
    m_player.play();
    ASSERT_TRUE(waitFor([this] { return m_player.currentPosition() > 0.5; }));
    const double from = *m_player.currentPosition();
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(waitFor([&] { return m_player.currentPosition() > from + 4; }));
    // One second on an idle machine; four at the recording's own rate.
    EXPECT_LT(timer.elapsed(), 4000);
    double speed = 0;
    ASSERT_EQ(mpv_get_property(m_player.handle()->get(), "speed", MPV_FORMAT_DOUBLE, &speed), 0);
    EXPECT_EQ(speed, 4);
}

TEST_F(MpvPlayerTest, clamps_volume_and_rate) {
    const std::pair<int, int> volumes[] = {{50, 50}, {-1, 0}, {101, 100}, {100, 100}, {0, 0}};
    for (const auto& [asked, got] : volumes) {
        m_player.setVolume(asked);
        EXPECT_EQ(m_player.volume(), got);
    }
    m_player.setRate(0);
    EXPECT_EQ(m_player.rate(), 0.01);
    m_player.setRate(std::nan(""));
    EXPECT_EQ(m_player.rate(), 0.01);
    m_player.setMute(true);
    EXPECT_TRUE(m_player.mute());
}

TEST_F(MpvPlayerTest, keeps_rate_volume_and_mute_over_a_change_of_recording) {
    open(TestMedium::TenSeconds);
    m_player.setRate(2);
    m_player.setVolume(30);
    m_player.setMute(true);
    m_player.setUrl(testMedium(TestMedium::Short));
    m_player.play();
    ASSERT_TRUE(reaches(PlayState::Playing));
    double speed = 0;
    double volume = 0;
    int mute = 0;
    mpv_get_property(m_player.handle()->get(), "speed", MPV_FORMAT_DOUBLE, &speed);
    mpv_get_property(m_player.handle()->get(), "volume", MPV_FORMAT_DOUBLE, &volume);
    mpv_get_property(m_player.handle()->get(), "mute", MPV_FORMAT_FLAG, &mute);
    EXPECT_EQ(speed, 2);
    EXPECT_EQ(volume, 30);
    EXPECT_EQ(mute, 1);
}

struct Failure {
    const char* name;
    std::string path;
    const char* reason;
};

TEST_F(MpvPlayerTest, says_why_a_recording_cannot_be_opened) {
    const std::string empty = std::string(VELMORANT_TEST_OUTPUT) + "/empty.MP4";
    testMedium(TestMedium::NoMedia);
    std::ofstream{empty};
    const Failure failures[] = {
        {"missing", "/nowhere/103045.MP4", "No such file"},
        {"folder", VELMORANT_TEST_OUTPUT, ""},
        {"empty", empty, "unrecognized file format"},
        {"text", testMedium(TestMedium::NoMedia), "unrecognized file format"},
        {"sound", testMedium(TestMedium::SoundOnly), "no picture"},
        {"address", "http://127.0.0.1:9/a.MP4", "No such file"},
    };
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.name);
        m_failures.clear();
        m_player.setUrl(failure.path);
        m_player.play();
        ASSERT_TRUE(waitFor([this] { return !m_failures.empty(); }));
        EXPECT_THAT(m_failures, ElementsAre(testing::StartsWith(failure.path + ": ")));
        EXPECT_THAT(m_failures[0], HasSubstr(failure.reason));
        EXPECT_EQ(m_player.playState(), PlayState::Undefined);
        EXPECT_EQ(m_player.url(), failure.path);
    }
    m_player.setUrl(testMedium(TestMedium::Short));
    m_player.play();
    EXPECT_TRUE(reaches(PlayState::Playing));
}

TEST_F(MpvPlayerTest, plays_a_cut_off_recording_as_far_as_it_can_and_says_so) {
    open(TestMedium::CutOff);
    m_player.setRate(10);
    m_player.play();
    ASSERT_TRUE(reaches(PlayState::Stopped));
    letRun(20);
    EXPECT_THAT(m_states, testing::Contains(PlayState::MediaEnded));
    EXPECT_THAT(m_earlyEnds, ElementsAre(HasSubstr("ends at 0:0")));
}

TEST_F(MpvPlayerTest, opens_only_the_last_of_several_files_set_at_once) {
    m_player.setUrl("/nowhere/1.MP4");
    m_player.setUrl(testMedium(TestMedium::TenSeconds));
    m_player.setUrl(testMedium(TestMedium::Short));
    m_player.play();
    ASSERT_TRUE(reaches(PlayState::Playing));
    EXPECT_NEAR(*m_player.duration(), 1, 0.1);
    EXPECT_TRUE(m_failures.empty());
}

TEST_F(MpvPlayerTest, closes_with_the_empty_path) {
    open(TestMedium::TenSeconds);
    m_player.play();
    m_player.setUrl("");
    EXPECT_EQ(m_player.playState(), PlayState::Undefined);
    m_player.play();
    m_player.setCurrentPosition(3);
    letRun(100);
    EXPECT_EQ(m_player.playState(), PlayState::Undefined);
    EXPECT_EQ(m_player.currentPosition(), std::nullopt);
    EXPECT_EQ(m_player.duration(), std::nullopt);
    EXPECT_FALSE(m_player.decodedFrame());
}

TEST_F(MpvPlayerTest, gives_the_decoded_frame_at_its_full_size) {
    m_widget.setPictureSize(64, 36);
    open(TestMedium::TenSeconds);
    m_player.setCurrentPosition(1);
    ASSERT_TRUE(showsFrame(30));
    const std::optional<DecodedFrame> frame = m_player.decodedFrame();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->width, 320);
    EXPECT_EQ(frame->height, 180);
    EXPECT_EQ(frame->rgb.size(), 320U * 180 * 3);
}

TEST(HiddenMpvPlayer, plays_without_any_widget) {
    MpvPlayer player(VideoOutput::None, AudioOutput::None);
    HandlerGate gate;
    bool ended = false;
    player.onPlayStateChange(
        gate.listener([&](PlayState state) { ended |= state == PlayState::MediaEnded; }));
    player.setUrl(testMedium(TestMedium::Short));
    player.play();
    player.setMute(true);
    EXPECT_TRUE(waitFor([&] { return ended; }));
}

/// The names of this process's threads.
std::vector<std::string> threadNames() {
    std::vector<std::string> names;
    for (const QString& thread :
         QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile name("/proc/self/task/" + thread + "/comm");
        if (name.open(QIODevice::ReadOnly)) // else it has ended meanwhile
            names.push_back(name.readAll().trimmed().toStdString());
    }
    return names;
}

TEST(MpvPlayers, run_no_script_of_libmpv) {
    MpvPlayer hidden(VideoOutput::None, AudioOutput::None);
    MpvPlayer visible(VideoOutput::Software, AudioOutput::System);
    VideoWidget widget(visible);
    widget.setPictureSize(320, 180);
    widget.show();
    widget.setPictureVisible(true);
    for (MpvPlayer* player : {&hidden, &visible}) {
        player->setUrl(testMedium(TestMedium::TenSeconds));
        player->play();
    }
    // By then every thread has its name.
    ASSERT_TRUE(
        waitFor([&] { return visible.currentPosition() > 0.1 && hidden.currentPosition() > 0.1; }));
    const std::vector<std::string> names = threadNames();
    EXPECT_THAT(names, testing::Contains(HasSubstr("demux"))) << "libmpv's threads are not seen";
    EXPECT_THAT(names,
                testing::Each(testing::Not(testing::AnyOf(HasSubstr("lua"), HasSubstr("script")))));
}

TEST(HiddenMpvPlayer, plays_beside_a_visible_one_from_the_first_moment) {
    MpvPlayer hidden(VideoOutput::None, AudioOutput::None);
    MpvPlayer visible(VideoOutput::Software, AudioOutput::System);
    VideoWidget widget(visible);
    widget.resize(640, 360);
    widget.setPictureSize(640, 360);
    widget.show();
    hidden.setUrl(testMedium(TestMedium::Short));
    hidden.play();
    hidden.setMute(true);
    visible.setUrl(testMedium(TestMedium::TenSeconds));
    widget.setPictureVisible(true);
    visible.play();
    EXPECT_TRUE(waitFor([&] { return visible.currentPosition() > 0.3; }));
    EXPECT_TRUE(waitFor([&] { return hidden.playState() == PlayState::Stopped; }));
}

} // namespace
} // namespace velmorant

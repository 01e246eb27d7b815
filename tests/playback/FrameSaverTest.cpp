#include "playback/FrameSaver.h"

#include "common/StepError.h"
#include "tests/fakes/FakeFileDialogs.h"
#include "tests/playback/PlayerFixture.h"

#include <gmock/gmock.h>

namespace velmorant {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FakeFrameWriter : public FrameWriter {
  public:
    void saveFrame(const std::string& path, const FrameDetails& details) override {
        if (fails)
            throw StepError(path + ": permission denied");
        paths.push_back(path);
        last = details;
    }

    bool fails = false;
    std::vector<std::string> paths;
    FrameDetails last;
};

class FrameSaverTest : public PlayerFixture {
  protected:
    FrameSaverTest() {
        state.currentTrack = std::make_shared<clsDot>();
        for (int i = 0; i < 100; ++i)
            state.currentTrack->SetDot("1970/1/1 00:00:10", "", 0, i, "121.5", "25.25", 0, 90, 0, 0,
                                       0);
        player.openRecording("/card/20121009/103045.MP4");
        controls.finishOpening(120);
        controls.state = PlayState::Playing;
        controls.position = 65.4;
    }

    FakeFrameWriter writer;
    fakes::FakeFileDialogs dialogs;
    FrameSaver saver{{writer, dialogs, messages, texts, paths, controls, player, state}};
};

TEST_F(FrameSaverTest, writes_the_shown_picture_with_time_position_and_heading) {
    dialogs.saveAnswers = {"/home/me/a.jpg"};
    saver.Save();
    EXPECT_THAT(writer.paths, ElementsAre("/home/me/a.jpg"));
    EXPECT_EQ(writer.last.utcSeconds, 75);
    EXPECT_EQ(writer.last.cameraSeconds, std::nullopt);
    EXPECT_EQ(writer.last.longitude, 121.5);
    EXPECT_EQ(writer.last.latitude, 25.25);
    EXPECT_EQ(writer.last.heading, 90);
    ASSERT_EQ(dialogs.saveRequests.size(), 1u);
    EXPECT_EQ(dialogs.saveRequests[0].defaultName, "103045_01-05.jpg");
    EXPECT_EQ(dialogs.saveRequests[0].title, "<frame.title>");
    EXPECT_EQ(dialogs.saveRequests[0].filter, "<frame.filter>");
}

TEST_F(FrameSaverTest, the_picture_stands_still_while_the_name_is_asked_for) {
    dialogs.saveAnswers = {"a.jpg", "b.jpg"};
    controls.calls.clear();
    saver.Save();
    EXPECT_THAT(controls.calls, ElementsAre("pause", "play"));
    controls.state = PlayState::Paused;
    controls.calls.clear();
    saver.Save();
    EXPECT_THAT(controls.calls, ElementsAre("pause")) << "what was paused stays so";
}

TEST_F(FrameSaverTest, without_a_fix_the_picture_tells_no_place) {
    TrackDetails details;
    details.timeBase = TimeBase::Camera;
    details.samples.resize(100);
    details.samples[65].hasFix = false;
    state.currentTrack->setDetails(details);
    dialogs.saveAnswers = {"a.png"};
    saver.Save();
    EXPECT_EQ(writer.last.longitude, std::nullopt);
    EXPECT_EQ(writer.last.latitude, std::nullopt);
    EXPECT_EQ(writer.last.heading, std::nullopt);
    EXPECT_EQ(writer.last.utcSeconds, std::nullopt);
    EXPECT_EQ(writer.last.cameraSeconds, 75);
}

TEST_F(FrameSaverTest, a_cancelled_dialog_saves_nothing) {
    dialogs.saveAnswers = {""};
    saver.Save();
    EXPECT_THAT(writer.paths, IsEmpty());
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(FrameSaverTest, a_failure_is_reported_and_the_play_goes_on) {
    dialogs.saveAnswers = {"/root/a.jpg"};
    writer.fails = true;
    saver.Save();
    EXPECT_THAT(messages.shown, ElementsAre(fakes::ShownMessage{"/root/a.jpg: permission denied",
                                                                "<13011>", MessageStyle::Stop}));
    EXPECT_EQ(controls.state, PlayState::Playing);
}

TEST_F(FrameSaverTest, while_nothing_is_open_nothing_is_asked) {
    controls.state = PlayState::Stopped;
    saver.Save();
    EXPECT_THAT(dialogs.saveRequests, IsEmpty());
}

} // namespace
} // namespace velmorant

#include "playback/MomentCard.h"

#include "tests/playback/PlayerFixture.h"

namespace velmorant {
namespace {

class MomentCardTest : public PlayerFixture {
  protected:
    MomentCardTest() {
        state.currentTrack = std::make_shared<clsDot>();
        for (int i = 0; i < 100; ++i)
            state.currentTrack->SetDot("2012/10/9 23:30:45", "", 0, i, "+121.5000000",
                                       "-25.1234567", 0, 90, 0, 0, 0);
        open(PlayState::Playing, 65.4, 119.9);
    }
    void setTimeBase(const std::string& base) {
        state.loadedTracks.clear();
        state.currentTrack->setDetails({timeBaseNamed(base), {}});
    }

    fakes::FakeSkin frame;
    int offset = 480;
    MomentCard card{{controls, player, frame, skin, paths, texts, state,
                     [this](std::int64_t) { return offset; }}};
};

TEST_F(MomentCardTest, shows_name_times_place_and_position) {
    card.Show();
    EXPECT_EQ(frame.texts["place.recording"], "1.MP4");
    EXPECT_EQ(frame.texts["place.moment"], "2012/10/10 07:31:50");
    EXPECT_EQ(frame.texts["place.utc"], "23:31:50 UTC");
    EXPECT_EQ(frame.texts["place.longitude"], "121.5");
    EXPECT_EQ(frame.texts["place.latitude"], "-25.12346");
    EXPECT_EQ(skin.texts["place.elapsed"], "01:05");
    EXPECT_EQ(skin.texts["place.duration"], "01:59");
}

TEST_F(MomentCardTest, the_recorders_own_clock_is_shown_as_it_stands_and_named_so) {
    setTimeBase("camera");
    card.Show();
    EXPECT_EQ(frame.texts["place.moment"], "2012/10/09 23:31:50");
    EXPECT_EQ(frame.texts["place.utc"], "<moment.cameraClock>");
}

TEST_F(MomentCardTest, an_unknown_time_leaves_its_places_empty) {
    setTimeBase("none");
    card.Show();
    EXPECT_EQ(frame.texts["place.moment"], "");
    EXPECT_EQ(frame.texts["place.utc"], "");
    EXPECT_EQ(skin.texts["place.elapsed"], "01:05");
}

TEST_F(MomentCardTest, a_dragged_slider_previews_its_position) {
    card.Preview(50);
    EXPECT_EQ(skin.texts["place.elapsed"], "00:59");
    EXPECT_EQ(frame.texts["place.utc"], "23:31:44 UTC");
    EXPECT_TRUE(controls.seeks.empty());
}

TEST_F(MomentCardTest, a_preview_stays_until_the_slider_is_let_go) {
    card.Show();
    const std::string playing = skin.texts["place.elapsed"];
    card.Preview(50);
    card.Show(); // a tick of the position
    EXPECT_EQ(skin.texts["place.elapsed"], "00:59");
    EXPECT_EQ(frame.texts["place.utc"], "23:31:44 UTC");
    card.EndPreview();
    card.Show();
    EXPECT_EQ(skin.texts["place.elapsed"], playing);
}

TEST_F(MomentCardTest, a_preview_ends_with_its_recording) {
    card.Preview(50);
    controls.state = PlayState::Stopped;
    card.Show();
    controls.state = PlayState::Playing;
    card.Show();
    EXPECT_NE(skin.texts["place.elapsed"], "00:59");
}

TEST_F(MomentCardTest, while_nothing_is_open_the_card_is_empty) {
    card.Show();
    controls.state = PlayState::Stopped;
    card.Show();
    for (const char* element :
         {"place.recording", "place.moment", "place.utc", "place.longitude", "place.latitude"})
        EXPECT_EQ(frame.texts[element], "") << element;
    EXPECT_EQ(skin.texts["place.elapsed"], "");
    card.Preview(50);
    EXPECT_EQ(skin.texts["place.elapsed"], "");
}

TEST_F(MomentCardTest, names_the_speed_unit) {
    const std::pair<int, const char*> units[] = {{1001, "km/h"}, {1002, "mph"}, {1003, "kn"}};
    for (const auto& [code, name] : units) {
        state.settings.setUnit(code);
        card.ShowUnit();
        EXPECT_EQ(skin.texts["place.unit"], name);
    }
}

} // namespace
} // namespace velmorant

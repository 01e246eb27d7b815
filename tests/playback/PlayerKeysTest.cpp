#include "playback/PlayerKeys.h"

#include "tests/playback/ControlBarFixture.h"

#include <gmock/gmock.h>

#include <set>

namespace velmorant {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PlayerKeysTest : public ControlBarFixture {
  protected:
    PlayerKeysTest() { bar.Load(); }
    void press(const char* key, bool shift = false) { keys.use({key, shift}); }
    void play(double position) {
        open(PlayState::Playing, position, 60);
        addTrack();
    }

    PlayerKeys keys{bar, view};
};

TEST_F(PlayerKeysTest, space_and_k_start_pause_and_resume) {
    mark({2});
    press("K");
    EXPECT_THAT(starts, ElementsAre(2));
    for (const char* key : {"Space", "K"}) {
        play(10);
        press(key);
        EXPECT_EQ(controls.state, PlayState::Paused) << key;
        press(key);
        EXPECT_EQ(controls.state, PlayState::Playing) << key;
    }
}

TEST_F(PlayerKeysTest, left_and_right_jump_5_seconds_and_with_shift_1) {
    struct Case {
        const char* key;
        bool shift;
        double to;
    };
    for (const auto& [key, shift, to] :
         {Case{"Left", false, 25}, {"Right", false, 35}, {"Left", true, 29}, {"Right", true, 31}}) {
        play(30);
        press(key, shift);
        EXPECT_EQ(controls.position, to) << key << shift;
    }
}

TEST_F(PlayerKeysTest, comma_and_point_step_a_picture) {
    open(PlayState::Paused, 10, 60);
    press(",");
    press(".");
    EXPECT_THAT(frames, ElementsAre(StepDirection::Back, StepDirection::Forward));
}

TEST_F(PlayerKeysTest, up_and_down_change_the_volume_by_5_and_m_mutes) {
    settings.setVolume(50);
    press("Up");
    EXPECT_EQ(settings.volume(), 55);
    press("Down");
    press("Down");
    EXPECT_EQ(settings.volume(), 45);
    press("M");
    EXPECT_TRUE(settings.mute());
    press("M");
    EXPECT_FALSE(settings.mute());
}

TEST_F(PlayerKeysTest, n_and_p_go_to_the_marked_neighbours) {
    mark({1, 3, 5});
    play(10);
    list.setPlayingIndex(3);
    press("N");
    EXPECT_THAT(starts, ElementsAre(5));
    list.setPlayingIndex(3);
    press("P");
    EXPECT_THAT(starts, ElementsAre(5, 1));
}

TEST_F(PlayerKeysTest, s_saves_the_picture) {
    press("S");
    EXPECT_EQ(savedFrames, 1);
}

TEST_F(PlayerKeysTest, digits_choose_the_rates_from_slow_to_fast) {
    play(10);
    std::vector<double> rates;
    for (const char* key : {"1", "2", "3", "4", "5"}) {
        press(key);
        rates.push_back(settings.rate());
    }
    for (std::size_t i = 1; i < rates.size(); ++i)
        EXPECT_LT(rates[i - 1], rates[i]) << "rate " << i + 1;
    press("3");
    EXPECT_EQ(settings.rate(), rates[2]);
    press("6");
    press("0");
    EXPECT_EQ(settings.rate(), rates[2]) << "no rates";
}

TEST_F(PlayerKeysTest, f_enters_and_leaves_full_screen_and_escape_only_leaves) {
    press("F");
    EXPECT_TRUE(view.fullScreen());
    press("F");
    EXPECT_FALSE(view.fullScreen());
    press("Esc");
    EXPECT_FALSE(view.fullScreen());
    press("F");
    press("Esc");
    EXPECT_FALSE(view.fullScreen());
}

TEST_F(PlayerKeysTest, a_key_of_no_use_does_nothing) {
    mark({1});
    for (const char* key : {"", "Q", "k", "Return", "10"})
        press(key);
    EXPECT_THAT(starts, IsEmpty());
    EXPECT_EQ(savedFrames, 0);
}

TEST_F(PlayerKeysTest, every_key_is_named_once_and_every_tool_tip_names_keys_that_exist) {
    const std::vector<std::string> names = PlayerKeys::keys();
    const std::set<std::string> known(names.begin(), names.end());
    EXPECT_EQ(known.size(), names.size());
    for (const auto& [element, keyed] : PlayerKeys::elementKeys()) {
        const bool single = keyed.size() == 1;
        EXPECT_TRUE(!single || known.contains(keyed)) << element;
    }
}

} // namespace
} // namespace velmorant

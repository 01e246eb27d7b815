#include "playback/PictureClicks.h"

#include "tests/playback/PlayerFixture.h"

namespace velmorant {
namespace {

class PictureClicksTest : public PlayerFixture {
  protected:
    PictureClicks clicks{player, view};

    void click() {
        clicks.pressed();
        clicks.released();
    }
    void doubleClick() {
        click();
        clicks.doubleClicked();
        clicks.released();
    }
};

TEST_F(PictureClicksTest, a_single_click_does_not_enter_full_screen) {
    click();
    EXPECT_FALSE(view.fullScreen());
}

TEST_F(PictureClicksTest, a_double_click_enters_full_screen_and_stays_there) {
    doubleClick();
    EXPECT_TRUE(view.fullScreen());
}

TEST_F(PictureClicksTest, a_click_leaves_full_screen) {
    view.setFullScreen(true);
    click();
    EXPECT_FALSE(view.fullScreen());
}

TEST_F(PictureClicksTest, the_second_click_of_a_double_does_not_enter_again) {
    view.setFullScreen(true);
    doubleClick();
    EXPECT_FALSE(view.fullScreen());
}

TEST_F(PictureClicksTest, a_click_after_a_double_click_leaves_again) {
    doubleClick();
    click();
    EXPECT_FALSE(view.fullScreen());
    doubleClick();
    EXPECT_TRUE(view.fullScreen());
}

} // namespace
} // namespace velmorant

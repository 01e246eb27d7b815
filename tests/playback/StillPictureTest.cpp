#include "playback/StillPicture.h"

#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeFileDialogs.h"
#include "tests/playback/PlayerFixture.h"

#include <gmock/gmock.h>

namespace velmorant {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class StillPictureTest : public PlayerFixture {
  protected:
    StillPictureTest() { player.ResizeBackground(656, 369); }

    fakes::FakeScreenCapture capture;
    fakes::FakeFileDialogs dialogs;
    fakes::FakeClock clock;
    StillPicture still{{screen, capture, dialogs, clock, messages, texts, player}};
};

struct CapturedPlace {
    int screenWidth;
    int screenHeight;
    int twipsX;
    int twipsY;
    int left;
    int top;
};

TEST_F(StillPictureTest, the_rectangle_is_counted_from_the_screens_bottom_right_corner) {
    const CapturedPlace rows[] = {{1024, 708, 15, 15, 10, 120},
                                  {1920, 1080, 15, 12, 906, 492},
                                  {1920, 1080, 12, 15, 906, 492},
                                  {800, 600, 12, 12, -214, 12}};
    for (const CapturedPlace& row : rows) {
        screen.pixelWidth = row.screenWidth;
        screen.pixelHeight = row.screenHeight;
        screen.twipsX = row.twipsX;
        screen.twipsY = row.twipsY;
        EXPECT_EQ(still.captureRectangle(), (PixelRectangle{row.left, row.top, 656, 369}));
    }
}

TEST_F(StillPictureTest, the_picture_is_copied_first_and_saved_under_the_chosen_name) {
    dialogs.saveAnswers = {"/home/me/still.jpg"};
    still.Take();
    EXPECT_THAT(capture.captured, ElementsAre(PixelRectangle{10, 120, 656, 369}));
    ASSERT_EQ(dialogs.saveRequests.size(), 1u);
    EXPECT_EQ(dialogs.saveRequests[0].filter, "<13038>");
    EXPECT_EQ(dialogs.saveRequests[0].title, "<13039>");
    EXPECT_EQ(dialogs.saveRequests[0].defaultName, "20121009103045");
    EXPECT_THAT(capture.saved, ElementsAre("/home/me/still.jpg"));
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(StillPictureTest, the_default_name_fills_each_part_with_zeros) {
    clock.time = {2013, 1, 2, 3, 4, 5};
    dialogs.saveAnswers = {""};
    still.Take();
    EXPECT_EQ(dialogs.saveRequests[0].defaultName, "20130102030405");
}

TEST_F(StillPictureTest, two_pictures_of_one_second_propose_one_name) {
    dialogs.saveAnswers = {"a.jpg", "a.jpg"};
    still.Take();
    still.Take();
    EXPECT_EQ(dialogs.saveRequests[0].defaultName, dialogs.saveRequests[1].defaultName);
    EXPECT_THAT(capture.saved, ElementsAre("a.jpg", "a.jpg"));
}

TEST_F(StillPictureTest, a_cancelled_dialog_saves_and_reports_nothing) {
    dialogs.saveAnswers = {""};
    still.Take();
    EXPECT_THAT(capture.saved, IsEmpty());
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(StillPictureTest, a_picture_that_cannot_be_saved_is_reported) {
    dialogs.saveAnswers = {"/full/a.jpg"};
    capture.saveFails = true;
    still.Take();
    EXPECT_THAT(messages.shown,
                ElementsAre(fakes::ShownMessage{"/full/a.jpg: no space left on device", "<13011>",
                                                MessageStyle::Stop}));
}

TEST_F(StillPictureTest, a_screen_that_cannot_be_copied_is_reported_without_a_dialog) {
    capture.captureFails = true;
    still.Take();
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_THAT(dialogs.saveRequests, IsEmpty());
}

} // namespace
} // namespace velmorant

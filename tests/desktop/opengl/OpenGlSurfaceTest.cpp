#include "desktop/player/OpenGlSurface.h"

#include "desktop/player/VideoWidget.h"
#include "tests/desktop/eventLoop.h"
#include "tests/desktop/player/TestMedia.h"

#include <QScreen>

#include <gtest/gtest.h>

namespace velmorant {
namespace {

class OpenGlSurfaceTest : public testing::Test {
  protected:
    OpenGlSurfaceTest() {
        window_.resize(400, 300);
        widget_.setGeometry(10, 10, 320, 180);
        view_.setSize(320, 180);
        window_.show();
    }

    bool shows(int frame) {
        return waitFor([&] {
            const QImage image = surface().grabFramebuffer();
            return frameNumberOf(qRed(image.pixel(image.width() / 2, image.height() / 2))) == frame;
        });
    }
    OpenGlSurface& surface() { return *surface_; }

    MpvPlayer player_{VideoOutput::OpenGl, AudioOutput::None};
    QWidget window_;
    VideoWidget widget_{player_, &window_};
    VideoWidgetView view_{widget_};
    OpenGlSurface* surface_ = dynamic_cast<OpenGlSurface*>(widget_.findChild<QOpenGLWidget*>());
};

TEST_F(OpenGlSurfaceTest, opens_what_was_set_before_it_was_shown) {
    player_.setUrl(testMedium(TestMedium::TenSeconds));
    player_.setCurrentPosition(2);
    letRun(200);
    EXPECT_EQ(player_.playState(), PlayState::Undefined);
    view_.setVisible(true);
    EXPECT_TRUE(waitFor([&] { return player_.playState() == PlayState::Stopped; }));
    EXPECT_TRUE(shows(60));
    player_.setCurrentPosition(1);
    EXPECT_TRUE(shows(30));
}

TEST_F(OpenGlSurfaceTest, fills_the_screen_and_comes_back_with_its_picture) {
    view_.setVisible(true);
    player_.setUrl(testMedium(TestMedium::TenSeconds));
    player_.setCurrentPosition(2);
    ASSERT_TRUE(shows(60));
    view_.setFullScreen(true);
    EXPECT_TRUE(waitFor([&] { return surface().size() == surface().screen()->size(); }));
    player_.setCurrentPosition(1);
    EXPECT_TRUE(shows(30));
    view_.setFullScreen(false);
    player_.setCurrentPosition(3);
    EXPECT_TRUE(shows(90));
    player_.play();
    EXPECT_TRUE(waitFor([&] { return player_.currentPosition() > 3.5; }));
}

TEST_F(OpenGlSurfaceTest, plays_on_while_hidden) {
    view_.setVisible(true);
    player_.setUrl(testMedium(TestMedium::TenSeconds));
    player_.play();
    ASSERT_TRUE(waitFor([&] { return player_.currentPosition() > 0.2; }));
    view_.setVisible(false);
    EXPECT_TRUE(waitFor([&] { return player_.currentPosition() > 0.8; }));
}

} // namespace
} // namespace velmorant

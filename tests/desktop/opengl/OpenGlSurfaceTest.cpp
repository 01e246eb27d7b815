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
        m_window.resize(400, 300);
        m_widget.setGeometry(10, 10, 320, 180);
        m_view.setSize(320, 180);
        m_window.show();
    }

    bool shows(int frame) {
        return waitFor([&] {
            const QImage image = surface().grabFramebuffer();
            return frameNumberOf(qRed(image.pixel(image.width() / 2, image.height() / 2))) == frame;
        });
    }
    OpenGlSurface& surface() { return *m_surface; }

    MpvPlayer m_player{VideoOutput::OpenGl, AudioOutput::None};
    QWidget m_window;
    VideoWidget m_widget{m_player, &m_window};
    VideoWidgetView m_view{m_widget};
    OpenGlSurface* m_surface = dynamic_cast<OpenGlSurface*>(m_widget.findChild<QOpenGLWidget*>());
};

TEST_F(OpenGlSurfaceTest, opens_what_was_set_before_it_was_shown) {
    m_player.setUrl(testMedium(TestMedium::TenSeconds));
    m_player.setCurrentPosition(2);
    letRun(200);
    EXPECT_EQ(m_player.playState(), PlayState::Undefined);
    m_view.setVisible(true);
    EXPECT_TRUE(waitFor([&] { return m_player.playState() == PlayState::Stopped; }));
    EXPECT_TRUE(shows(60));
    m_player.setCurrentPosition(1);
    EXPECT_TRUE(shows(30));
}

TEST_F(OpenGlSurfaceTest, fills_the_screen_and_comes_back_with_its_picture) {
    m_view.setVisible(true);
    m_player.setUrl(testMedium(TestMedium::TenSeconds));
    m_player.setCurrentPosition(2);
    ASSERT_TRUE(shows(60));
    m_view.setFullScreen(true);
    EXPECT_TRUE(waitFor([&] { return surface().size() == surface().screen()->size(); }));
    m_player.setCurrentPosition(1);
    EXPECT_TRUE(shows(30));
    m_view.setFullScreen(false);
    m_player.setCurrentPosition(3);
    EXPECT_TRUE(shows(90));
    m_player.play();
    EXPECT_TRUE(waitFor([&] { return m_player.currentPosition() > 3.5; }));
}

TEST_F(OpenGlSurfaceTest, plays_on_while_hidden) {
    m_view.setVisible(true);
    m_player.setUrl(testMedium(TestMedium::TenSeconds));
    m_player.play();
    ASSERT_TRUE(waitFor([&] { return m_player.currentPosition() > 0.2; }));
    m_view.setVisible(false);
    EXPECT_TRUE(waitFor([&] { return m_player.currentPosition() > 0.8; }));
}

} // namespace
} // namespace velmorant

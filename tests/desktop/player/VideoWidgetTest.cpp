#include "desktop/player/VideoWidget.h"

#include "desktop/gate/HandlerGate.h"
#include "tests/desktop/eventLoop.h"
#include "tests/desktop/player/TestMedia.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QWheelEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using testing::ElementsAre;

constexpr QRgb green = qRgb(0, 200, 0);

class VideoWidgetTest : public testing::Test {
  protected:
    VideoWidgetTest() {
        m_widget.onMouse(
            m_gate.listener([this](const PictureMouseEvent& event) { m_mouse.push_back(event); }));
        m_widget.resize(320, 180);
        m_view.setSize(320, 180);
        m_widget.show();
    }

    void open(double seconds) {
        m_player.setUrl(testMedium(TestMedium::TenSeconds));
        m_player.setCurrentPosition(seconds);
        ASSERT_TRUE(waitFor([this] { return m_player.playState() == PlayState::Stopped; }));
    }
    /// A background of one colour, which no frame of the recordings has.
    void setBackground(QRgb colour) {
        const QString path = m_folder.filePath("playback.MP4");
        QImage picture(64, 36, QImage::Format_RGB32);
        picture.fill(colour);
        ASSERT_TRUE(picture.save(path, "PNG"));
        ASSERT_TRUE(m_view.setBackgroundPicture(path.toStdString()));
    }
    QRgb pixel(int x, int y) { return m_widget.grab().toImage().pixel(x, y); }
    /// Whether the middle of the widget comes to show that frame.
    bool shows(int frame) {
        return waitFor([&] { return frameNumberOf(qRed(pixel(160, 90))) == frame; }, 3000);
    }
    QWidget* picture() { return m_widget.findChild<QWidget*>(); }

    HandlerGate m_gate;
    MpvPlayer m_player{VideoOutput::Software, AudioOutput::System};
    VideoWidget m_widget{m_player};
    VideoWidgetView m_view{m_widget};
    QTemporaryDir m_folder;
    std::vector<PictureMouseEvent> m_mouse;
};

TEST_F(VideoWidgetTest, shows_the_decoded_picture) {
    m_view.setVisible(true);
    open(2);
    EXPECT_TRUE(shows(60));
    m_player.setCurrentPosition(1.5);
    EXPECT_TRUE(shows(45));
}

TEST_F(VideoWidgetTest, keeps_the_shape_of_the_picture) {
    m_widget.resize(320, 320);
    m_view.setSize(320, 320);
    m_view.setVisible(true);
    open(2);
    ASSERT_TRUE(waitFor([&] { return frameNumberOf(qRed(pixel(160, 160))) == 60; }));
    const int bar = (320 - 180) / 2;
    EXPECT_EQ(pixel(160, bar - 4), qRgb(0, 0, 0));
    EXPECT_EQ(pixel(160, 320 - bar + 4), qRgb(0, 0, 0));
    EXPECT_EQ(frameNumberOf(qRed(pixel(160, bar + 4))), 60);
}

TEST_F(VideoWidgetTest, draws_the_paused_picture_anew_at_another_size) {
    m_view.setVisible(true);
    open(2);
    ASSERT_TRUE(shows(60));
    m_widget.resize(640, 360);
    m_view.setSize(640, 360);
    EXPECT_TRUE(waitFor([&] { return frameNumberOf(qRed(pixel(600, 330))) == 60; }));
}

TEST_F(VideoWidgetTest, plays_on_while_hidden_and_shows_the_present_picture_again) {
    open(0);
    m_player.play();
    ASSERT_TRUE(waitFor([this] { return m_player.currentPosition() > 0.5; }));
    m_player.pause();
    m_player.setCurrentPosition(3);
    ASSERT_TRUE(waitFor([this] { return m_player.decodedFrame().has_value(); }));
    m_view.setVisible(true);
    EXPECT_TRUE(shows(90));
}

TEST_F(VideoWidgetTest, keeps_the_last_picture_until_the_next_recording_has_one) {
    m_view.setVisible(true);
    open(3);
    ASSERT_TRUE(shows(90));
    m_player.setUrl(testMedium(TestMedium::Short));
    bool black = false;
    ASSERT_TRUE(waitFor([&] {
        black = black || qRed(pixel(160, 90)) < 3;
        return frameNumberOf(qRed(pixel(160, 90))) == 0;
    }));
    EXPECT_FALSE(black);
}

TEST_F(VideoWidgetTest, keeps_the_background_until_the_first_recording_has_a_picture) {
    ASSERT_NO_FATAL_FAILURE(setBackground(green));
    m_player.setUrl(testMedium(TestMedium::TenSeconds));
    m_player.setCurrentPosition(3);
    m_view.setVisible(true);
    std::vector<QRgb> seen;
    ASSERT_TRUE(waitFor([&] {
        seen.push_back(pixel(160, 90));
        return frameNumberOf(qRed(seen.back())) == 90;
    }));
    seen.pop_back();
    EXPECT_THAT(seen, testing::Each(green)) << "neither black nor another frame";
    EXPECT_FALSE(seen.empty());
}

TEST_F(VideoWidgetTest, shows_no_picture_of_the_recording_before_when_it_was_hidden_meanwhile) {
    ASSERT_NO_FATAL_FAILURE(setBackground(green));
    m_view.setVisible(true);
    open(3);
    ASSERT_TRUE(shows(90));
    m_view.setVisible(false);
    m_player.setUrl(testMedium(TestMedium::Short));
    m_view.setVisible(true);
    std::vector<QRgb> seen;
    ASSERT_TRUE(waitFor([&] {
        seen.push_back(pixel(160, 90));
        return frameNumberOf(qRed(seen.back())) == 0 && seen.back() != green;
    }));
    seen.pop_back();
    EXPECT_THAT(seen, testing::Each(green));
}

TEST_F(VideoWidgetTest, returns_to_the_background_when_nothing_is_open) {
    ASSERT_NO_FATAL_FAILURE(setBackground(green));
    m_view.setVisible(true);
    open(3);
    ASSERT_TRUE(shows(90));
    m_player.setUrl("");
    EXPECT_TRUE(waitFor([&] { return pixel(160, 90) == green; }));
}

TEST_F(VideoWidgetTest, is_black_without_a_recording_and_without_a_background) {
    m_view.setVisible(true);
    open(3);
    ASSERT_TRUE(shows(90));
    m_player.setUrl("");
    EXPECT_TRUE(waitFor([&] { return pixel(160, 90) == qRgb(0, 0, 0); }));
}

TEST_F(VideoWidgetTest, shows_the_background_picture_while_hidden) {
    EXPECT_FALSE(m_view.setBackgroundPicture(testMedium(TestMedium::NoMedia)));
    EXPECT_FALSE(m_view.setBackgroundPicture("/nowhere/playback.MP4"));
    ASSERT_NO_FATAL_FAILURE(setBackground(green));
    EXPECT_EQ(pixel(10, 10), green);
    EXPECT_EQ(pixel(310, 170), green);
    m_view.setVisible(true);
    open(2);
    EXPECT_NE(pixel(10, 10), green);
    m_view.setVisible(false);
    EXPECT_EQ(pixel(10, 10), green);
}

TEST_F(VideoWidgetTest, fills_the_screen_and_comes_back) {
    QWidget* const surface = picture();
    m_view.setFullScreen(true);
    EXPECT_FALSE(m_view.fullScreen()) << "there is nothing to show";
    m_view.setVisible(true);
    open(2);
    ASSERT_TRUE(shows(60));
    m_view.setFullScreen(true);
    EXPECT_TRUE(m_view.fullScreen());
    EXPECT_TRUE(surface->isWindow());
    EXPECT_TRUE(waitFor([&] { return surface->size() == surface->screen()->size(); }));
    EXPECT_TRUE(waitFor([&] {
        return frameNumberOf(qRed(surface->grab().toImage().pixel(surface->width() / 2,
                                                                  surface->height() / 2))) == 60;
    }));
    m_view.setFullScreen(false);
    EXPECT_FALSE(m_view.fullScreen());
    EXPECT_EQ(surface->parentWidget(), &m_widget);
    EXPECT_EQ(surface->geometry(), QRect(0, 0, 320, 180));
    EXPECT_TRUE(shows(60));
}

TEST_F(VideoWidgetTest, leaves_the_full_screen_when_it_is_hidden_or_closed) {
    QWidget* const surface = picture();
    m_view.setVisible(true);
    open(2);
    m_view.setFullScreen(true);
    surface->close();
    EXPECT_FALSE(m_view.fullScreen());
    EXPECT_TRUE(surface->isVisible());
    m_view.setFullScreen(true);
    m_view.setVisible(false);
    EXPECT_FALSE(m_view.fullScreen());
    EXPECT_FALSE(surface->isVisible());
}

class KeyCatcher : public QObject {
  public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::KeyPress)
            keys.push_back(static_cast<QKeyEvent*>(event)->key());
        return false;
    }
    std::vector<int> keys;
};

TEST_F(VideoWidgetTest, hands_keys_of_the_full_screen_to_the_widget) {
    KeyCatcher catcher;
    m_widget.installEventFilter(&catcher);
    QWidget* const surface = picture();
    m_view.setVisible(true);
    m_view.setFullScreen(true);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QCoreApplication::sendEvent(surface, &press);
    EXPECT_THAT(catcher.keys, ElementsAre(Qt::Key_Space));
}

TEST_F(VideoWidgetTest, reports_mouse_buttons_with_shift_state_and_place) {
    m_view.setVisible(true);
    const auto send = [&](QEvent::Type type, Qt::MouseButton button, Qt::KeyboardModifiers keys) {
        QMouseEvent event(type, QPointF(12, 34), picture()->mapToGlobal(QPointF(12, 34)), button,
                          button, keys);
        QCoreApplication::sendEvent(picture(), &event);
    };
    send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::NoModifier);
    send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoModifier);
    send(QEvent::MouseButtonDblClick, Qt::LeftButton, Qt::ShiftModifier | Qt::AltModifier);
    send(QEvent::MouseButtonRelease, Qt::RightButton, Qt::ControlModifier);
    ASSERT_EQ(m_mouse.size(), 4U);
    EXPECT_EQ(m_mouse[0].action, MouseAction::Press);
    EXPECT_EQ(m_mouse[1].action, MouseAction::Release);
    EXPECT_EQ(m_mouse[2].action, MouseAction::DoubleClick);
    EXPECT_EQ(m_mouse[2].shift, 5);
    EXPECT_EQ(m_mouse[3].button, 2);
    EXPECT_EQ(m_mouse[3].shift, 2);
    EXPECT_EQ(m_mouse[0].x, 12);
    EXPECT_EQ(m_mouse[0].y, 34);
}

TEST_F(VideoWidgetTest, adds_small_turns_of_the_wheel_up_to_steps) {
    std::vector<int> steps;
    m_widget.onWheel(m_gate.listener([&](int step) { steps.push_back(step); }));
    m_view.setVisible(true);
    for (const int angle : {120, -240, 60, 60, 30}) {
        QWheelEvent event(QPointF(5, 5), picture()->mapToGlobal(QPointF(5, 5)), QPoint(),
                          QPoint(0, angle), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(picture(), &event);
    }
    EXPECT_THAT(steps, ElementsAre(1, -2, 1));
}

TEST_F(VideoWidgetTest, tells_its_size_to_who_lays_out_the_picture) {
    std::vector<std::pair<int, int>> sizes;
    m_widget.onResize(m_gate.listener([&](int width, int height) {
        sizes.push_back({width, height});
    }));
    m_widget.resize(656, 369);
    EXPECT_TRUE(waitFor([&] { return !sizes.empty(); }));
    EXPECT_THAT(sizes, ElementsAre(std::pair(656, 369)));
}

TEST(VideoWidgetLifetime, lets_widget_and_player_end_in_either_order) {
    auto player = std::make_unique<MpvPlayer>(VideoOutput::Software, AudioOutput::None);
    auto widget = std::make_unique<VideoWidget>(*player);
    widget->setPictureVisible(true);
    player->setUrl(testMedium(TestMedium::TenSeconds));
    player->play();
    ASSERT_TRUE(waitFor([&] { return player->currentPosition() > 0.1; }));
    player.reset();
    letRun(50);
    widget.reset();
    player = std::make_unique<MpvPlayer>(VideoOutput::Software, AudioOutput::None);
    widget = std::make_unique<VideoWidget>(*player);
    player->setUrl(testMedium(TestMedium::TenSeconds));
    widget.reset();
    player->play();
    letRun(100);
    player->setUrl("");
    letRun(50);
    EXPECT_EQ(player->playState(), PlayState::Undefined);
}

} // namespace
} // namespace velmorant

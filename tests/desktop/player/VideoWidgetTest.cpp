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
        widget_.onMouse(
            gate_.listener([this](const PictureMouseEvent& event) { mouse_.push_back(event); }));
        widget_.resize(320, 180);
        view_.setSize(320, 180);
        widget_.show();
    }

    void open(double seconds) {
        player_.setUrl(testMedium(TestMedium::TenSeconds));
        player_.setCurrentPosition(seconds);
        ASSERT_TRUE(waitFor([this] { return player_.playState() == PlayState::Stopped; }));
    }
    /// A background of one colour, which no frame of the recordings has.
    void setBackground(QRgb colour) {
        const QString path = folder_.filePath("playback.MP4");
        QImage picture(64, 36, QImage::Format_RGB32);
        picture.fill(colour);
        ASSERT_TRUE(picture.save(path, "PNG"));
        ASSERT_TRUE(view_.setBackgroundPicture(path.toStdString()));
    }
    QRgb pixel(int x, int y) { return widget_.grab().toImage().pixel(x, y); }
    /// Whether the middle of the widget comes to show that frame.
    bool shows(int frame) {
        return waitFor([&] { return frameNumberOf(qRed(pixel(160, 90))) == frame; }, 3000);
    }
    QWidget* picture() { return widget_.findChild<QWidget*>(); }

    HandlerGate gate_;
    MpvPlayer player_{VideoOutput::Software, AudioOutput::System};
    VideoWidget widget_{player_};
    VideoWidgetView view_{widget_};
    QTemporaryDir folder_;
    std::vector<PictureMouseEvent> mouse_;
};

TEST_F(VideoWidgetTest, shows_the_decoded_picture) {
    view_.setVisible(true);
    open(2);
    EXPECT_TRUE(shows(60));
    player_.setCurrentPosition(1.5);
    EXPECT_TRUE(shows(45));
}

TEST_F(VideoWidgetTest, keeps_the_shape_of_the_picture) {
    widget_.resize(320, 320);
    view_.setSize(320, 320);
    view_.setVisible(true);
    open(2);
    ASSERT_TRUE(waitFor([&] { return frameNumberOf(qRed(pixel(160, 160))) == 60; }));
    const int bar = (320 - 180) / 2;
    EXPECT_EQ(pixel(160, bar - 4), qRgb(0, 0, 0));
    EXPECT_EQ(pixel(160, 320 - bar + 4), qRgb(0, 0, 0));
    EXPECT_EQ(frameNumberOf(qRed(pixel(160, bar + 4))), 60);
}

TEST_F(VideoWidgetTest, draws_the_paused_picture_anew_at_another_size) {
    view_.setVisible(true);
    open(2);
    ASSERT_TRUE(shows(60));
    widget_.resize(640, 360);
    view_.setSize(640, 360);
    EXPECT_TRUE(waitFor([&] { return frameNumberOf(qRed(pixel(600, 330))) == 60; }));
}

TEST_F(VideoWidgetTest, plays_on_while_hidden_and_shows_the_present_picture_again) {
    open(0);
    player_.play();
    ASSERT_TRUE(waitFor([this] { return player_.currentPosition() > 0.5; }));
    player_.pause();
    player_.setCurrentPosition(3);
    ASSERT_TRUE(waitFor([this] { return player_.decodedFrame().has_value(); }));
    view_.setVisible(true);
    EXPECT_TRUE(shows(90));
}

TEST_F(VideoWidgetTest, keeps_the_last_picture_until_the_next_recording_has_one) {
    view_.setVisible(true);
    open(3);
    ASSERT_TRUE(shows(90));
    player_.setUrl(testMedium(TestMedium::Short));
    bool black = false;
    ASSERT_TRUE(waitFor([&] {
        black = black || qRed(pixel(160, 90)) < 3;
        return frameNumberOf(qRed(pixel(160, 90))) == 0;
    }));
    EXPECT_FALSE(black);
}

TEST_F(VideoWidgetTest, keeps_the_background_until_the_first_recording_has_a_picture) {
    ASSERT_NO_FATAL_FAILURE(setBackground(green));
    player_.setUrl(testMedium(TestMedium::TenSeconds));
    player_.setCurrentPosition(3);
    view_.setVisible(true);
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
    view_.setVisible(true);
    open(3);
    ASSERT_TRUE(shows(90));
    view_.setVisible(false);
    player_.setUrl(testMedium(TestMedium::Short));
    view_.setVisible(true);
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
    view_.setVisible(true);
    open(3);
    ASSERT_TRUE(shows(90));
    player_.setUrl("");
    EXPECT_TRUE(waitFor([&] { return pixel(160, 90) == green; }));
}

TEST_F(VideoWidgetTest, is_black_without_a_recording_and_without_a_background) {
    view_.setVisible(true);
    open(3);
    ASSERT_TRUE(shows(90));
    player_.setUrl("");
    EXPECT_TRUE(waitFor([&] { return pixel(160, 90) == qRgb(0, 0, 0); }));
}

TEST_F(VideoWidgetTest, shows_the_background_picture_while_hidden) {
    EXPECT_FALSE(view_.setBackgroundPicture(testMedium(TestMedium::NoMedia)));
    EXPECT_FALSE(view_.setBackgroundPicture("/nowhere/playback.MP4"));
    ASSERT_NO_FATAL_FAILURE(setBackground(green));
    EXPECT_EQ(pixel(10, 10), green);
    EXPECT_EQ(pixel(310, 170), green);
    view_.setVisible(true);
    open(2);
    EXPECT_NE(pixel(10, 10), green);
    view_.setVisible(false);
    EXPECT_EQ(pixel(10, 10), green);
}

TEST_F(VideoWidgetTest, fills_the_screen_and_comes_back) {
    QWidget* const surface = picture();
    view_.setFullScreen(true);
    EXPECT_FALSE(view_.fullScreen()) << "there is nothing to show";
    view_.setVisible(true);
    open(2);
    ASSERT_TRUE(shows(60));
    view_.setFullScreen(true);
    EXPECT_TRUE(view_.fullScreen());
    EXPECT_TRUE(surface->isWindow());
    EXPECT_TRUE(waitFor([&] { return surface->size() == surface->screen()->size(); }));
    EXPECT_TRUE(waitFor([&] {
        return frameNumberOf(qRed(surface->grab().toImage().pixel(surface->width() / 2,
                                                                  surface->height() / 2))) == 60;
    }));
    view_.setFullScreen(false);
    EXPECT_FALSE(view_.fullScreen());
    EXPECT_EQ(surface->parentWidget(), &widget_);
    EXPECT_EQ(surface->geometry(), QRect(0, 0, 320, 180));
    EXPECT_TRUE(shows(60));
}

TEST_F(VideoWidgetTest, leaves_the_full_screen_when_it_is_hidden_or_closed) {
    QWidget* const surface = picture();
    view_.setVisible(true);
    open(2);
    view_.setFullScreen(true);
    surface->close();
    EXPECT_FALSE(view_.fullScreen());
    EXPECT_TRUE(surface->isVisible());
    view_.setFullScreen(true);
    view_.setVisible(false);
    EXPECT_FALSE(view_.fullScreen());
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
    widget_.installEventFilter(&catcher);
    QWidget* const surface = picture();
    view_.setVisible(true);
    view_.setFullScreen(true);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QCoreApplication::sendEvent(surface, &press);
    EXPECT_THAT(catcher.keys, ElementsAre(Qt::Key_Space));
}

TEST_F(VideoWidgetTest, reports_mouse_buttons_with_shift_state_and_place) {
    view_.setVisible(true);
    const auto send = [&](QEvent::Type type, Qt::MouseButton button, Qt::KeyboardModifiers keys) {
        QMouseEvent event(type, QPointF(12, 34), picture()->mapToGlobal(QPointF(12, 34)), button,
                          button, keys);
        QCoreApplication::sendEvent(picture(), &event);
    };
    send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::NoModifier);
    send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoModifier);
    send(QEvent::MouseButtonDblClick, Qt::LeftButton, Qt::ShiftModifier | Qt::AltModifier);
    send(QEvent::MouseButtonRelease, Qt::RightButton, Qt::ControlModifier);
    ASSERT_EQ(mouse_.size(), 4U);
    EXPECT_EQ(mouse_[0].action, MouseAction::Press);
    EXPECT_EQ(mouse_[1].action, MouseAction::Release);
    EXPECT_EQ(mouse_[2].action, MouseAction::DoubleClick);
    EXPECT_EQ(mouse_[2].shift, 5);
    EXPECT_EQ(mouse_[3].button, 2);
    EXPECT_EQ(mouse_[3].shift, 2);
    EXPECT_EQ(mouse_[0].x, 12);
    EXPECT_EQ(mouse_[0].y, 34);
}

TEST_F(VideoWidgetTest, adds_small_turns_of_the_wheel_up_to_steps) {
    std::vector<int> steps;
    widget_.onWheel(gate_.listener([&](int step) { steps.push_back(step); }));
    view_.setVisible(true);
    for (const int angle : {120, -240, 60, 60, 30}) {
        QWheelEvent event(QPointF(5, 5), picture()->mapToGlobal(QPointF(5, 5)), QPoint(),
                          QPoint(0, angle), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(picture(), &event);
    }
    EXPECT_THAT(steps, ElementsAre(1, -2, 1));
}

TEST_F(VideoWidgetTest, tells_its_size_to_who_lays_out_the_picture) {
    std::vector<std::pair<int, int>> sizes;
    widget_.onResize(gate_.listener([&](int width, int height) {
        sizes.push_back({width, height});
    }));
    widget_.resize(656, 369);
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

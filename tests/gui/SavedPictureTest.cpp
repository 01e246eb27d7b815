#include "tests/gui/ProgramTest.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QLineEdit>
#include <QProcess>
#include <QScreen>
#include <QTest>

#include <cmath>

namespace velmorant {

class SavedPictureTest : public ProgramTest {
  protected:
    void pauseAt(double second) {
        play(1);
        ASSERT_TRUE(waitUntil([&] { return driver().position() > 0.5; }));
        player().pause();
        ASSERT_TRUE(waitUntil([&] { return player().playState() == PlayState::Paused; }));
        player().setCurrentPosition(second);
        waitForPosition(second - 0.05, second + 0.05);
    }

    /// Presses the button and answers its dialog as a user does: a name, and Enter.
    void press(const std::string& element, const std::string& path) {
        QTimer user;
        QObject::connect(&user, &QTimer::timeout, [&] {
            for (QWidget* window : QApplication::topLevelWidgets()) {
                auto* dialog = qobject_cast<QFileDialog*>(window);
                if (dialog == nullptr || !dialog->isVisible())
                    continue;
                user.stop();
                auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
                name->setText(QString::fromStdString(path));
                QTest::keyClick(name, Qt::Key_Return);
                return;
            }
        });
        user.start(50);
        driver().clickControl(element);
        ASSERT_TRUE(waitUntil([&] { return QFileInfo::exists(QString::fromStdString(path)); }))
            << "nothing was saved by " << element;
    }

    /// What the screen shows at the picture's place, once it keeps still.
    QImage shown() {
        const QWidget& picture = *panes().picture.widget;
        const QPoint corner = picture.mapToGlobal(QPoint());
        QImage last;
        QImage seen;
        EXPECT_TRUE(waitUntil([&] {
            last = seen;
            seen = QApplication::primaryScreen()
                       ->grabWindow(0, corner.x(), corner.y(), picture.width(), picture.height())
                       .toImage()
                       .convertToFormat(QImage::Format_RGB32);
            return last == seen;
        })) << "the paused picture does not keep still";
        return seen;
    }

    static std::string exif(const std::string& path, const char* field) {
        QProcess tool;
        tool.start("exiftool", {"-n", "-s3", field, QString::fromStdString(path)});
        tool.waitForFinished();
        return tool.readAllStandardOutput().trimmed().toStdString();
    }
};

TEST_F(SavedPictureTest, photo_saves_the_picture_of_the_screen_pixel_for_pixel) {
    // The place of a still counts from the screen's far corner.
    ASSERT_EQ(QApplication::primaryScreen()->size(), QSize(1024, 708));
    showOnMap({recording(1)});
    ASSERT_NO_FATAL_FAILURE(pauseAt(3.0));
    const QImage seen = shown();
    const std::string path = folder() + "/still.jpg";
    ASSERT_NO_FATAL_FAILURE(press("photo", path));
    EXPECT_EQ(QImageReader::imageFormat(QString::fromStdString(path)), "bmp")
        << "whatever its name";
    const QImage still = QImage(QString::fromStdString(path)).convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(still.size(), seen.size());
    EXPECT_TRUE(still == seen);
}

TEST_F(SavedPictureTest, save_frame_writes_the_decoded_frame_with_its_time_and_place) {
    showOnMap({recording(1)});
    ASSERT_NO_FATAL_FAILURE(pauseAt(3.0));
    const std::string path = folder() + "/frame.jpg";
    ASSERT_NO_FATAL_FAILURE(press("saveframe", path));
    EXPECT_EQ(QImage(QString::fromStdString(path)).size(), QSize(640, 360));
    const TrackDot& dot = driver().track(1)->dot(4);
    ASSERT_EQ(dot.second, 3);
    EXPECT_NEAR(std::stod(exif(path, "-GPSLongitude")), dot.x / 1e7, 1e-6);
    EXPECT_NEAR(std::stod(exif(path, "-GPSLatitude")), dot.y / 1e7, 1e-6);
    EXPECT_NEAR(std::stod(exif(path, "-GPSImgDirection")), dot.angle, 0.5);
    EXPECT_EQ(exif(path, "-GPSDateTime").substr(0, 19), "2024:06:12 10:30:48");
}

} // namespace velmorant

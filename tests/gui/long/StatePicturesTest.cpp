// Every state of the window as a picture, in both languages, for whoever looks them over: the
// folder is named in VELMORANT_PICTURES, else they lie beside the test program.
#include "tests/gui/ProgramTest.h"

#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QTest>

namespace velmorant {

class StatePicturesTest : public ProgramTest {
  protected:
    void takeAll(const std::string& languageId, const QString& name) {
        ASSERT_NO_FATAL_FAILURE(start(languageId));
        ASSERT_NO_FATAL_FAILURE(add({recording(1), recording(2), recording(3)}));
        take(name + "-list");
        ASSERT_NO_FATAL_FAILURE(extractAll());
        ASSERT_NO_FATAL_FAILURE(waitForRoutes(3));
        ASSERT_NO_FATAL_FAILURE(play(1));
        take(name + "-playing");
        driver().clickControl("gs");
        QTest::qWait(300);
        take(name + "-playing-g-force");
        driver().clickControl("pause");
        ASSERT_TRUE(waitUntil([&] { return player().playState() == PlayState::Paused; }));
        take(name + "-paused");
        driver().clickControl("speaker");
        take(name + "-muted");
        driver().clickControl("speed");
        takeFullScreen(name);
        driver().clickControl("stop");
        ASSERT_TRUE(waitUntil([&] { return player().playState() == PlayState::Stopped; }));
        take(name + "-stopped");
    }

    void takeFullScreen(const QString& name) {
        QTest::keyClick(panes().picture.widget, Qt::Key_F);
        ASSERT_TRUE(waitUntil([&] { return panes().picture.view.fullScreen(); }));
        take(name + "-full-screen");
        QTest::keyClick(panes().picture.widget, Qt::Key_Escape);
        ASSERT_TRUE(waitUntil([&] { return !panes().picture.view.fullScreen(); }));
    }

    /// A picture that shows nothing is a fault.
    void take(const QString& name) {
        QTest::qWait(700); // the page draws on its own time
        const QImage picture = QApplication::primaryScreen()->grabWindow(0).toImage();
        QDir folder(qEnvironmentVariable("VELMORANT_PICTURES",
                                         QApplication::applicationDirPath() + "/pictures"));
        ASSERT_TRUE(folder.mkpath("."));
        ASSERT_TRUE(picture.save(folder.filePath(name + ".png")));
        QSet<QRgb> colours;
        for (int y = 0; y < picture.height(); y += 7)
            for (int x = 0; x < picture.width(); x += 7)
                colours.insert(picture.pixel(x, y));
        EXPECT_GT(colours.size(), 50) << name.toStdString();
    }
};

TEST_F(StatePicturesTest, english) {
    takeAll(english, "english");
}

TEST_F(StatePicturesTest, chinese) {
    takeAll(chinese, "chinese");
}

} // namespace velmorant

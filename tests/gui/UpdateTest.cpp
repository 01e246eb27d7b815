#include "tests/gui/ProgramTest.h"

#include "server/catalogue/ServedTree.h"
#include "tests/desktop/update/NginxServer.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QMenu>
#include <QProgressBar>
#include <QTest>

#include <filesystem>
#include <set>

namespace velmorant {
namespace {

namespace fs = std::filesystem;

/// The whole program with a real server that has a newer release.
class UpdateTest : public ProgramTest {
  protected:
    void SetUp() override {
        ASSERT_TRUE(nginx.ready()) << nginx.errors();
        fs::copy(std::string(VELMORANT_PROGRAM) + "/map", nginx.served().path("map"),
                 fs::copy_options::recursive | fs::copy_options::overwrite_existing);
        // The main program is the same in both, so that nothing is asked.
        release.write("Velmorant DVR Tools", "program");
        fs::copy_file(release.path("Velmorant DVR Tools"),
                      folder() + "/program/Velmorant DVR Tools");
        for (const char* name : {"system/a.bin", "system/b.bin", "system/c.bin"})
            release.write(name, std::string(4'000'000, 'x'));
        setVariable("VELMORANT_SERVER", nginx.base());
    }
    /// Not before the program runs: the update that opens by itself finds nothing until then.
    void publish() {
        publishRelease({release.path(), nginx.served().path(), "R2", "Velmorant DVR Tools", {}});
    }

    /// By the mouse, in the menu that the title area opens.
    void chooseUpdate() {
        QTimer::singleShot(0, [] {
            ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget(); }));
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            QAction* const update = menu->actions().last();
            EXPECT_EQ(update->text(), "Check for updates");
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(update).center());
        });
        MainWindow& frame = panes().frame;
        const QPoint place = frame.skin().placeRect("place.drag").center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, frame.mapToGlobal(place));
        QApplication::sendEvent(&frame, &event);
    }

    NginxServer nginx;
    builders::ScratchFolder release;
};

TEST_F(UpdateTest, is_opened_from_the_title_menu_and_fetches_with_both_bars_moving) {
    ASSERT_NO_FATAL_FAILURE(start());
    UpdateWindow& window = panes().update;
    std::set<int> sums;
    std::set<int> singles;
    QObject::connect(window.findChild<QProgressBar*>("prgSum"), &QProgressBar::valueChanged,
                     [&](int value) { sums.insert(value); });
    QObject::connect(window.findChild<QProgressBar*>("prgSingle"), &QProgressBar::valueChanged,
                     [&](int value) { singles.insert(value); });
    publish();
    chooseUpdate();
    EXPECT_TRUE(waitUntil([&] { return window.isVisible(); }));
    ASSERT_TRUE(waitUntil([&] { return !rooms().update->running(); }));
    EXPECT_FALSE(window.isVisible()) << "closes itself";
    EXPECT_EQ(sums, (std::set<int>{1, 2, 3, 4}));
    EXPECT_GT(singles.size(), 10U) << "the second bar follows the bytes";
    EXPECT_EQ(fs::file_size(folder() + "/program/system/c.bin"), 4'000'000U);
    EXPECT_TRUE(boxes.empty()) << boxes.front();

    chooseUpdate();
    ASSERT_TRUE(waitUntil([&] { return !boxes.empty(); }));
    EXPECT_EQ(boxes.front(), "The program is up to date.");
}

} // namespace
} // namespace velmorant

#include "desktop/widgets/ExtractionProgress.h"

#include "common/StepError.h"
#include "desktop/system/QtTimer.h"
#include "tests/desktop_windows/WaitUntil.h"
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using namespace std::chrono_literals;

class ExtractionProgressTest : public testing::Test {
  protected:
    /// Runs `step` in a timer tick of the program while the window is shown.
    void runWhileShown(const std::function<void()>& step) {
        QtTimer timer(gate);
        timer.setInterval(10ms);
        timer.onTick([&] {
            timer.setEnabled(false);
            step();
            progress.close();
        });
        timer.setEnabled(true);
        gate.runWhenFree([&] { progress.showModal("Extraction"); });
    }

    QPushButton& cancelButton() { return *progress.window().findChild<QPushButton*>(); }

    HandlerGate gate;
    QtWaits waits;
    ExtractionProgress progress{gate, waits, [] { return std::string("Cancel"); }};
};

TEST_F(ExtractionProgressTest, shows_text_and_progress_until_the_run_closes_it) {
    bool shown = false;
    runWhileShown([&] {
        progress.setText("<b>103045.MP4</b>");
        progress.setValue(40);
        shown = progress.window().isVisible();
        EXPECT_EQ(progress.window().windowTitle(), "Extraction");
        EXPECT_EQ(progress.window().findChild<QProgressBar*>()->value(), 40);
        EXPECT_EQ(progress.window().findChild<QLabel*>("text")->text(), "<b>103045.MP4</b>");
    });
    EXPECT_TRUE(shown);
    EXPECT_FALSE(progress.window().isVisible());
    EXPECT_EQ(waits.answeringWindow(), nullptr);
}

TEST_F(ExtractionProgressTest, names_itself_in_a_frame_of_its_own) {
    QString title;
    QColor edge;
    runWhileShown([&] {
        title = progress.window().findChild<QLabel*>("title")->text();
        edge = progress.window().grab().toImage().pixelColor(0, 5);
    });
    EXPECT_EQ(title, "Extraction");
    EXPECT_EQ(edge, QColor(0x75, 0x86, 0x9A));
    EXPECT_TRUE(progress.window().windowFlags().testFlag(Qt::FramelessWindowHint));
}

TEST_F(ExtractionProgressTest, cancel_answers_while_the_run_waits) {
    int cancels = 0;
    int cancelsInside = 0;
    progress.onCancel([&] { ++cancels; });
    runWhileShown([&] {
        QTimer::singleShot(10, [&] { QTest::mouseClick(&cancelButton(), Qt::LeftButton); });
        waits.sleep(80ms);
        cancelsInside = cancels;
        EXPECT_FALSE(cancelButton().isEnabled());
    });
    EXPECT_EQ(cancelsInside, 1);
}

TEST_F(ExtractionProgressTest, cancel_ends_the_wait_of_the_run) {
    QElapsedTimer sinceCancel;
    progress.onCancel([&] { sinceCancel.start(); });
    runWhileShown([&] {
        QTimer::singleShot(10, [&] { QTest::mouseClick(&cancelButton(), Qt::LeftButton); });
        waits.sleep(60s);
    });
    ASSERT_TRUE(sinceCancel.isValid());
    EXPECT_LT(sinceCancel.elapsed(), 30000);
}

TEST_F(ExtractionProgressTest, escape_and_the_close_button_ask_and_do_not_close) {
    int cancels = 0;
    progress.onCancel([&] { ++cancels; });
    runWhileShown([&] {
        QTest::keyClick(&progress.window(), Qt::Key_Escape);
        progress.window().close();
        EXPECT_TRUE(progress.window().isVisible());
    });
    EXPECT_EQ(cancels, 1);
}

TEST_F(ExtractionProgressTest, is_shown_and_answers_for_as_long_as_a_work_runs) {
    int cancels = 0;
    bool painted = false;
    int ticks = 0;
    progress.onCancel([&] { ++cancels; });
    QtTimer timer(gate);
    timer.setInterval(1ms);
    timer.onTick([&] { ++ticks; });
    timer.setEnabled(true);
    gate.runWhenFree([&] {
        progress.showWhile("Drawing", [&] {
            QTimer::singleShot(10, [&] { QTest::mouseClick(&cancelButton(), Qt::LeftButton); });
            waits.sleepUntil(60s, [&] { return cancels > 0; });
            painted = progress.window().isVisible();
            EXPECT_EQ(ticks, 0) << "the program goes on behind the work";
        });
    });
    EXPECT_EQ(cancels, 1);
    EXPECT_TRUE(painted);
    EXPECT_FALSE(progress.window().isVisible());
    EXPECT_EQ(waits.answeringWindow(), nullptr);
}

TEST_F(ExtractionProgressTest, is_closed_when_a_work_fails) {
    EXPECT_THROW(progress.showWhile("Drawing", [] { throw StepError("broken"); }), StepError);
    EXPECT_FALSE(progress.window().isVisible());
    EXPECT_EQ(waits.answeringWindow(), nullptr);
}

TEST_F(ExtractionProgressTest, serves_one_run_after_the_other) {
    for (int run = 0; run < 2; ++run) {
        bool enabled = false;
        runWhileShown([&] {
            enabled = cancelButton().isEnabled();
            cancelButton().click();
        });
        EXPECT_TRUE(enabled);
    }
}

} // namespace
} // namespace velmorant

// What takes minutes: run by tools/long_tests.sh, not by CTest.
#include "tests/gui/ProgramTest.h"

#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QEvent>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace velmorant {

namespace fs = std::filesystem;

namespace {

constexpr int recordings = 300;
constexpr qint64 repaintLimit = 100;
constexpr qint64 cancelLimit = 500;
constexpr int runLimit = 1200000;
constexpr int ends = 50;

/// Asks a widget to repaint all the time and keeps the longest time between two paintings.
class RepaintProbe : public QObject {
  public:
    explicit RepaintProbe(QWidget& widget) : m_widget(widget) {
        m_widget.installEventFilter(this);
        QObject::connect(&m_timer, &QTimer::timeout, &m_widget, QOverload<>::of(&QWidget::update));
        m_timer.start(20);
        m_since.start();
    }
    ~RepaintProbe() override { m_widget.removeEventFilter(this); }
    /// The time since the last painting counts as well: a window that stopped painting shows.
    qint64 longest() const { return std::max(m_longest, m_since.elapsed()); }
    int paintings() const { return m_paintings; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            m_longest = std::max(m_longest, m_since.restart());
            ++m_paintings;
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    QWidget& m_widget;
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
    int m_paintings = 0;
};

std::string makeCard(const std::string& folder, int count, int seconds) {
    const std::string command = std::string("'") + VELMORANT_MAKE_CARD + "' '" + folder +
                                "' --one-picture --recordings " + std::to_string(count) +
                                " --seconds " + std::to_string(seconds) + " >/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return folder;
}

std::vector<std::string> recordingsOf(const std::string& folder) {
    std::vector<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file())
            found.push_back(entry.path().string());
    std::sort(found.begin(), found.end());
    return found;
}

double residentMegabytes() {
    long total = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576.0;
}

} // namespace

class LongRoadTest : public ProgramTest {};

TEST_F(LongRoadTest, the_window_repaints_while_300_recordings_are_added_and_extracted) {
    const std::string card = makeCard(folder() + "/card", recordings, 5);
    const std::string broken = recordingsOf(card).at(recordings / 2);
    std::ofstream(broken, std::ios::binary) << "this is no recording";
    start();
    // The skin covers the frame, which therefore never paints itself.
    RepaintProbe probe(panes().frame.skin());
    QElapsedTimer run;
    run.start();
    rooms().list->AddPaths({card});
    ASSERT_EQ(driver().rowCount(), recordings);
    std::printf("longest time between two paintings while adding: %lld ms\n", probe.longest());
    driver().clickList("all");
    ASSERT_TRUE(waitUntil([&] { return !driver().extracting(); }, runLimit));
    std::printf("longest time between two paintings in the whole run: %lld ms of %d paintings\n",
                probe.longest(), probe.paintings());
    EXPECT_LE(probe.longest(), repaintLimit);
    EXPECT_GT(probe.paintings(), run.elapsed() / repaintLimit);
    int without = 0;
    for (int row = 1; row <= driver().rowCount(); ++row)
        without += driver().track(row) ? 0 : 1;
    // The broken one and, by its design, none other of the card.
    EXPECT_GE(driver().rowCount(), recordings - 1);
    EXPECT_LE(without, 1);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_NE(boxes[0].find(fs::path(broken).filename().string()), std::string::npos) << boxes[0];
    ASSERT_TRUE(
        waitUntil([&] { return driver().map().routeCount() == driver().rowsWithPlaces(); }));
}

/// Drops paths on the middle of the list, as a file manager does.
void dropOn(QWidget& window, const std::vector<std::string>& paths) {
    QMimeData data;
    QList<QUrl> urls;
    for (const std::string& path : paths)
        urls << QUrl::fromLocalFile(QString::fromStdString(path));
    data.setUrls(urls);
    const QPoint place(800, 500);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &enter);
    ASSERT_TRUE(enter.isAccepted()) << "the window takes no files";
    QDropEvent drop(QPointF(place), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
}

TEST_F(LongRoadTest, a_dropped_card_of_5000_files_is_listed_within_a_second) {
    constexpr int files = 5000;
    const std::string card = folder() + "/card";
    for (int i = 0; i < files; ++i) {
        char name[60];
        std::snprintf(name, sizeof name, "/202406%02d/%06d.MP4", 1 + i / 250, 100000 + i % 250);
        fs::create_directories(fs::path(card + name).parent_path());
        std::ofstream(card + name, std::ios::binary) << "short";
    }
    start();
    RepaintProbe probe(panes().frame.skin());
    QElapsedTimer sinceDrop;
    sinceDrop.start();
    ASSERT_NO_FATAL_FAILURE(dropOn(panes().frame, {card}));
    ASSERT_TRUE(waitUntil([&] { return driver().rowCount() == files; }));
    const qint64 taken = sinceDrop.elapsed();
    std::printf("%d rows %lld ms after the drop, longest time between two paintings %lld ms of %d "
                "paintings\n",
                files, taken, probe.longest(), probe.paintings());
    EXPECT_LE(taken, 1000);
    EXPECT_LE(probe.longest(), repaintLimit);
    EXPECT_GE(probe.paintings(), 3);
    EXPECT_EQ(driver().path(1), card + "/20240601/100000.MP4");
    EXPECT_EQ(driver().path(files), card + "/20240620/100249.MP4");
    EXPECT_EQ(boxes, std::vector<std::string>());
}

TEST_F(LongRoadTest, cancel_answers_at_once) {
    const std::string card = makeCard(folder() + "/card", 40, 5);
    start();
    rooms().list->AddPaths({card});
    QElapsedTimer sinceCancel;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (sinceCancel.isValid() || !driver().extracting() || driver().extractedRows() < 3)
            return;
        sinceCancel.start();
        QTest::mouseClick(panes().extraction.window().findChild<QPushButton*>(), Qt::LeftButton);
    });
    user.start(5);
    driver().clickList("all");
    ASSERT_TRUE(waitUntil([&] { return sinceCancel.isValid() && !driver().extracting(); }));
    const qint64 answer = sinceCancel.elapsed();
    std::printf("the run ended %lld ms after \"Cancel\"\n", answer);
    EXPECT_LE(answer, cancelLimit);
    EXPECT_LT(driver().extractedRows(), 40);
    EXPECT_EQ(driver().rowCount(), 40);
}

TEST_F(LongRoadTest, the_queue_plays_through_50_ends) {
    const std::string card = makeCard(folder() + "/card", 4, 3);
    start();
    rooms().list->AddPaths({card});
    extractAll();
    driver().clickMark(2);
    ASSERT_TRUE(waitUntil([&] { return !rooms().rows->marked(2); }));
    play(1);
    double after10 = 0;
    int row = 1;
    for (int end = 1; end <= ends; ++end) {
        row = row == 1 ? 3 : row == 3 ? 4 : 1;
        ASSERT_TRUE(waitUntil([&] { return driver().playing(row); }))
            << "end " << end << ": row " << row << " does not follow";
        if (end == 10)
            after10 = residentMegabytes();
        if (end % 10 == 0)
            std::printf("memory after %d ends %.1f MB\n", end, residentMegabytes());
    }
    const double after50 = residentMegabytes();
    std::printf("memory after 10 ends %.1f MB, after %d ends %.1f MB\n", after10, ends, after50);
    EXPECT_LE(after50, 1.1 * after10);
}

} // namespace velmorant

#include "tests/gui/ProgramTest.h"

#include <QFile>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace velmorant {

namespace {

constexpr int picturesPerSecond = 60;
constexpr int across = 64;
constexpr int down = 36;

/// One look at the screen: grey levels.
using Look = QByteArray;

double brightness(const Look& look) {
    double sum = 0;
    for (const char level : look)
        sum += static_cast<unsigned char>(level);
    return sum / static_cast<double>(look.size());
}

/// Mean difference of the grey levels.
double difference(const Look& one, const Look& other) {
    double sum = 0;
    for (qsizetype i = 0; i < one.size(); ++i)
        sum += std::abs(static_cast<unsigned char>(one[i]) - static_cast<unsigned char>(other[i]));
    return sum / static_cast<double>(one.size());
}

/// Films a part of the screen from outside, whatever the program is busy with.
class Camera {
  public:
    Camera(const QWidget& part, QString file) : m_file(std::move(file)) {
        const QPoint corner = part.mapToGlobal(QPoint());
        m_process.start(
            "ffmpeg", {"-loglevel", "error", "-f", "x11grab", "-draw_mouse", "0", "-framerate",
                       QString::number(picturesPerSecond), "-video_size",
                       QString("%1x%2").arg(part.width() / 2 * 2).arg(part.height() / 2 * 2), "-i",
                       QString("%1+%2,%3")
                           .arg(qEnvironmentVariable("DISPLAY"))
                           .arg(corner.x())
                           .arg(corner.y()),
                       "-vf", QString("scale=%1:%2:flags=area,format=gray").arg(across).arg(down),
                       "-vsync", "cfr", "-f", "rawvideo", m_file});
    }
    ~Camera() { stop(); }
    bool filming() { return QFile(m_file).size() > 0; }
    std::vector<Look> stop() {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.write("q");
            m_process.waitForFinished();
        }
        QFile file(m_file);
        std::vector<Look> looks;
        if (file.open(QIODevice::ReadOnly))
            for (Look look; (look = file.read(across * down)).size() == across * down;)
                looks.push_back(look);
        return looks;
    }

  private:
    QString m_file;
    QProcess m_process;
};

/// The longest time in milliseconds for which a condition held on end.
template <typename Condition>
double longest(const std::vector<Look>& looks, Condition condition) {
    int most = 0;
    int run = 0;
    for (std::size_t i = 1; i < looks.size(); ++i) {
        run = condition(looks[i - 1], looks[i]) ? run + 1 : 0;
        most = std::max(most, run);
    }
    return most * 1000.0 / picturesPerSecond;
}

} // namespace

class ContinuousPlayTest : public ProgramTest {};

TEST_F(ContinuousPlayTest, the_screen_keeps_a_picture_from_one_recording_to_the_next) {
    start();
    add({recording(1), recording(2)});
    extractAll();
    Camera camera(*panes().picture.widget, QString::fromStdString(folder() + "/film"));
    ASSERT_TRUE(waitUntil([&] { return camera.filming(); }));
    ASSERT_NO_FATAL_FAILURE(play(1));
    player().setCurrentPosition(6.5);
    ASSERT_TRUE(waitUntil([&] { return driver().playing(2) && driver().position() > 1; }));
    std::vector<Look> looks = camera.stop();

    ASSERT_FALSE(looks.empty());
    const Look background = looks.front();
    const auto playing = std::find_if(looks.begin(), looks.end(), [&](const Look& look) {
        return difference(look, background) > 10;
    });
    // The recordings' own pictures differ less than this from each other.
    const double bright = brightness(looks.back());
    ASSERT_GT(bright, 30) << "the recording itself is dark";
    looks.erase(looks.begin(), playing);
    ASSERT_GT(looks.size(), 2U * picturesPerSecond) << "the film is too short";
    const double dark =
        longest(looks, [&](const Look&, const Look& now) { return brightness(now) < bright / 2; });
    const double covered = longest(
        looks, [&](const Look&, const Look& now) { return difference(now, background) < 10; });
    const double still =
        longest(looks, [&](const Look& before, const Look& now) { return before == now; });
    std::printf(
        "filmed %zu pictures: dark for %.0f ms, background for %.0f ms, still for %.0f ms\n",
        looks.size(), dark, covered, still);
    EXPECT_EQ(dark, 0);
    EXPECT_EQ(covered, 0);
}

} // namespace velmorant

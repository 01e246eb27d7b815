// The components of the desktop: chart, seeks, and the cost of showing a playing recording against
// libmpv alone.
#include "benchmarks/BareLibmpv.h"
#include "desktop/chart/ChartWidget.h"
#include "desktop/player/VideoWidget.h"
#include "tests/desktop/eventLoop.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <stdexcept>

#include <qcustomplot.h>

namespace velmorant {
namespace {

constexpr int tenHours = 36000;
constexpr int pictureWidth = 656;
constexpr int pictureHeight = 369;

/// A minute of 1280 x 720 at 30 frames a second with sound, as recorders make it.
std::string recording() {
    const std::string path = VELMORANT_BENCHMARK_OUTPUT "/recording720p30.MP4";
    const std::string command =
        "ffmpeg -nostdin -v error -y -f lavfi -i testsrc2=s=1280x720:r=30:d=60 -f lavfi -i "
        "sine=d=60 -c:v libx264 -preset veryfast -g 30 -pix_fmt yuv420p -c:a aac '" +
        path + "'";
    if (!std::filesystem::exists(path) && std::system(command.c_str()) != 0)
        throw std::runtime_error("ffmpeg cannot make the recording");
    return path;
}

void fill(ChartWidget& chart) {
    for (int series = 1; series <= 3; ++series) {
        chart.clearSeries(series);
        for (int i = 0; i < tenHours; ++i)
            chart.addXY(series, i, std::sin(i * 0.7) + series, "10:00", automaticColour);
    }
    chart.setAxis(ChartAxis::Left, 0.0, 5.0);
    chart.redraw();
}

void addTenHoursToChart(benchmark::State& state) {
    ChartWidget chart;
    for (auto _ : state)
        fill(chart);
}
BENCHMARK(addTenHoursToChart)->Unit(benchmark::kMillisecond);

void redrawTenHours(benchmark::State& state) {
    ChartWidget chart;
    chart.widget().resize(pictureWidth, 112);
    chart.widget().show();
    fill(chart);
    for (auto _ : state) {
        chart.redraw();
        dynamic_cast<QCustomPlot&>(chart.widget()).replot(QCustomPlot::rpImmediateRefresh);
    }
}
BENCHMARK(redrawTenHours)->Unit(benchmark::kMillisecond);

void moveChartCursor(benchmark::State& state) {
    ChartWidget chart;
    chart.widget().resize(pictureWidth, 112);
    chart.widget().show();
    fill(chart);
    double x = 0;
    for (auto _ : state) {
        chart.setCursor(x = std::fmod(x + 7, tenHours));
        chart.widget().repaint();
    }
}
BENCHMARK(moveChartCursor)->Unit(benchmark::kMillisecond);

void findPointUnderMouse(benchmark::State& state) {
    ChartWidget chart;
    chart.widget().resize(pictureWidth, 112);
    chart.widget().show();
    fill(chart);
    dynamic_cast<QCustomPlot&>(chart.widget()).replot(QCustomPlot::rpImmediateRefresh);
    int index = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(chart.indexAt(chart.placeOf(index = (index + 97) % tenHours, 2)));
}
BENCHMARK(findPointUnderMouse)->Unit(benchmark::kMicrosecond);

/// Random seeks one after the other while paused, each until its picture is there.
void seekRandomly(benchmark::State& state) {
    MpvPlayer player(VideoOutput::Software, AudioOutput::None);
    VideoWidget widget(player);
    widget.resize(pictureWidth, pictureHeight);
    widget.setPictureSize(pictureWidth, pictureHeight);
    widget.show();
    widget.setPictureVisible(true);
    player.setUrl(recording());
    waitFor([&] { return player.playState() == PlayState::Stopped; });
    std::mt19937 random(1);
    std::uniform_real_distribution<double> place(0, 59.9);
    double slowest = 0;
    int lost = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        const double target = place(random);
        player.setCurrentPosition(target);
        QElapsedTimer limit;
        limit.start();
        while (player.seeking() && limit.elapsed() < 2000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        lost += player.seeking() ? 1 : 0;
        slowest = std::max(slowest, std::chrono::duration<double, std::milli>(
                                        std::chrono::steady_clock::now() - start)
                                        .count());
    }
    state.counters["slowest_ms"] = slowest;
    state.counters["lost"] = lost;
}
BENCHMARK(seekRandomly)->Unit(benchmark::kMillisecond)->Iterations(200);

double shownProcessorShare(double seconds) {
    MpvPlayer player(VideoOutput::Software, AudioOutput::None);
    VideoWidget widget(player);
    widget.resize(pictureWidth, pictureHeight);
    widget.setPictureSize(pictureWidth, pictureHeight);
    widget.show();
    widget.setPictureVisible(true);
    player.setUrl(recording());
    player.play();
    waitFor([&] { return player.currentPosition() > 1.0; });
    const double before = processorSeconds();
    letRun(static_cast<int>(seconds * 1000));
    return (processorSeconds() - before) / seconds;
}

void playBesideBareLibmpv(benchmark::State& state) {
    double bare = 0;
    double shown = 0;
    for (auto _ : state) {
        bare = bareProcessorShare(recording(), pictureWidth, pictureHeight, 6);
        shown = shownProcessorShare(6);
    }
    state.counters["bare_percent"] = bare * 100;
    state.counters["shown_percent"] = shown * 100;
    state.counters["ratio"] = shown / bare;
}
BENCHMARK(playBesideBareLibmpv)->Unit(benchmark::kSecond)->Iterations(1);

} // namespace
} // namespace velmorant

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

// The components of the desktop: chart, seeks, and the cost of showing a playing recording against
// libmpv alone.
#include "desktop/chart/ChartWidget.h"
#include "desktop/player/VideoWidget.h"
#include "tests/desktop/eventLoop.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <thread>

#include <mpv/render.h>
#include <sys/resource.h>

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

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
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

/// libmpv and its software drawing without any toolkit: what the picture costs at least.
double bareProcessorShare(double seconds) {
    MpvHandle handle({{"vo", "libmpv"}, {"ao", "null"}, {"hwdec", "no"}, {"config", "no"}});
    mpv_render_context* context = nullptr;
    mpv_render_param creation[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_SW)},
        {MPV_RENDER_PARAM_INVALID, nullptr}};
    if (mpv_render_context_create(&context, handle.get(), creation) < 0)
        throw std::runtime_error("libmpv cannot draw");
    handle.command({"loadfile", recording()});
    std::array<int, 2> size = {pictureWidth, pictureHeight};
    std::size_t stride = (pictureWidth * std::size_t{4} + 63) / 64 * 64;
    std::vector<std::uint8_t> memory(stride * pictureHeight + 64);
    void* start = memory.data();
    std::size_t space = memory.size();
    std::align(64, space - 64, start, space);
    char format[] = "bgr0";
    int no = 0;
    mpv_render_param drawing[] = {
        {MPV_RENDER_PARAM_SW_SIZE, size.data()},       {MPV_RENDER_PARAM_SW_FORMAT, format},
        {MPV_RENDER_PARAM_SW_STRIDE, &stride},         {MPV_RENDER_PARAM_SW_POINTER, start},
        {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &no}, {MPV_RENDER_PARAM_INVALID, nullptr}};
    const auto run = [&](double duration) {
        const auto end = std::chrono::steady_clock::now() +
                         std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                             std::chrono::duration<double>(duration));
        while (std::chrono::steady_clock::now() < end) {
            if (mpv_render_context_update(context) & MPV_RENDER_UPDATE_FRAME)
                mpv_render_context_render(context, drawing);
            std::this_thread::sleep_for(std::chrono::milliseconds(4));
        }
    };
    run(1);
    const double before = processorSeconds();
    run(seconds);
    const double share = (processorSeconds() - before) / seconds;
    mpv_render_context_free(context);
    return share;
}

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
        bare = bareProcessorShare(6);
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

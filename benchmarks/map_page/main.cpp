// Measures the map page in the browser control: what streaming a year of driving costs beside the
// bare calls and beside the map library's own way of drawing, frames per second while panning and
// zooming, memory of the page's process, and the time to load.
//
//   map_page_benchmark FOLDER [PART...]    the folder of the page (resources/map)
//
// Parts: loading library streaming views (all four when none is named; views show what streaming
// brought).
//
// Prints one line per figure: name, value, unit.
#include "desktop/gate/HandlerGate.h"
#include "desktop/map/WebEngineBrowser.h"
#include "desktop/map/prepareWebEngine.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QWebEnginePage>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <unistd.h>
#include <vector>

using namespace velmorant;

namespace {

constexpr int routeCount = 400;
constexpr int placesPerRoute = 3600;
QByteArray trackOf(int number) {
    QByteArray second, speed;
    for (int i = 0; i < placesPerRoute; ++i) {
        second += QByteArray::number(i) + ',';
        speed += QByteArray::number(std::lround(55 + 50 * std::sin(i * 0.03 + number))) + ',';
    }
    second.chop(1);
    speed.chop(1);
    return "{\"number\":" + QByteArray::number(number) +
           ",\"name\":\"103045.MP4\",\"kind\":\"normal\",\"utcStart\":\"2012-09-07T08:05:09Z\","
           "\"second\":[" +
           second + "],\"speed\":[" + speed + "]}";
}

std::vector<QString> textsOfRoute(int number) {
    std::vector<QString> texts;
    QString text = QString("%1").arg(number, 3, 10, QChar('0'));
    double heading = number;
    double longitude = 121.2 + 0.02 * (number % 20);
    double latitude = 24.8 + 0.02 * (number / 20);
    for (int i = 0; i < placesPerRoute; ++i) {
        heading += 0.15 * std::sin(i * 0.013 * (1 + number % 7)) + 0.02;
        longitude += 0.00012 * std::sin(heading);
        latitude += 0.00012 * std::cos(heading);
        text += QString("+%1!%2|").arg(longitude, 0, 'f', 7).arg(latitude, 0, 'f', 7);
        if (i % 10 == 0) {
            texts.push_back(text);
            text.clear();
        }
    }
    texts.push_back(text);
    texts.push_back("Over");
    return texts;
}

WebEngineBrowserSettings settingsOf(const QString& folder, const QString& storage) {
    WebEngineBrowserSettings settings;
    settings.pageFolder = folder;
    settings.storageFolder = storage;
    settings.language = "en";
    settings.source.track = [](long number) { return trackOf(int(number)).toStdString(); };
    return settings;
}

// The program's browser control with a page of its own process.
class Bench {
  public:
    explicit Bench(const QString& folder)
        : m_browser(settingsOf(folder, m_storage.path()), m_gate.delivery()) {
        m_browser.view().resize(1024, 708);
        m_browser.view().show();
        load();
    }

    void load() {
        QEventLoop loop;
        m_browser.onDocumentComplete(m_gate.listener([&](const std::string&) { loop.quit(); }));
        m_browser.navigate("velmorant://map/DeskMap.asp?LangID=1028");
        loop.exec();
        m_browser.onDocumentComplete({});
        waitFor("velmorantMap.baseLayers.base.world !== null");
    }

    QVariant run(const QString& script) {
        QEventLoop loop;
        QVariant value;
        page().runJavaScript(script, [&](const QVariant& result) {
            value = result;
            loop.quit();
        });
        loop.exec();
        return value;
    }

    void pause(int milliseconds) {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    }

    void waitFor(const QString& expression) {
        for (int i = 0; i < 6000; ++i) {
            if (run("!!(" + expression + ")").toBool())
                return;
            pause(20);
        }
        qFatal("waited in vain for %s", qPrintable(expression));
    }

    // Milliseconds from the first call to the answer of the last.
    double stream(const QString& function, const std::vector<std::vector<QString>>& routes) {
        QElapsedTimer timer;
        timer.start();
        for (const auto& route : routes) {
            for (const QString& text : route)
                m_browser.execScript((function + "('" + text + "')").toStdString(), "javascript");
            run("0");
        }
        return static_cast<double>(timer.nsecsElapsed()) / 1e6;
    }

    // Processor time that this process and the page's have taken, in milliseconds: unlike the time
    // of day it does not depend on what else the machine does.
    double processorTime() const {
        double ticks = 0;
        for (const qint64 id : {qint64(getpid()), page().renderProcessPid()}) {
            QFile file(QString("/proc/%1/stat").arg(id));
            if (!file.open(QIODevice::ReadOnly))
                qFatal("cannot read %s", qPrintable(file.fileName()));
            const QList<QByteArray> fields = file.readAll().split(' ');
            ticks += fields[13].toDouble() + fields[14].toDouble();
        }
        return ticks * 1000 / double(sysconf(_SC_CLK_TCK));
    }

    // Proportional memory of the page's process in MiB.
    double memory() const {
        QFile file(QString("/proc/%1/smaps_rollup").arg(page().renderProcessPid()));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", qPrintable(file.fileName()));
        for (const QByteArray& line : file.readAll().split('\n'))
            if (line.startsWith("Pss:"))
                return line.mid(4).trimmed().split(' ').first().toDouble() / 1024;
        return NAN;
    }

  private:
    QWebEnginePage& page() const { return *m_browser.view().page(); }

    QTemporaryDir m_storage;
    HandlerGate m_gate;
    mutable WebEngineBrowser m_browser;
};

void print(const char* name, double value, const char* unit) {
    std::printf("%-58s %10.2f %s\n", name, value, unit);
    std::fflush(stdout);
}

void measureLoading(Bench& bench) {
    std::vector<double> times;
    for (int i = 0; i < 9; ++i) {
        bench.load();
        times.push_back(bench
                            .run("performance.timing.loadEventEnd - "
                                 "performance.timing.navigationStart")
                            .toDouble());
    }
    print("page loaded, first time", times.front(), "ms");
    std::sort(times.begin() + 1, times.end());
    print("page loaded, warm, median of 8", times[5], "ms");
}

// The map library's own ways, on one route each: a polyline that gets place after place, and one
// that is drawn again with every call.
void measureLibrary(Bench& bench) {
    const std::vector<std::vector<QString>> one{textsOfRoute(1)};
    bench.run("window.nothing = () => {}; 0");
    bench.run("window.line = L.polyline([], {renderer: L.canvas()}).addTo(velmorantMap.map);"
              "velmorantMap.map.setView([24.9, 121.3], 12, {animate: false});"
              "window.own = (text) => { if (text === 'Over') return;"
              "  for (const group of text.replace(/^\\d+/, '').split('|')) {"
              "    if (group === '') continue; const [x, y] = group.split('!').map(Number);"
              "    line.addLatLng([y, x]); } };0");
    const double bare = bench.stream("nothing", one);
    const double own = bench.stream("own", one);
    bench.run("line.remove();"
              "window.whole = []; window.line = L.polyline([], {renderer: L.canvas()});"
              "line.addTo(velmorantMap.map);"
              "window.redraw = (text) => { if (text === 'Over') return;"
              "  for (const group of text.replace(/^\\d+/, '').split('|')) {"
              "    if (group === '') continue; const [x, y] = group.split('!').map(Number);"
              "    whole.push([y, x]); } line.setLatLngs(whole); };0");
    const double redraw = bench.stream("redraw", one);
    bench.run("line.remove(); 0");
    const double page = bench.stream("getContentHis", one);
    print("one route of 3,600: bare calls", bare, "ms");
    print("one route of 3,600: this page", page, "ms");
    print("one route of 3,600: polyline with addLatLng", own, "ms");
    print("one route of 3,600: polyline, one redraw per call", redraw, "ms");
    print("addLatLng / this page", own / page, "times");
    print("redraw per call / this page", redraw / page, "times");
}

void measureStreaming(Bench& bench) {
    std::vector<std::vector<QString>> routes;
    for (int number = 1; number <= routeCount; ++number)
        routes.push_back(textsOfRoute(number));
    print("memory of the page's process, no routes", bench.memory(), "MiB");
    bench.run("window.nothing = () => {}; 0");
    const double warm = bench.stream("nothing", routes);
    const double beforeBare = bench.processorTime();
    const double bare = bench.stream("nothing", routes);
    const double barePart = bench.processorTime() - beforeBare;
    print("memory of the page's process, after the bare calls", bench.memory(), "MiB");
    const double beforePage = bench.processorTime();
    const double page = bench.stream("getContentHis", routes);
    const double pagePart = bench.processorTime() - beforePage;
    const int shown = bench.run("velmorantMap.table.shown.size").toInt();
    if (shown != routeCount)
        qFatal("%d routes shown", shown);
    print("400 routes of 3,600: bare calls, first time", warm, "ms");
    print("400 routes of 3,600: bare calls", bare, "ms");
    print("400 routes of 3,600: this page", page, "ms");
    print("this page / bare calls", page / bare, "times");
    print("400 routes of 3,600: bare calls, processor time", barePart, "ms");
    print("400 routes of 3,600: this page, processor time", pagePart, "ms");
    print("this page / bare calls, processor time", pagePart / barePart, "times");
    print("memory of the page's process, 400 routes just drawn", bench.memory(), "MiB");
    bench.waitFor("[...velmorantMap.table.shown.values()].every((route) => route.data !== null)");
    bench.pause(1000);
    print("memory of the page's process, 400 routes with data", bench.memory(), "MiB");
}

void measureFrames(Bench& bench, const char* name, const QString& move) {
    bench.run("window.times = []; window.done = false;"
              "(function () { const begin = performance.now(); let n = 0;"
              "  const step = (time) => { times.push(time); n += 1;" +
              move +
              "    if (performance.now() - begin < 4000) requestAnimationFrame(step);"
              "    else window.done = true; };"
              "  requestAnimationFrame(step); })();0");
    bench.waitFor("window.done");
    const QVariantList times = bench.run("times").toList();
    std::vector<double> gaps;
    for (int i = 1; i < times.size(); ++i)
        gaps.push_back(times[i].toDouble() - times[i - 1].toDouble());
    std::sort(gaps.begin(), gaps.end());
    const double total = times.last().toDouble() - times.first().toDouble();
    const std::string title(name);
    print((title + ": frames per second").c_str(), 1000.0 * double(gaps.size()) / total, "1/s");
    print((title + ": 95th percentile of a frame").c_str(), gaps[gaps.size() * 95 / 100], "ms");
    print((title + ": longest frame").c_str(), gaps.back(), "ms");
}

void measureViews(Bench& bench) {
    for (const auto& [name, zoom] : std::vector<std::pair<const char*, double>>{
             {"pan, all routes in view", 10}, {"pan, city", 12}, {"pan, street", 16}}) {
        bench.run(QString("velmorantMap.view.userMoved();"
                          "velmorantMap.map.setView([24.99, 121.4], %1, {animate: false});0")
                      .arg(zoom));
        bench.pause(500);
        measureFrames(bench, name,
                      "velmorantMap.map.panBy([n % 120 < 60 ? 8 : -8, n % 160 < 80 ? 5 : -5],"
                      "{animate: false});");
    }
    bench.run("velmorantMap.map.setView([24.99, 121.4], 10, {animate: false});0");
    bench.pause(500);
    measureFrames(bench, "zoom in and out, animated",
                  "if (n % 40 === 0) velmorantMap.map.setZoom(n % 80 ? 12 : 10);");
    bench.run("velmorantMap.map.setView([24.99, 121.4], 10, {animate: false});0");
    print("one whole painting, all routes in view",
          bench
              .run("(function () { const t = performance.now();"
                   "for (let i = 0; i < 10; i += 1) velmorantMap.routes.paint();"
                   "velmorantMap.routes.front.context.getImageData(0, 0, 1, 1);"
                   "return (performance.now() - t) / 10; })()")
              .toDouble(),
          "ms");
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: map_page_benchmark FOLDER [PART...]\n");
        return 2;
    }
    const std::vector<std::string> parts(argv + 2, argv + argc);
    const auto wanted = [&](const char* part) {
        return parts.empty() || std::find(parts.begin(), parts.end(), part) != parts.end();
    };
    prepareWebEngine();
    QApplication application(argc, argv);
    const QString folder = QString::fromLocal8Bit(argv[1]);
    if (wanted("loading")) {
        Bench bench(folder);
        measureLoading(bench);
    }
    if (wanted("library")) {
        Bench bench(folder);
        measureLibrary(bench);
    }
    Bench bench(folder);
    if (wanted("streaming"))
        measureStreaming(bench);
    if (wanted("views"))
        measureViews(bench);
    return 0;
}

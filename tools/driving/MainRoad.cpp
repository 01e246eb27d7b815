#include "tools/driving/MainRoad.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace velmorant {

namespace {

constexpr int startLimit = 30000;
constexpr int extractionLimit = 120000;
constexpr int stepLimit = 30000;
constexpr int stillLimit = 3000;
constexpr int firstPlayed = 2;

void expect(const std::function<bool()>& condition, int limit, const std::string& missing) {
    if (!ProgramDriver::waitUntil(condition, limit))
        throw std::runtime_error(missing + " within " + std::to_string(limit / 1000) + " s");
}

QImage screen(const QRect& part = {}) {
    const QImage all = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    return part.isEmpty() ? all : all.copy(part);
}

} // namespace

MainRoad::MainRoad(Application& program, std::string picturesFolder)
    : m_driver(program), m_folder(std::move(picturesFolder)) {
    std::filesystem::create_directories(m_folder);
}

void MainRoad::drive() {
    showList();
    extractAll();
    play(firstPlayed);
    clickOtherRoute(firstPlayed);
}

void MainRoad::tell(const std::string& step, const std::string& seen) {
    // The map paints what it was told a moment later; the picture shall have it.
    QWidget& view = m_driver.pane().map.browser.view();
    const QRect place(view.mapToGlobal(QPoint()), view.size());
    QImage last;
    ProgramDriver::waitUntil(
        [&] {
            QTest::qWait(150);
            const QImage now = screen(place);
            const bool still = now == last;
            last = now;
            return still;
        },
        stillLimit);
    char name[80];
    std::snprintf(name, sizeof name, "/%02d-%s.png", ++m_pictures, step.c_str());
    const std::string path = m_folder + name;
    if (!screen().save(QString::fromStdString(path)))
        throw std::runtime_error(path + " cannot be written");
    std::printf("%02d %s: %s\n", m_pictures, step.c_str(), seen.c_str());
    std::fflush(stdout);
}

std::string MainRoad::played() {
    const std::string path = m_driver.pane().picture.player.url();
    char text[80];
    std::snprintf(text, sizeof text, " at %.1f s, car at place %d", m_driver.position(),
                  m_driver.map().carIndex());
    return std::filesystem::path(path).filename().string() + text;
}

void MainRoad::showList() {
    expect([&] { return m_driver.windowShown(); }, startLimit,
           "the window with a loaded map page does not come");
    if (m_driver.rowCount() < firstPlayed)
        throw std::runtime_error("the list shows " + std::to_string(m_driver.rowCount()) +
                                 " recordings; the road needs two at least");
    tell("list", std::to_string(m_driver.rowCount()) + " recordings");
}

void MainRoad::extractAll() {
    // The click returns when the run is over, so the run is looked at from a timer.
    QTimer look;
    QImage during;
    QObject::connect(&look, &QTimer::timeout, [&] {
        if (during.isNull() && m_driver.extracting() && m_driver.extractedRows() > 0)
            during = screen();
    });
    look.start(50);
    m_driver.clickList("all");
    expect([&] { return m_driver.extractedRows() > 0 && !m_driver.extracting(); }, extractionLimit,
           "the extraction does not end");
    look.stop();
    if (!during.isNull())
        during.save(QString::fromStdString(m_folder + "/00-extracting.png"));
    const int wanted = m_driver.rowsWithPlaces();
    expect([&] { return m_driver.map().routeCount() == wanted; }, stepLimit,
           std::to_string(wanted) + " routes do not come onto the map");
    tell("routes", std::to_string(m_driver.extractedRows()) + " recordings extracted, " +
                       std::to_string(wanted) + " routes on the map");
}

void MainRoad::play(int row) {
    m_driver.doubleClickRow(row);
    expect([&] { return m_driver.playing(row); }, stepLimit,
           "row " + std::to_string(row) + " does not play");
    int first = 0;
    expect([&] { return (first = m_driver.map().carIndex()) > 0; }, stepLimit,
           "the car does not come");
    expect([&] { return m_driver.map().carIndex() > first + 1; }, stepLimit,
           "the car does not move");
    tell("playing", played());
}

int MainRoad::rowOfAnotherRoute(int row, MapProbe::RoutePlace& place) {
    for (int other = 1; other <= m_driver.rowCount(); ++other) {
        if (other == row || !m_driver.track(other))
            continue;
        if (const auto found = m_driver.map().routePlace(m_driver.number(other), 0.5)) {
            place = *found;
            return other;
        }
    }
    return 0;
}

void MainRoad::clickOtherRoute(int row) {
    MapProbe::RoutePlace place;
    const int other = rowOfAnotherRoute(row, place);
    if (other == 0)
        throw std::runtime_error("no other route has a place that can be clicked");
    const double second = m_driver.track(other)->dot(place.index).second;
    m_driver.map().click(place.pixel);
    expect([&] { return m_driver.playing(other); }, stepLimit,
           "a click on the route of row " + std::to_string(other) + " does not play it");
    expect([&] { return std::abs(m_driver.position() - second) < 2.0; }, stepLimit,
           "the click does not seek to second " + std::to_string(std::lround(second)));
    expect([&] { return m_driver.map().carIndex() > place.index; }, stepLimit,
           "the car does not drive on along the clicked route");
    tell("clicked-route", played() + ", clicked at second " + std::to_string(std::lround(second)));
}

} // namespace velmorant

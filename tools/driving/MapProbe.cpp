#include "tools/driving/MapProbe.h"

#include <QStringList>
#include <QTest>

#include <memory>

namespace velmorant {

namespace {

constexpr int answerLimit = 10000;

/// Looks for the place from `along` outwards, by the page's own rules for a click.
const char* const placeOfRoute = R"((function (number, along) {
    const { map, table, mercator, HitTest, nearestSegments } = window.velmorantMap;
    const route = [...table.shown.values()].find((one) => one.number === number);
    if (!route || route.isEmpty()) return '';
    const hits = new HitTest(table);
    const size = map.getSize();
    const middle = Math.round(along * (route.count - 2));
    for (let step = 0; step < 2 * route.count; step += 1) {
        const i = middle + (step % 2 ? -1 : 1) * Math.ceil(step / 2);
        if (i < 0 || i > route.count - 2) continue;
        const latitude = (route.y[i] + route.y[i + 1]) / 2e7;
        const longitude = (route.x[i] + route.x[i + 1]) / 2e7;
        const pixel = map.latLngToContainerPoint([latitude, longitude]).round();
        if (pixel.x < 4 || pixel.y < 4 || pixel.x > size.x - 4 || pixel.y > size.y - 4) continue;
        const over = document.elementFromPoint(pixel.x, pixel.y);
        if (!over || !map.getContainer().contains(over)) continue;
        const place = map.containerPointToLatLng(pixel);
        const near = nearestSegments(table, place.lng / 360 * mercator.WORLD, mercator.y(place.lat),
            map.getZoom(), 12);
        const meant = near.length > 0 ? hits.choose(near, 2) : null;
        if (meant && meant.route === route) return pixel.x + ',' + pixel.y + ',' + meant.index;
    }
    return '';
}))";

/// The view is about to show new routes, or follows the car.
const char* const viewMoves = "velmorantMap.view.timer !== 0 || velmorantMap.view.moving";

/// As if the user had moved the map there.
const char* const lookThere = R"((function (longitude, latitude, zoom, x, y) {
    const { map, view } = window.velmorantMap;
    view.userMoved();
    map.setView([latitude, longitude], zoom, { animate: false });
    map.panBy([-x, -y], { animate: false });
    const pixel = map.latLngToContainerPoint([latitude, longitude]).round();
    return pixel.x + ',' + pixel.y;
}))";

} // namespace

QString MapProbe::evaluate(const QString& expression) {
    // Shared: a late answer must not write into a frame that has ended.
    struct Answer {
        bool given = false;
        QString text;
    };
    const auto answer = std::make_shared<Answer>();
    m_view.page()->runJavaScript("String(" + expression + ")", [answer](const QVariant& value) {
        answer->text = value.toString();
        answer->given = true;
    });
    if (!QTest::qWaitFor([answer] { return answer->given; }, answerLimit))
        return {};
    return answer->text;
}

int MapProbe::routeCount() {
    return evaluate("[...velmorantMap.table.shown.values()].filter((r) => !r.isEmpty()).length")
        .toInt();
}

int MapProbe::carIndex() {
    return evaluate("velmorantMap.car.at ? velmorantMap.car.at.index : 0").toInt();
}

std::string MapProbe::carPlace() {
    return evaluate("velmorantMap.car.at ? velmorantMap.car.at.longitude + ',' + "
                    "velmorantMap.car.at.latitude : ''")
        .toStdString();
}

std::vector<MapProbe::Place> MapProbe::routePlaces(long number) {
    const QString call =
        QString(
            "((r) => r ? Array.from(r.x.subarray(0, r.count), (x, i) => [x, r.y[i]]).join() : '')"
            "([...velmorantMap.table.shown.values()].find((r) => r.number === %1))")
            .arg(number);
    const QStringList numbers = evaluate(call).split(',', Qt::SkipEmptyParts);
    std::vector<Place> places;
    constexpr double stepsPerDegree = 1e7;
    for (qsizetype i = 0; i + 1 < numbers.size(); i += 2)
        places.push_back(
            {numbers[i].toDouble() / stepsPerDegree, numbers[i + 1].toDouble() / stepsPerDegree});
    return places;
}

std::optional<MapProbe::RoutePlace> MapProbe::routePlace(long number, double along) {
    // Until the view has come to where the routes are seen, a place would be gone when it is
    // clicked.
    if (!QTest::qWaitFor([this] { return evaluate(viewMoves) == "false"; }, answerLimit))
        return std::nullopt;
    const QString call = QString("%1(%2, %3)").arg(placeOfRoute).arg(number).arg(along);
    const QStringList parts = evaluate(call).split(',');
    if (parts.size() != 3)
        return std::nullopt;
    return RoutePlace{QPoint(parts[0].toInt(), parts[1].toInt()), parts[2].toInt()};
}

std::optional<QPoint> MapProbe::lookAt(double longitude, double latitude, int zoom, QPoint aside) {
    const QString call = QString("%1(%2, %3, %4, %5, %6)")
                             .arg(lookThere)
                             .arg(longitude, 0, 'f', 8)
                             .arg(latitude, 0, 'f', 8)
                             .arg(zoom)
                             .arg(aside.x())
                             .arg(aside.y());
    const QStringList parts = evaluate(call).split(',');
    if (parts.size() != 2)
        return std::nullopt;
    return QPoint(parts[0].toInt(), parts[1].toInt());
}

void MapProbe::click(const QPoint& pixel) {
    QWidget* target = m_view.focusProxy();
    QTest::mouseMove(target, pixel);
    QTest::mouseClick(target, Qt::LeftButton, {}, pixel);
}

} // namespace velmorant

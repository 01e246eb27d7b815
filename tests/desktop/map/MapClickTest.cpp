// Clicks on drawn routes, judged by the program's own tracks: what the page leaves must lead to the
// recording and the second that were clicked.
#include "desktop/gate/HandlerGate.h"
#include "desktop/map/WebEngineBrowser.h"
#include "recordings/clsDot.h"
#include "track/frmMediaCtrl.h"

#include "tests/desktop/eventLoop.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

namespace velmorant {
namespace {

struct Place {
    double longitude;
    double latitude;
};

std::string degreesText(double value, bool withSign) {
    char text[32];
    std::snprintf(text, sizeof text, withSign ? "%+.7f" : "%.7f", value);
    return text;
}

/// A drive of a car: a heading that wanders, 8 to 20 m/s, now and then a second exactly to the
/// north or to the east, as on the streets of a chessboard town.
std::vector<Place> drive(Place at, int seconds, std::mt19937& random) {
    std::uniform_real_distribution<double> share(0.0, 1.0);
    double heading = 2 * std::numbers::pi * share(random);
    std::vector<Place> places{at};
    while (int(places.size()) < seconds) {
        heading += 0.3 * (share(random) - 0.5);
        const double way = (8 + 12 * share(random)) / 111320;
        const double kind = share(random);
        if (kind > 0.03)
            at.longitude +=
                way * std::sin(heading) / std::cos(at.latitude * std::numbers::pi / 180);
        if (kind < 0.97)
            at.latitude += way * std::cos(heading);
        at.longitude = std::remainder(at.longitude, 360.0);
        at = {std::stod(degreesText(at.longitude, true)),
              std::stod(degreesText(at.latitude, true))};
        places.push_back(at);
    }
    return places;
}

struct Recording {
    std::vector<Place> places;
    clsDot track;
};

class MapClickTest : public testing::Test {
  protected:
    MapClickTest() : m_browser(settings(), m_gate.delivery()) {
        m_browser.view().resize(338, 248);
        m_browser.view().show();
        bool complete = false;
        m_browser.onDocumentComplete(m_gate.listener([&](const std::string&) { complete = true; }));
        m_browser.navigate("velmorant://map/DeskMap.asp?LangID=1028");
        EXPECT_TRUE(waitFor([&] { return complete; }, 30000));
        m_browser.onDocumentComplete({});
    }

    WebEngineBrowserSettings settings() const {
        WebEngineBrowserSettings settings;
        settings.pageFolder = VELMORANT_MAP_PAGE;
        settings.storageFolder = m_storage.path();
        settings.language = "en";
        return settings;
    }

    void script(const std::string& text) { m_browser.execScript(text, "javascript"); }

    std::string property(const std::string& name) {
        std::optional<std::string> value;
        m_browser.readWindowProperty(name, [&](const std::string& read) { value = read; });
        EXPECT_TRUE(waitFor([&] { return value.has_value(); })) << name;
        return value.value_or("");
    }

    void add(Place start, std::mt19937& random) {
        Recording recording{drive(start, 120, random), {}};
        const int number = int(m_recordings.size()) + 1;
        char prefix[16];
        std::snprintf(prefix, sizeof prefix, "%03d", number);
        std::string text = prefix;
        for (std::size_t i = 0; i < recording.places.size(); ++i) {
            const std::string longitude = degreesText(recording.places[i].longitude, true);
            const std::string latitude = degreesText(recording.places[i].latitude, false);
            recording.track.SetDot("2012/9/7 08:05:09", "00:00", 50, std::int32_t(i), longitude,
                                   latitude, 1, 0, 0, 0, 1);
            text += longitude + "!" + latitude + "|";
            if (i % 10 == 0) {
                script("getContentHis('" + text + "')");
                text.clear();
            }
        }
        script("getContentHis('" + text + "')");
        script("getContentHis('Over')");
        m_recordings.push_back(std::move(recording));
    }

    /// Looks at the place from street height and clicks it; what the page leaves in varLocal. Each
    /// click falls on another spot of the view than the last: on the same it would be a double
    /// click.
    std::string clickAt(Place place) {
        m_spot = (m_spot + 1) % 5;
        const std::string latLng = "[" + degreesText(place.latitude, false) + "," +
                                   degreesText(place.longitude, false) + "]";
        script("window.varLocal = ''; window.pixel = ''; velmorantMap.view.userMoved();"
               "velmorantMap.map.setView(" +
               latLng +
               ", 18, {animate: false});"
               "velmorantMap.map.panBy([" +
               std::to_string(40 * m_spot - 80) + "," + std::to_string(25 * m_spot - 50) +
               "], {animate: false});"
               "(function () { const p = velmorantMap.map.latLngToContainerPoint(" +
               latLng + "); window.pixel = Math.round(p.x) + ' ' + Math.round(p.y); })()");
        EXPECT_TRUE(waitFor([&] { return !property("pixel").empty(); }));
        const QStringList pixel = QString::fromStdString(property("pixel")).split(' ');
        click({pixel.value(0).toInt(), pixel.value(1).toInt()});
        std::string picked;
        waitFor([&] { return !(picked = property("varLocal")).empty(); }, 3000);
        return picked;
    }

    void click(QPoint at) {
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, at, m_browser.view().mapToGlobal(at), Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(m_browser.view().focusProxy(), &event);
        }
    }

    /// Recording and dot that the program finds, each from 1; 0, 0 for none.
    std::pair<int, int> found(const std::string& picked) const {
        const PickedPlace place = PickedPlace::read(picked);
        for (std::size_t i = 0; i < m_recordings.size(); ++i)
            if (const int index = m_recordings[i].track.lPtLocal(place.x, place.y); index > 0)
                return {int(i) + 1, index};
        return {0, 0};
    }

    QTemporaryDir m_storage;
    HandlerGate m_gate;
    WebEngineBrowser m_browser;
    std::vector<Recording> m_recordings;
    int m_spot = 0;
};

TEST_F(MapClickTest, random_clicks_lead_to_the_right_recording_and_second) {
    std::mt19937 random(20120907);
    for (const Place start : {Place{121.5, 25.04},
                              {-70.6, -33.4},
                              {-0.12, 51.5},
                              {18.42, -33.92},
                              {179.9995, -16.8},
                              {-179.9995, 65.0},
                              {0.0005, 0.0005},
                              {-157.85, 21.3}})
        add(start, random);
    std::uniform_int_distribution<std::size_t> which(0, m_recordings.size() - 1);
    std::uniform_int_distribution<std::size_t> second(0, 117); // but the last segment
    std::uniform_real_distribution<double> share(0.2, 0.8);
    int exact = 0;
    for (int n = 0; n < 200; ++n) {
        const std::size_t recording = which(random);
        const std::size_t i = second(random);
        const double t = share(random);
        const Place a = m_recordings[recording].places[i];
        const Place b = m_recordings[recording].places[i + 1];
        const Place place{a.longitude + t * std::remainder(b.longitude - a.longitude, 360.0),
                          a.latitude + t * (b.latitude - a.latitude)};
        const std::string picked = clickAt(place);
        const bool hasNoInside = a.longitude == b.longitude || a.latitude == b.latitude;
        ASSERT_FALSE(picked.empty()) << "recording " << recording + 1 << ", second " << i;
        const auto [foundRecording, foundDot] = found(picked);
        EXPECT_EQ(foundRecording, int(recording) + 1) << picked;
        EXPECT_NEAR(foundDot, int(i) + 1, hasNoInside ? 3 : 0) << picked;
        exact += foundDot == int(i) + 1;
    }
    EXPECT_GT(exact, 170);
}

} // namespace
} // namespace velmorant

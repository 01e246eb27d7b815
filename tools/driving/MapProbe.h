#pragma once

#include <QPoint>
#include <QString>
#include <QWebEngineView>

#include <optional>
#include <string>
#include <vector>

namespace velmorant {

/// Asks the map page what it shows.
class MapProbe {
  public:
    /// A place of a route where a click means that route and no other.
    struct RoutePlace {
        QPoint pixel;  ///< of the browser control
        int index = 0; ///< the dot that the click means, from 1
    };

    struct Place {
        double longitude = 0, latitude = 0; ///< degrees
    };

    explicit MapProbe(QWebEngineView& view) : m_view(view) {}

    /// The value of an expression in the page as text; empty when the page does not answer.
    QString evaluate(const QString& expression);
    /// How many routes with at least one place are drawn.
    int routeCount();
    /// The dot at which the car stands, from 1; 0 while no car is shown.
    int carIndex();
    /// "longitude,latitude" of the car; empty while none is shown.
    std::string carPlace();
    /// All places of the route with that number, as the page keeps them; empty when none is drawn.
    std::vector<Place> routePlaces(long number);
    /// The place nearest to `along` (0 start .. 1 end) of the route with that number, as soon as
    /// the view stands still; none when the route is not drawn or other routes or buttons lie over
    /// all of it.
    std::optional<RoutePlace> routePlace(long number, double along);
    /// Shows a place, `aside` of the middle, and returns where it stands then; none when the page
    /// does not answer. The view stays there for some seconds, whatever the car does.
    std::optional<QPoint> lookAt(double longitude, double latitude, int zoom, QPoint aside);
    void click(const QPoint& pixel);

  private:
    QWebEngineView& m_view;
};

} // namespace velmorant

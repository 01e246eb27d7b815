#pragma once

#include "desktop/gate/GatedListener.h"
#include "ports/Chart.h"

#include <QPointF>
#include <QPointer>
#include <QString>

#include <string>
#include <utility>
#include <vector>

// The plot's own header takes longer to compile than the rest of a window together.
class QColor;
class QCPAxis;
class QCPItemLine;
class QCPItemText;
class QCustomPlot;
class QWidget;

namespace velmorant {

class ChartKeys;

/// The line chart on QCustomPlot. Points are collected by addXY() and shown by redraw().
///
/// The x values of a series increase. Series 1 alone is drawn with a light fill (the speed); with
/// series 2 present, 1 to 3 are the three curves of the G sensor. A single point at y = 200 in
/// series 3 is the click marker: it lies outside most axes and is drawn as a vertical line at its
/// x, in its colour. The bottom axis is labelled in minutes and seconds.
class ChartWidget : public Chart {
  public:
    static constexpr int seriesCount = 4;
    static constexpr double markerHeight = 200;

    explicit ChartWidget(QWidget* parent = nullptr);
    ~ChartWidget() override;
    ChartWidget(const ChartWidget&) = delete;
    ChartWidget& operator=(const ChartWidget&) = delete;

    /// Of the plot's library, for the about box.
    static std::string libraryVersion();

    /// For the window that lays it out, which may also delete it before the chart ends.
    QWidget& widget();

    /// The left button was released over the point with that index of its series, from 0; -1: over
    /// none. A place selects the point whose x is nearest, at any height within the axes.
    void onMouseUp(GatedListener<int> listener);
    /// The point under the mouse changed; -1: none.
    void onHover(GatedListener<int> listener);
    /// The text shown at the point under the mouse; empty: none.
    void setHoverText(const std::string& text);
    QString hoverText() const;
    /// Shows the text of a point as hovering over it would; -1 hides it.
    void point(int index);
    /// Acts as a click on the point.
    void choose(int index);
    int pointCount() const;
    int pointed() const { return m_hovered; } ///< -1: none
    /// The pointed one, else that of the cursor, else the first.
    int presentPoint() const;
    /// The label of a point of series 1; empty when there is no such point.
    std::string label(int index) const;
    /// The point for a place in the widget, in pixels.
    int indexAt(const QPointF& place) const;
    /// The place of a value in the widget, in pixels, as last drawn.
    QPointF placeOf(double x, double y) const;

    void clearSeries(int series) override;
    void addXY(int series, double x, double y, const std::string& label,
               std::int32_t colour) override;
    void setAxis(ChartAxis axis, std::optional<double> minimum,
                 std::optional<double> maximum) override;
    void setAxisTitle(ChartAxis axis, const std::string& title) override;
    void setCursor(std::optional<double> x) override;
    void setLegend(int series, const std::string& name) override;
    void redraw() override;

  private:
    struct Series;
    struct Bounds {
        std::optional<double> minimum;
        std::optional<double> maximum;
    };

    void styleAxis(QCPAxis& axis) const;
    void styleLegend() const;
    QCPItemLine* makeVerticalLine(const QString& layer, const QColor& colour) const;
    bool isMarker(const Series& series) const;
    const Series& pointedSeries() const;
    void colourSeries();
    void placeMarker();
    std::pair<double, double> rangeOf(ChartAxis axis, const Bounds& bounds) const;
    void mouseMoved(const QPointF& place);
    void setHovered(int index);
    void placeHoverText();
    class LeaveFilter;

    QPointer<QCustomPlot> m_plot;
    QCPItemLine* m_cursor;
    QCPItemLine* m_marker;
    QCPItemText* m_hoverText;
    ChartKeys* m_keys;
    std::vector<Series> m_series;
    Bounds m_left;
    Bounds m_bottom;
    int m_hovered = -1;
    QPointF m_hoverPlace;
    GatedListener<int> m_mouseUpListener;
    GatedListener<int> m_hoverListener;
};

} // namespace velmorant

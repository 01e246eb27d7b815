#include "desktop/chart/ChartWidget.h"

#include "desktop/chart/ChartKeys.h"
#include "desktop/system/shownText.h"
#include "desktop/widgets/Theme.h"

#include <qcustomplot.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace velmorant {

namespace {

/// Colours that people with colour-blindness can tell apart; they differ in lightness too.
const std::array<QColor, ChartWidget::seriesCount> curveColours = {
    palette::accent, QColor(0x6E, 0xA8, 0xFF), QColor(0xFF, 0xB0, 0x00), QColor(0xF2, 0xF5, 0xF8)};
const QColor now(0xFF, 0xFF, 0x00);

constexpr int textPixels = 11;
/// Filling under a jagged curve of more points takes longer than all the rest.
constexpr qsizetype mostFilledPoints = 600;
/// How far from a lonely point the mouse may be.
constexpr double reachPixels = 5;
constexpr double besidePixels = 12;

QColor colourOf(std::int32_t colour) {
    return QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}

/// One device pixel on every screen: wider pens take a hundred times as long.
QPen thin(const QColor& colour) {
    return QPen(colour, 0);
}

QFont smallFont(QFont font) {
    font.setPixelSize(textPixels);
    return font;
}

} // namespace

struct ChartWidget::Series {
    QVector<QCPGraphData> points;
    std::vector<std::string> labels;
    std::int32_t colour = automaticColour; ///< of the last point
    bool changed = false;
};

/// Tells the chart that the mouse left the widget; the plot itself does not.
class ChartWidget::LeaveFilter : public QObject {
  public:
    LeaveFilter(ChartWidget& chart, QObject* parent) : QObject(parent), m_chart(chart) {}
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Leave)
            m_chart.setHovered(-1);
        return QObject::eventFilter(watched, event);
    }

  private:
    ChartWidget& m_chart;
};

ChartWidget::ChartWidget(QWidget* parent) : m_plot(new QCustomPlot(parent)), m_series(seriesCount) {
    m_plot->setNotAntialiasedElements(QCP::aeAll);
    m_plot->setBackground(QBrush(palette::well));
    m_plot->axisRect()->setAutoMargins(QCP::msAll);
    m_plot->axisRect()->setMinimumMargins(QMargins(4, 6, 8, 2));
    styleAxis(*m_plot->xAxis);
    styleAxis(*m_plot->yAxis);
    m_plot->yAxis->ticker()->setTickCount(4);
    auto ticker = QSharedPointer<QCPAxisTickerTime>::create();
    ticker->setTimeFormat("%m:%s");
    m_plot->xAxis->setTicker(ticker);
    for (int i = 0; i < seriesCount; ++i) {
        QCPGraph* const graph = m_plot->addGraph();
        graph->setAdaptiveSampling(true);
        graph->setName({});
        graph->removeFromLegend();
    }
    styleLegend();
    // What moves lies on a layer of its own, which is painted over the curves without drawing them.
    m_plot->addLayer("moving", nullptr, QCustomPlot::limAbove);
    m_plot->layer("moving")->setMode(QCPLayer::lmBuffered);
    m_marker = makeVerticalLine("overlay", Qt::red);
    m_cursor = makeVerticalLine("moving", now);
    m_hoverText = new QCPItemText(m_plot);
    m_hoverText->setLayer("moving");
    m_hoverText->setVisible(false);
    m_hoverText->setFont(smallFont(m_plot->font()));
    m_hoverText->setColor(palette::text);
    m_hoverText->setBrush(palette::control);
    m_hoverText->setPadding(QMargins(4, 2, 4, 2));
    m_hoverText->position->setType(QCPItemPosition::ptAbsolute);

    m_keys = new ChartKeys(*this, *m_plot);
    m_plot->setMouseTracking(true);
    m_plot->installEventFilter(new LeaveFilter(*this, m_plot));
    QObject::connect(m_plot, &QCustomPlot::mouseMove, m_plot,
                     [this](QMouseEvent* event) { mouseMoved(event->position()); });
    QObject::connect(m_plot, &QCustomPlot::mouseRelease, m_plot, [this](QMouseEvent* event) {
        if (event->button() == Qt::LeftButton)
            choose(indexAt(event->position()));
    });
}

std::string ChartWidget::libraryVersion() {
    return QCUSTOMPLOT_VERSION_STR;
}

ChartWidget::~ChartWidget() {
    delete m_plot;
}

QWidget& ChartWidget::widget() {
    return *m_plot;
}

void ChartWidget::styleAxis(QCPAxis& axis) const {
    axis.setBasePen(thin(palette::outline));
    axis.setTickPen(thin(palette::outline));
    axis.setSubTickPen(thin(palette::outline));
    axis.setTickLabelColor(palette::secondText);
    axis.setLabelColor(palette::secondText);
    axis.setTickLabelFont(smallFont(m_plot->font()));
    axis.setLabelFont(smallFont(m_plot->font()));
    axis.setLabelPadding(1);
    axis.grid()->setPen(thin(palette::rule));
    axis.grid()->setZeroLinePen(thin(palette::outline));
}

void ChartWidget::styleLegend() const {
    QCPLegend& legend = *m_plot->legend;
    legend.setVisible(false);
    legend.setFillOrder(QCPLayoutGrid::foColumnsFirst); // one row: the chart is low
    legend.setFont(smallFont(m_plot->font()));
    legend.setTextColor(palette::text);
    legend.setBrush(palette::card);
    legend.setBorderPen(thin(palette::rule));
    legend.setMargins(QMargins(4, 1, 4, 1));
    legend.setIconSize(14, textPixels);
    m_plot->axisRect()->insetLayout()->setInsetAlignment(0, Qt::AlignTop | Qt::AlignRight);
    m_plot->axisRect()->insetLayout()->setMargins(QMargins(2, 2, 2, 2));
}

QCPItemLine* ChartWidget::makeVerticalLine(const QString& layer, const QColor& colour) const {
    auto* const line = new QCPItemLine(m_plot);
    line->setLayer(layer);
    line->setPen(thin(colour));
    line->setVisible(false);
    line->setSelectable(false);
    for (QCPItemPosition* const end : {line->start, line->end}) {
        end->setTypeX(QCPItemPosition::ptPlotCoords);
        end->setTypeY(QCPItemPosition::ptAxisRectRatio);
    }
    line->start->setCoords(0, 0);
    line->end->setCoords(0, 1);
    return line;
}

void ChartWidget::onMouseUp(GatedListener<int> listener) {
    m_mouseUpListener = std::move(listener);
}

void ChartWidget::onHover(GatedListener<int> listener) {
    m_hoverListener = std::move(listener);
}

void ChartWidget::mouseMoved(const QPointF& place) {
    m_hoverPlace = place;
    setHovered(indexAt(place));
    placeHoverText();
}

void ChartWidget::setHovered(int index) {
    if (index == m_hovered)
        return;
    m_hovered = index;
    if (index < 0)
        setHoverText({});
    m_hoverListener.latest(index);
}

void ChartWidget::setHoverText(const std::string& text) {
    m_hoverText->setText(shownText(text));
    m_hoverText->setVisible(!text.empty());
    if (text.empty())
        m_plot->layer("moving")->replot();
    else
        placeHoverText();
    m_keys->tell();
}

QString ChartWidget::hoverText() const {
    return m_hoverText->text();
}

void ChartWidget::point(int index) {
    if (index >= 0 && index < pointCount())
        m_hoverPlace = placeOf(pointedSeries().points[index].key, m_plot->yAxis->range().center());
    setHovered(index);
    placeHoverText();
}

void ChartWidget::choose(int index) {
    m_mouseUpListener(index);
}

int ChartWidget::pointCount() const {
    return static_cast<int>(pointedSeries().points.size());
}

int ChartWidget::presentPoint() const {
    const double present = m_cursor->visible() ? m_cursor->start->coords().x() : 0.0;
    return m_hovered >= 0 ? m_hovered : std::clamp(static_cast<int>(present), 0, pointCount());
}

/// Beside the mouse, on the side where it fits, and never out of the plot.
void ChartWidget::placeHoverText() {
    if (!m_hoverText->visible())
        return;
    const QMargins padding = m_hoverText->padding();
    const double width = QFontMetrics(m_hoverText->font())
                             .boundingRect(QRect(), Qt::AlignLeft, m_hoverText->text())
                             .width() +
                         padding.left() + padding.right();
    const double right = m_hoverPlace.x() + besidePixels;
    const double left = m_hoverPlace.x() - besidePixels - width;
    const double wanted = right + width <= m_plot->width() ? right : left;
    m_hoverText->setPositionAlignment(Qt::AlignVCenter | Qt::AlignLeft);
    m_hoverText->position->setCoords(
        std::clamp(wanted, 0.0, std::max(0.0, m_plot->width() - width)),
        m_plot->axisRect()->center().y());
    m_plot->layer("moving")->replot();
}

bool ChartWidget::isMarker(const Series& series) const {
    return &series == &m_series[3] && series.points.size() == 1 &&
           series.points[0].value == markerHeight;
}

const ChartWidget::Series& ChartWidget::pointedSeries() const {
    const auto found = std::find_if(m_series.begin() + 1, m_series.end(), [this](const Series& s) {
        return !s.points.isEmpty() && !isMarker(s);
    });
    return found == m_series.end() ? m_series[0] : *found;
}

std::string ChartWidget::label(int index) const {
    const std::vector<std::string>& labels = m_series[1].labels;
    return index >= 0 && static_cast<std::size_t>(index) < labels.size()
               ? labels[static_cast<std::size_t>(index)]
               : std::string();
}

int ChartWidget::indexAt(const QPointF& place) const {
    const QVector<QCPGraphData>& points = pointedSeries().points;
    if (points.isEmpty() || !m_plot->axisRect()->rect().contains(place.toPoint()))
        return -1;
    const double x = m_plot->xAxis->pixelToCoord(place.x());
    auto nearest = std::lower_bound(points.begin(), points.end(), x,
                                    [](const QCPGraphData& p, double key) { return p.key < key; });
    if (nearest == points.end() ||
        (nearest != points.begin() && x - (nearest - 1)->key <= nearest->key - x))
        --nearest;
    const auto pixels = [&](double from, double to) {
        return std::abs(m_plot->xAxis->coordToPixel(to) - m_plot->xAxis->coordToPixel(from));
    };
    // Between two neighbours every place belongs to one of them, however far they lie apart.
    const bool inside = x >= points.front().key && x <= points.back().key;
    if (!inside && pixels(x, nearest->key) > reachPixels)
        return -1;
    return static_cast<int>(nearest - points.begin());
}

QPointF ChartWidget::placeOf(double x, double y) const {
    return {m_plot->xAxis->coordToPixel(x), m_plot->yAxis->coordToPixel(y)};
}

void ChartWidget::clearSeries(int series) {
    Series& cleared = m_series.at(static_cast<std::size_t>(series));
    cleared = {};
    cleared.changed = true;
}

void ChartWidget::addXY(int series, double x, double y, const std::string& label,
                        std::int32_t colour) {
    Series& extended = m_series.at(static_cast<std::size_t>(series));
    extended.points.append(QCPGraphData(x, y));
    if (series == 1)
        extended.labels.push_back(label);
    extended.colour = colour;
    extended.changed = true;
}

void ChartWidget::setAxis(ChartAxis axis, std::optional<double> minimum,
                          std::optional<double> maximum) {
    (axis == ChartAxis::Left ? m_left : m_bottom) = {minimum, maximum};
}

void ChartWidget::setAxisTitle(ChartAxis axis, const std::string& title) {
    (axis == ChartAxis::Left ? m_plot->yAxis : m_plot->xAxis)
        ->setLabel(QString::fromStdString(title));
}

void ChartWidget::setCursor(std::optional<double> x) {
    m_cursor->setVisible(x.has_value());
    m_cursor->start->setCoords(x.value_or(0), 0);
    m_cursor->end->setCoords(x.value_or(0), 1);
    m_plot->layer("moving")->replot();
}

void ChartWidget::setLegend(int series, const std::string& name) {
    QCPGraph& graph = *m_plot->graph(series);
    graph.setName(QString::fromStdString(name));
    // Taken out and put in again, so that the entries stand in the order of the series.
    for (int i = 0; i < seriesCount; ++i)
        m_plot->graph(i)->removeFromLegend();
    for (int i = 0; i < seriesCount; ++i)
        if (!m_plot->graph(i)->name().isEmpty() && i > 0)
            m_plot->graph(i)->addToLegend();
    m_plot->legend->setVisible(m_plot->legend->itemCount() > 0);
}

void ChartWidget::colourSeries() {
    const bool speed = m_series[2].points.isEmpty();
    const bool filled = speed && m_series[1].points.size() <= mostFilledPoints;
    for (int i = 0; i < seriesCount; ++i) {
        const auto index = static_cast<std::size_t>(i);
        const QColor own = speed && i == 1 ? palette::accent : curveColours[index];
        const std::int32_t colour = m_series[index].colour;
        m_plot->graph(i)->setPen(thin(colour == automaticColour ? own : colourOf(colour)));
        QColor fill = own;
        fill.setAlpha(40);
        m_plot->graph(i)->setBrush(filled && i == 1 ? QBrush(fill) : QBrush(Qt::NoBrush));
    }
}

void ChartWidget::placeMarker() {
    const bool marked = isMarker(m_series[3]);
    m_marker->setVisible(marked);
    if (!marked)
        return;
    const double x = m_series[3].points[0].key;
    m_marker->start->setCoords(x, 0);
    m_marker->end->setCoords(x, 1);
    m_marker->setPen(thin(m_series[3].colour == automaticColour ? QColor(Qt::red)
                                                                : colourOf(m_series[3].colour)));
}

std::pair<double, double> ChartWidget::rangeOf(ChartAxis axis, const Bounds& bounds) const {
    double lowest = HUGE_VAL;
    double highest = -HUGE_VAL;
    for (const Series& series : m_series) {
        if (isMarker(series))
            continue;
        for (const QCPGraphData& point : series.points) {
            const double value = axis == ChartAxis::Left ? point.value : point.key;
            if (std::isfinite(value)) {
                lowest = std::min(lowest, value);
                highest = std::max(highest, value);
            }
        }
    }
    const double lower = bounds.minimum.value_or(lowest <= highest ? lowest : 0);
    const double upper = bounds.maximum.value_or(lowest <= highest ? highest : 1);
    return {lower, upper > lower ? upper : lower + 1};
}

void ChartWidget::redraw() {
    for (int i = 0; i < seriesCount; ++i) {
        Series& series = m_series[static_cast<std::size_t>(i)];
        if (!series.changed)
            continue;
        const auto byKey = [](const QCPGraphData& a, const QCPGraphData& b) {
            return a.key < b.key;
        };
        const bool sorted = std::is_sorted(series.points.begin(), series.points.end(), byKey);
        const bool marker = isMarker(series);
        m_plot->graph(i)->data()->set(marker ? QVector<QCPGraphData>() : series.points, sorted);
        series.changed = false;
    }
    colourSeries();
    placeMarker();
    const auto [left, right] = rangeOf(ChartAxis::Bottom, m_bottom);
    m_plot->xAxis->setRange(left, right);
    const auto [low, high] = rangeOf(ChartAxis::Left, m_left);
    m_plot->yAxis->setRange(low, high);
    m_plot->setAccessibleDescription(m_plot->yAxis->label() + " / " + m_plot->xAxis->label());
    m_plot->replot(QCustomPlot::rpQueuedReplot);
}

} // namespace velmorant

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
    LeaveFilter(ChartWidget& chart, QObject* parent) : QObject(parent), chart_(chart) {}
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Leave)
            chart_.setHovered(-1);
        return QObject::eventFilter(watched, event);
    }

  private:
    ChartWidget& chart_;
};

ChartWidget::ChartWidget(QWidget* parent) : plot_(new QCustomPlot(parent)), series_(seriesCount) {
    plot_->setNotAntialiasedElements(QCP::aeAll);
    plot_->setBackground(QBrush(palette::well));
    plot_->axisRect()->setAutoMargins(QCP::msAll);
    plot_->axisRect()->setMinimumMargins(QMargins(4, 6, 8, 2));
    styleAxis(*plot_->xAxis);
    styleAxis(*plot_->yAxis);
    plot_->yAxis->ticker()->setTickCount(4);
    auto ticker = QSharedPointer<QCPAxisTickerTime>::create();
    ticker->setTimeFormat("%m:%s");
    plot_->xAxis->setTicker(ticker);
    for (int i = 0; i < seriesCount; ++i) {
        QCPGraph* const graph = plot_->addGraph();
        graph->setAdaptiveSampling(true);
        graph->setName({});
        graph->removeFromLegend();
    }
    styleLegend();
    // What moves lies on a layer of its own, which is painted over the curves without drawing them.
    plot_->addLayer("moving", nullptr, QCustomPlot::limAbove);
    plot_->layer("moving")->setMode(QCPLayer::lmBuffered);
    marker_ = makeVerticalLine("overlay", Qt::red);
    cursor_ = makeVerticalLine("moving", now);
    hoverText_ = new QCPItemText(plot_);
    hoverText_->setLayer("moving");
    hoverText_->setVisible(false);
    hoverText_->setFont(smallFont(plot_->font()));
    hoverText_->setColor(palette::text);
    hoverText_->setBrush(palette::control);
    hoverText_->setPadding(QMargins(4, 2, 4, 2));
    hoverText_->position->setType(QCPItemPosition::ptAbsolute);

    keys_ = new ChartKeys(*this, *plot_);
    plot_->setMouseTracking(true);
    plot_->installEventFilter(new LeaveFilter(*this, plot_));
    QObject::connect(plot_, &QCustomPlot::mouseMove, plot_,
                     [this](QMouseEvent* event) { mouseMoved(event->position()); });
    QObject::connect(plot_, &QCustomPlot::mouseRelease, plot_, [this](QMouseEvent* event) {
        if (event->button() == Qt::LeftButton)
            choose(indexAt(event->position()));
    });
}

std::string ChartWidget::libraryVersion() {
    return QCUSTOMPLOT_VERSION_STR;
}

ChartWidget::~ChartWidget() {
    delete plot_;
}

QWidget& ChartWidget::widget() {
    return *plot_;
}

void ChartWidget::styleAxis(QCPAxis& axis) const {
    axis.setBasePen(thin(palette::outline));
    axis.setTickPen(thin(palette::outline));
    axis.setSubTickPen(thin(palette::outline));
    axis.setTickLabelColor(palette::secondText);
    axis.setLabelColor(palette::secondText);
    axis.setTickLabelFont(smallFont(plot_->font()));
    axis.setLabelFont(smallFont(plot_->font()));
    axis.setLabelPadding(1);
    axis.grid()->setPen(thin(palette::rule));
    axis.grid()->setZeroLinePen(thin(palette::outline));
}

void ChartWidget::styleLegend() const {
    QCPLegend& legend = *plot_->legend;
    legend.setVisible(false);
    legend.setFillOrder(QCPLayoutGrid::foColumnsFirst); // one row: the chart is low
    legend.setFont(smallFont(plot_->font()));
    legend.setTextColor(palette::text);
    legend.setBrush(palette::card);
    legend.setBorderPen(thin(palette::rule));
    legend.setMargins(QMargins(4, 1, 4, 1));
    legend.setIconSize(14, textPixels);
    plot_->axisRect()->insetLayout()->setInsetAlignment(0, Qt::AlignTop | Qt::AlignRight);
    plot_->axisRect()->insetLayout()->setMargins(QMargins(2, 2, 2, 2));
}

QCPItemLine* ChartWidget::makeVerticalLine(const QString& layer, const QColor& colour) const {
    auto* const line = new QCPItemLine(plot_);
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
    mouseUpListener_ = std::move(listener);
}

void ChartWidget::onHover(GatedListener<int> listener) {
    hoverListener_ = std::move(listener);
}

void ChartWidget::mouseMoved(const QPointF& place) {
    hoverPlace_ = place;
    setHovered(indexAt(place));
    placeHoverText();
}

void ChartWidget::setHovered(int index) {
    if (index == hovered_)
        return;
    hovered_ = index;
    if (index < 0)
        setHoverText({});
    hoverListener_.latest(index);
}

void ChartWidget::setHoverText(const std::string& text) {
    hoverText_->setText(shownText(text));
    hoverText_->setVisible(!text.empty());
    if (text.empty())
        plot_->layer("moving")->replot();
    else
        placeHoverText();
    keys_->tell();
}

QString ChartWidget::hoverText() const {
    return hoverText_->text();
}

void ChartWidget::point(int index) {
    if (index >= 0 && index < pointCount())
        hoverPlace_ = placeOf(pointedSeries().points[index].key, plot_->yAxis->range().center());
    setHovered(index);
    placeHoverText();
}

void ChartWidget::choose(int index) {
    mouseUpListener_(index);
}

int ChartWidget::pointCount() const {
    return static_cast<int>(pointedSeries().points.size());
}

int ChartWidget::presentPoint() const {
    const double present = cursor_->visible() ? cursor_->start->coords().x() : 0.0;
    return hovered_ >= 0 ? hovered_ : std::clamp(static_cast<int>(present), 0, pointCount());
}

/// Beside the mouse, on the side where it fits, and never out of the plot.
void ChartWidget::placeHoverText() {
    if (!hoverText_->visible())
        return;
    const QMargins padding = hoverText_->padding();
    const double width = QFontMetrics(hoverText_->font())
                             .boundingRect(QRect(), Qt::AlignLeft, hoverText_->text())
                             .width() +
                         padding.left() + padding.right();
    const double right = hoverPlace_.x() + besidePixels;
    const double left = hoverPlace_.x() - besidePixels - width;
    const double wanted = right + width <= plot_->width() ? right : left;
    hoverText_->setPositionAlignment(Qt::AlignVCenter | Qt::AlignLeft);
    hoverText_->position->setCoords(std::clamp(wanted, 0.0, std::max(0.0, plot_->width() - width)),
                                    plot_->axisRect()->center().y());
    plot_->layer("moving")->replot();
}

bool ChartWidget::isMarker(const Series& series) const {
    return &series == &series_[3] && series.points.size() == 1 &&
           series.points[0].value == markerHeight;
}

const ChartWidget::Series& ChartWidget::pointedSeries() const {
    const auto found = std::find_if(series_.begin() + 1, series_.end(), [this](const Series& s) {
        return !s.points.isEmpty() && !isMarker(s);
    });
    return found == series_.end() ? series_[0] : *found;
}

std::string ChartWidget::label(int index) const {
    const std::vector<std::string>& labels = series_[1].labels;
    return index >= 0 && static_cast<std::size_t>(index) < labels.size()
               ? labels[static_cast<std::size_t>(index)]
               : std::string();
}

int ChartWidget::indexAt(const QPointF& place) const {
    const QVector<QCPGraphData>& points = pointedSeries().points;
    if (points.isEmpty() || !plot_->axisRect()->rect().contains(place.toPoint()))
        return -1;
    const double x = plot_->xAxis->pixelToCoord(place.x());
    auto nearest = std::lower_bound(points.begin(), points.end(), x,
                                    [](const QCPGraphData& p, double key) { return p.key < key; });
    if (nearest == points.end() ||
        (nearest != points.begin() && x - (nearest - 1)->key <= nearest->key - x))
        --nearest;
    const auto pixels = [&](double from, double to) {
        return std::abs(plot_->xAxis->coordToPixel(to) - plot_->xAxis->coordToPixel(from));
    };
    // Between two neighbours every place belongs to one of them, however far they lie apart.
    const bool inside = x >= points.front().key && x <= points.back().key;
    if (!inside && pixels(x, nearest->key) > reachPixels)
        return -1;
    return static_cast<int>(nearest - points.begin());
}

QPointF ChartWidget::placeOf(double x, double y) const {
    return {plot_->xAxis->coordToPixel(x), plot_->yAxis->coordToPixel(y)};
}

void ChartWidget::clearSeries(int series) {
    Series& cleared = series_.at(static_cast<std::size_t>(series));
    cleared = {};
    cleared.changed = true;
}

void ChartWidget::addXY(int series, double x, double y, const std::string& label,
                        std::int32_t colour) {
    Series& extended = series_.at(static_cast<std::size_t>(series));
    extended.points.append(QCPGraphData(x, y));
    if (series == 1)
        extended.labels.push_back(label);
    extended.colour = colour;
    extended.changed = true;
}

void ChartWidget::setAxis(ChartAxis axis, std::optional<double> minimum,
                          std::optional<double> maximum) {
    (axis == ChartAxis::Left ? left_ : bottom_) = {minimum, maximum};
}

void ChartWidget::setAxisTitle(ChartAxis axis, const std::string& title) {
    (axis == ChartAxis::Left ? plot_->yAxis : plot_->xAxis)
        ->setLabel(QString::fromStdString(title));
}

void ChartWidget::setCursor(std::optional<double> x) {
    cursor_->setVisible(x.has_value());
    cursor_->start->setCoords(x.value_or(0), 0);
    cursor_->end->setCoords(x.value_or(0), 1);
    plot_->layer("moving")->replot();
}

void ChartWidget::setLegend(int series, const std::string& name) {
    QCPGraph& graph = *plot_->graph(series);
    graph.setName(QString::fromStdString(name));
    // Taken out and put in again, so that the entries stand in the order of the series.
    for (int i = 0; i < seriesCount; ++i)
        plot_->graph(i)->removeFromLegend();
    for (int i = 0; i < seriesCount; ++i)
        if (!plot_->graph(i)->name().isEmpty() && i > 0)
            plot_->graph(i)->addToLegend();
    plot_->legend->setVisible(plot_->legend->itemCount() > 0);
}

void ChartWidget::colourSeries() {
    const bool speed = series_[2].points.isEmpty();
    const bool filled = speed && series_[1].points.size() <= mostFilledPoints;
    for (int i = 0; i < seriesCount; ++i) {
        const auto index = static_cast<std::size_t>(i);
        const QColor own = speed && i == 1 ? palette::accent : curveColours[index];
        const std::int32_t colour = series_[index].colour;
        plot_->graph(i)->setPen(thin(colour == automaticColour ? own : colourOf(colour)));
        QColor fill = own;
        fill.setAlpha(40);
        plot_->graph(i)->setBrush(filled && i == 1 ? QBrush(fill) : QBrush(Qt::NoBrush));
    }
}

void ChartWidget::placeMarker() {
    const bool marked = isMarker(series_[3]);
    marker_->setVisible(marked);
    if (!marked)
        return;
    const double x = series_[3].points[0].key;
    marker_->start->setCoords(x, 0);
    marker_->end->setCoords(x, 1);
    marker_->setPen(
        thin(series_[3].colour == automaticColour ? QColor(Qt::red) : colourOf(series_[3].colour)));
}

std::pair<double, double> ChartWidget::rangeOf(ChartAxis axis, const Bounds& bounds) const {
    double lowest = HUGE_VAL;
    double highest = -HUGE_VAL;
    for (const Series& series : series_) {
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
        Series& series = series_[static_cast<std::size_t>(i)];
        if (!series.changed)
            continue;
        const auto byKey = [](const QCPGraphData& a, const QCPGraphData& b) {
            return a.key < b.key;
        };
        const bool sorted = std::is_sorted(series.points.begin(), series.points.end(), byKey);
        const bool marker = isMarker(series);
        plot_->graph(i)->data()->set(marker ? QVector<QCPGraphData>() : series.points, sorted);
        series.changed = false;
    }
    colourSeries();
    placeMarker();
    const auto [left, right] = rangeOf(ChartAxis::Bottom, bottom_);
    plot_->xAxis->setRange(left, right);
    const auto [low, high] = rangeOf(ChartAxis::Left, left_);
    plot_->yAxis->setRange(low, high);
    plot_->setAccessibleDescription(plot_->yAxis->label() + " / " + plot_->xAxis->label());
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

} // namespace velmorant

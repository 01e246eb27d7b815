#include "desktop/chart/ChartWidget.h"

#include "desktop/gate/HandlerGate.h"
#include "tests/desktop/eventLoop.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <qcustomplot.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace velmorant {
namespace {

using testing::ElementsAre;

class ChartWidgetTest : public testing::Test {
  protected:
    ChartWidgetTest() {
        chart_.widget().resize(656, 112);
        chart_.widget().show();
        chart_.onMouseUp(gate_.listener([this](int index) { ups_.push_back(index); }));
        chart_.onHover(gate_.listener([this](int index) { hovers_.push_back(index); }));
    }

    void addSpeeds(int count) {
        for (int i = 0; i < count; ++i)
            chart_.addXY(1, i, 50 + 40 * std::sin(i / 20.0), std::to_string(i), automaticColour);
    }
    QImage drawn() {
        chart_.redraw();
        plot().replot(QCustomPlot::rpImmediateRefresh);
        return chart_.widget().grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    QCustomPlot& plot() { return dynamic_cast<QCustomPlot&>(chart_.widget()); }
    void mouse(QEvent::Type type, QPointF place, Qt::MouseButton button = Qt::LeftButton) {
        QMouseEvent event(type, place, chart_.widget().mapToGlobal(place),
                          type == QEvent::MouseMove ? Qt::NoButton : button, Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&chart_.widget(), &event);
    }
    void click(QPointF place, Qt::MouseButton button = Qt::LeftButton) {
        mouse(QEvent::MouseButtonPress, place, button);
        mouse(QEvent::MouseButtonRelease, place, button);
    }
    /// How many pixels of the column have the colour.
    static int inColumn(const QImage& image, double x, QRgb colour) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            count += image.pixel(static_cast<int>(std::lround(x)), y) == colour ? 1 : 0;
        return count;
    }
    static int inAll(const QImage& image, QRgb colour) {
        int count = 0;
        for (int x = 0; x < image.width(); ++x)
            count += inColumn(image, x, colour);
        return count;
    }

    HandlerGate gate_;
    ChartWidget chart_;
    std::vector<int> ups_;
    std::vector<int> hovers_;
};

const QRgb accent = qRgb(0x45, 0xC9, 0xD6);
const QRgb red = qRgb(255, 0, 0);
const QRgb yellow = qRgb(255, 255, 0);

TEST_F(ChartWidgetTest, draws_what_was_added_and_nothing_after_a_clear) {
    addSpeeds(60);
    chart_.setAxis(ChartAxis::Left, 0.0, 95.0);
    chart_.setAxis(ChartAxis::Bottom, -0.5, 80.0);
    EXPECT_GT(inAll(drawn(), accent), 200);
    EXPECT_NEAR(plot().yAxis->range().upper, 95, 1e-9);
    for (int series = 0; series < 4; ++series)
        chart_.clearSeries(series);
    EXPECT_EQ(inAll(drawn(), accent), 0);
}

TEST_F(ChartWidgetTest, finds_absent_bounds_from_the_points) {
    chart_.addXY(1, 0, -3, "", automaticColour);
    chart_.addXY(1, 10, 7, "", automaticColour);
    chart_.setAxis(ChartAxis::Left, std::nullopt, 20.0);
    chart_.setAxis(ChartAxis::Bottom, std::nullopt, std::nullopt);
    drawn();
    EXPECT_EQ(plot().yAxis->range(), QCPRange(-3, 20));
    EXPECT_EQ(plot().xAxis->range(), QCPRange(0, 10));
    chart_.clearSeries(1);
    drawn();
    EXPECT_LT(plot().xAxis->range().lower, plot().xAxis->range().upper);
}

TEST_F(ChartWidgetTest, names_the_exact_point_under_the_mouse) {
    for (const int count : {5, 80, 500, 3600, 36000}) {
        SCOPED_TRACE(count);
        chart_.clearSeries(1);
        addSpeeds(count);
        chart_.setAxis(ChartAxis::Bottom, 0.0, std::max(80, count) - 1.5);
        chart_.setAxis(ChartAxis::Left, 0.0, 95.0);
        drawn();
        const double perPixel = plot().xAxis->range().size() / plot().axisRect()->width();
        for (int index = 0; index < count - 1; index += std::max(1, count / 50)) {
            const QPointF place = chart_.placeOf(index, 40);
            const int found = chart_.indexAt(place);
            EXPECT_LE(std::abs(found - index), perPixel / 2 + 0.001) << index;
        }
    }
}

TEST_F(ChartWidgetTest, reports_a_click_by_the_index_of_its_point) {
    addSpeeds(60);
    chart_.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    drawn();
    click(chart_.placeOf(30, 70));
    click(chart_.placeOf(30.4, 60));
    click(chart_.placeOf(0, 70));
    click(chart_.placeOf(70, 60));
    click(QPointF(2, 2));
    click(chart_.placeOf(30, 70), Qt::RightButton);
    EXPECT_THAT(ups_, ElementsAre(30, 30, 0, -1, -1));
}

TEST_F(ChartWidgetTest, reports_no_point_on_an_empty_chart) {
    drawn();
    click(QPointF(300, 50));
    EXPECT_THAT(ups_, ElementsAre(-1));
}

TEST_F(ChartWidgetTest, reports_the_point_under_the_mouse_once_for_each) {
    addSpeeds(60);
    chart_.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    drawn();
    mouse(QEvent::MouseMove, chart_.placeOf(10, 60));
    mouse(QEvent::MouseMove, chart_.placeOf(10, 70));
    mouse(QEvent::MouseMove, chart_.placeOf(11, 70));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&chart_.widget(), &leave);
    EXPECT_THAT(hovers_, ElementsAre(10, 11, -1));
    EXPECT_EQ(chart_.label(11), "11");
    EXPECT_EQ(chart_.label(60), "");
    EXPECT_EQ(chart_.label(-1), "");
}

TEST_F(ChartWidgetTest, the_text_at_the_mouse_stays_inside_the_plot) {
    addSpeeds(80);
    drawn();
    const QCPItemText* text = nullptr;
    for (int i = 0; i < plot().itemCount(); ++i)
        if (const auto* found = qobject_cast<QCPItemText*>(plot().item(i)))
            text = found;
    ASSERT_NE(text, nullptr);
    chart_.onHover(gate_.listener([this](int index) {
        chart_.setHoverText(index < 0 ? ""
                                      : "10:30:45  x 0.123  y -0.456  z 1.023  strongest 1.500");
    }));
    for (int point = 0; point < 80; point += 3) {
        mouse(QEvent::MouseMove, chart_.placeOf(point, 50));
        ASSERT_TRUE(text->visible());
        EXPECT_GE(text->left->pixelPosition().x(), 0) << point;
        EXPECT_LE(text->right->pixelPosition().x(), plot().width()) << point;
    }
}

TEST_F(ChartWidgetTest, draws_the_marker_as_a_red_line_over_the_whole_height) {
    addSpeeds(60);
    chart_.setAxis(ChartAxis::Left, 0.0, 95.0);
    chart_.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    chart_.addXY(3, 25, 200, "", 255);
    const QImage image = drawn();
    EXPECT_GT(inColumn(image, chart_.placeOf(25, 0).x(), red), plot().axisRect()->height() - 5);
    EXPECT_EQ(chart_.indexAt(chart_.placeOf(40, 10)), 40) << "the marker is no point";
    EXPECT_EQ(plot().yAxis->range().upper, 95);
    chart_.clearSeries(3);
    EXPECT_EQ(inAll(drawn(), red), 0);
}

TEST_F(ChartWidgetTest, replaces_the_third_curve_by_the_marker) {
    for (int series = 1; series <= 3; ++series)
        for (int i = 0; i < 100; ++i)
            chart_.addXY(series, i, series * 0.3 - 0.6, "", automaticColour);
    chart_.setAxis(ChartAxis::Left, -1.2, 1.2);
    const QRgb curves[] = {qRgb(0x6E, 0xA8, 0xFF), qRgb(0xFF, 0xB0, 0x00), qRgb(0xF2, 0xF5, 0xF8)};
    QImage image = drawn();
    for (const QRgb curve : curves)
        EXPECT_GT(inAll(image, curve), 300);
    chart_.clearSeries(3);
    chart_.addXY(3, 25, 200, "", 255);
    image = drawn();
    EXPECT_EQ(inAll(image, curves[2]), 0);
    EXPECT_GT(inAll(image, curves[0]), 300);
    EXPECT_GT(inAll(image, red), 30);
}

TEST_F(ChartWidgetTest, moves_the_cursor_without_drawing_the_curves) {
    addSpeeds(60);
    chart_.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    drawn();
    int replots = 0;
    QObject::connect(&plot(), &QCustomPlot::beforeReplot, [&] { ++replots; });
    chart_.setCursor(33);
    const QImage image = chart_.widget().grab().toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_GT(inColumn(image, chart_.placeOf(33, 0).x(), yellow), 40);
    chart_.setCursor(std::nullopt);
    EXPECT_EQ(inAll(chart_.widget().grab().toImage().convertToFormat(QImage::Format_RGB32), yellow),
              0);
    EXPECT_EQ(replots, 0);
}

TEST_F(ChartWidgetTest, shows_a_legend_of_the_named_series) {
    addSpeeds(10);
    drawn();
    EXPECT_FALSE(plot().legend->visible());
    chart_.setLegend(3, "G z");
    chart_.setLegend(1, "G x");
    EXPECT_TRUE(plot().legend->visible());
    ASSERT_EQ(plot().legend->itemCount(), 2);
    auto* const first = qobject_cast<QCPPlottableLegendItem*>(plot().legend->item(0));
    EXPECT_EQ(first->plottable()->name(), "G x");
    chart_.setLegend(1, "");
    chart_.setLegend(3, "");
    EXPECT_FALSE(plot().legend->visible());
}

TEST_F(ChartWidgetTest, the_keys_go_from_point_to_point_and_choose_one) {
    EXPECT_EQ(chart_.widget().focusPolicy(), Qt::TabFocus);
    addSpeeds(60);
    chart_.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    chart_.setCursor(20);
    drawn();
    const auto press = [this](int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        event.setAccepted(false);
        QCoreApplication::sendEvent(&chart_.widget(), &event);
        return event.isAccepted();
    };
    for (const int key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_PageDown,
                          Qt::Key_PageUp, Qt::Key_End, Qt::Key_Right, Qt::Key_Home, Qt::Key_Left})
        press(key);
    EXPECT_THAT(hovers_, ElementsAre(20, 21, 20, 30, 20, 59, 0));
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    EXPECT_THAT(ups_, ElementsAre(1));
    EXPECT_FALSE(press(Qt::Key_Space)) << "plays and pauses in every pane";
}

TEST_F(ChartWidgetTest, screen_readers_get_the_text_of_the_point_as_its_value) {
    addSpeeds(60);
    chart_.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    chart_.onHover(gate_.listener([this](int index) {
        chart_.setHoverText(index < 0 ? "" : "second " + std::to_string(index));
    }));
    drawn();
    QAccessibleInterface* chart = QAccessible::queryAccessibleInterface(&chart_.widget());
    QAccessibleValueInterface* value = chart->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->maximumValue().toInt(), 59);
    value->setCurrentValue(7);
    EXPECT_EQ(value->currentValue().toInt(), 7);
    EXPECT_EQ(chart->text(QAccessible::Value).toStdString(), "second 7");
    EXPECT_TRUE(ups_.empty()) << "to look at a second does not play it";
}

TEST_F(ChartWidgetTest, shows_that_it_has_the_keys) {
    addSpeeds(60);
    const QImage before = drawn();
    chart_.widget().activateWindow();
    chart_.widget().setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(waitFor([this] { return chart_.widget().hasFocus(); }));
    const QRgb white = qRgb(0xEA, 0xF0, 0xF6);
    EXPECT_EQ(inColumn(drawn(), 0, white), chart_.widget().height());
    EXPECT_LT(inColumn(before, 0, white), 10);
}

TEST_F(ChartWidgetTest, tells_its_axes_to_screen_readers) {
    chart_.setAxisTitle(ChartAxis::Left, "Speed (Km/h)");
    chart_.setAxisTitle(ChartAxis::Bottom, "Time");
    drawn();
    EXPECT_EQ(chart_.widget().accessibleDescription(), "Speed (Km/h) / Time");
}

TEST_F(ChartWidgetTest, a_blow_of_one_second_is_seen_among_ten_hours) {
    constexpr int tenHours = 36000;
    constexpr int blow = 20011;
    for (int i = 0; i < tenHours; ++i)
        chart_.addXY(1, i, i == blow ? 4.0 : 0.2 * std::sin(i * 0.7), "10:00", automaticColour);
    chart_.setAxis(ChartAxis::Left, -1.0, 5.0);
    const QImage image = drawn();
    // Fifty-five samples share each column of pixels; the blow must not be thinned out.
    const QPointF peak = chart_.placeOf(blow, 4);
    const QPointF quiet = chart_.placeOf(blow - 2000, 0);
    const auto heightAt = [&](double x) { return inColumn(image, x, accent); };
    EXPECT_GT(std::max({heightAt(peak.x() - 1), heightAt(peak.x()), heightAt(peak.x() + 1)}),
              heightAt(quiet.x()) + 20);
    EXPECT_EQ(chart_.indexAt(peak), blow);
}

TEST(ChartWidgetLifetime, outlives_the_window_that_held_it) {
    auto window = std::make_unique<QWidget>();
    ChartWidget chart(window.get());
    chart.addXY(1, 0, 0, "", automaticColour);
    chart.redraw();
    window.reset();
    chart.clearSeries(1);
}

} // namespace
} // namespace velmorant

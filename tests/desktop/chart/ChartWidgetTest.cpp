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
        m_chart.widget().resize(656, 112);
        m_chart.widget().show();
        m_chart.onMouseUp(m_gate.listener([this](int index) { m_ups.push_back(index); }));
        m_chart.onHover(m_gate.listener([this](int index) { m_hovers.push_back(index); }));
    }

    void addSpeeds(int count) {
        for (int i = 0; i < count; ++i)
            m_chart.addXY(1, i, 50 + 40 * std::sin(i / 20.0), std::to_string(i), automaticColour);
    }
    QImage drawn() {
        m_chart.redraw();
        plot().replot(QCustomPlot::rpImmediateRefresh);
        return m_chart.widget().grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    QCustomPlot& plot() { return dynamic_cast<QCustomPlot&>(m_chart.widget()); }
    void mouse(QEvent::Type type, QPointF place, Qt::MouseButton button = Qt::LeftButton) {
        QMouseEvent event(type, place, m_chart.widget().mapToGlobal(place),
                          type == QEvent::MouseMove ? Qt::NoButton : button, Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&m_chart.widget(), &event);
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

    HandlerGate m_gate;
    ChartWidget m_chart;
    std::vector<int> m_ups;
    std::vector<int> m_hovers;
};

const QRgb accent = qRgb(0x45, 0xC9, 0xD6);
const QRgb red = qRgb(255, 0, 0);
const QRgb yellow = qRgb(255, 255, 0);

TEST_F(ChartWidgetTest, draws_what_was_added_and_nothing_after_a_clear) {
    addSpeeds(60);
    m_chart.setAxis(ChartAxis::Left, 0.0, 95.0);
    m_chart.setAxis(ChartAxis::Bottom, -0.5, 80.0);
    EXPECT_GT(inAll(drawn(), accent), 200);
    EXPECT_NEAR(plot().yAxis->range().upper, 95, 1e-9);
    for (int series = 0; series < 4; ++series)
        m_chart.clearSeries(series);
    EXPECT_EQ(inAll(drawn(), accent), 0);
}

TEST_F(ChartWidgetTest, finds_absent_bounds_from_the_points) {
    m_chart.addXY(1, 0, -3, "", automaticColour);
    m_chart.addXY(1, 10, 7, "", automaticColour);
    m_chart.setAxis(ChartAxis::Left, std::nullopt, 20.0);
    m_chart.setAxis(ChartAxis::Bottom, std::nullopt, std::nullopt);
    drawn();
    EXPECT_EQ(plot().yAxis->range(), QCPRange(-3, 20));
    EXPECT_EQ(plot().xAxis->range(), QCPRange(0, 10));
    m_chart.clearSeries(1);
    drawn();
    EXPECT_LT(plot().xAxis->range().lower, plot().xAxis->range().upper);
}

TEST_F(ChartWidgetTest, names_the_exact_point_under_the_mouse) {
    for (const int count : {5, 80, 500, 3600, 36000}) {
        SCOPED_TRACE(count);
        m_chart.clearSeries(1);
        addSpeeds(count);
        m_chart.setAxis(ChartAxis::Bottom, 0.0, std::max(80, count) - 1.5);
        m_chart.setAxis(ChartAxis::Left, 0.0, 95.0);
        drawn();
        const double perPixel = plot().xAxis->range().size() / plot().axisRect()->width();
        for (int index = 0; index < count - 1; index += std::max(1, count / 50)) {
            const QPointF place = m_chart.placeOf(index, 40);
            const int found = m_chart.indexAt(place);
            EXPECT_LE(std::abs(found - index), perPixel / 2 + 0.001) << index;
        }
    }
}

TEST_F(ChartWidgetTest, reports_a_click_by_the_index_of_its_point) {
    addSpeeds(60);
    m_chart.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    drawn();
    click(m_chart.placeOf(30, 70));
    click(m_chart.placeOf(30.4, 60));
    click(m_chart.placeOf(0, 70));
    click(m_chart.placeOf(70, 60));
    click(QPointF(2, 2));
    click(m_chart.placeOf(30, 70), Qt::RightButton);
    EXPECT_THAT(m_ups, ElementsAre(30, 30, 0, -1, -1));
}

TEST_F(ChartWidgetTest, reports_no_point_on_an_empty_chart) {
    drawn();
    click(QPointF(300, 50));
    EXPECT_THAT(m_ups, ElementsAre(-1));
}

TEST_F(ChartWidgetTest, reports_the_point_under_the_mouse_once_for_each) {
    addSpeeds(60);
    m_chart.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    drawn();
    mouse(QEvent::MouseMove, m_chart.placeOf(10, 60));
    mouse(QEvent::MouseMove, m_chart.placeOf(10, 70));
    mouse(QEvent::MouseMove, m_chart.placeOf(11, 70));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&m_chart.widget(), &leave);
    EXPECT_THAT(m_hovers, ElementsAre(10, 11, -1));
    EXPECT_EQ(m_chart.label(11), "11");
    EXPECT_EQ(m_chart.label(60), "");
    EXPECT_EQ(m_chart.label(-1), "");
}

TEST_F(ChartWidgetTest, the_text_at_the_mouse_stays_inside_the_plot) {
    addSpeeds(80);
    drawn();
    const QCPItemText* text = nullptr;
    for (int i = 0; i < plot().itemCount(); ++i)
        if (const auto* found = qobject_cast<QCPItemText*>(plot().item(i)))
            text = found;
    ASSERT_NE(text, nullptr);
    m_chart.onHover(m_gate.listener([this](int index) {
        m_chart.setHoverText(index < 0 ? ""
                                       : "10:30:45  x 0.123  y -0.456  z 1.023  strongest 1.500");
    }));
    for (int point = 0; point < 80; point += 3) {
        mouse(QEvent::MouseMove, m_chart.placeOf(point, 50));
        ASSERT_TRUE(text->visible());
        EXPECT_GE(text->left->pixelPosition().x(), 0) << point;
        EXPECT_LE(text->right->pixelPosition().x(), plot().width()) << point;
    }
}

TEST_F(ChartWidgetTest, draws_the_marker_as_a_red_line_over_the_whole_height) {
    addSpeeds(60);
    m_chart.setAxis(ChartAxis::Left, 0.0, 95.0);
    m_chart.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    m_chart.addXY(3, 25, 200, "", 255);
    const QImage image = drawn();
    EXPECT_GT(inColumn(image, m_chart.placeOf(25, 0).x(), red), plot().axisRect()->height() - 5);
    EXPECT_EQ(m_chart.indexAt(m_chart.placeOf(40, 10)), 40) << "the marker is no point";
    EXPECT_EQ(plot().yAxis->range().upper, 95);
    m_chart.clearSeries(3);
    EXPECT_EQ(inAll(drawn(), red), 0);
}

TEST_F(ChartWidgetTest, replaces_the_third_curve_by_the_marker) {
    for (int series = 1; series <= 3; ++series)
        for (int i = 0; i < 100; ++i)
            m_chart.addXY(series, i, series * 0.3 - 0.6, "", automaticColour);
    m_chart.setAxis(ChartAxis::Left, -1.2, 1.2);
    const QRgb curves[] = {qRgb(0x6E, 0xA8, 0xFF), qRgb(0xFF, 0xB0, 0x00), qRgb(0xF2, 0xF5, 0xF8)};
    QImage image = drawn();
    for (const QRgb curve : curves)
        EXPECT_GT(inAll(image, curve), 300);
    m_chart.clearSeries(3);
    m_chart.addXY(3, 25, 200, "", 255);
    image = drawn();
    EXPECT_EQ(inAll(image, curves[2]), 0);
    EXPECT_GT(inAll(image, curves[0]), 300);
    EXPECT_GT(inAll(image, red), 30);
}

TEST_F(ChartWidgetTest, moves_the_cursor_without_drawing_the_curves) {
    addSpeeds(60);
    m_chart.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    drawn();
    int replots = 0;
    QObject::connect(&plot(), &QCustomPlot::beforeReplot, [&] { ++replots; });
    m_chart.setCursor(33);
    const QImage image = m_chart.widget().grab().toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_GT(inColumn(image, m_chart.placeOf(33, 0).x(), yellow), 40);
    m_chart.setCursor(std::nullopt);
    EXPECT_EQ(
        inAll(m_chart.widget().grab().toImage().convertToFormat(QImage::Format_RGB32), yellow), 0);
    EXPECT_EQ(replots, 0);
}

TEST_F(ChartWidgetTest, shows_a_legend_of_the_named_series) {
    addSpeeds(10);
    drawn();
    EXPECT_FALSE(plot().legend->visible());
    m_chart.setLegend(3, "G z");
    m_chart.setLegend(1, "G x");
    EXPECT_TRUE(plot().legend->visible());
    ASSERT_EQ(plot().legend->itemCount(), 2);
    auto* const first = qobject_cast<QCPPlottableLegendItem*>(plot().legend->item(0));
    EXPECT_EQ(first->plottable()->name(), "G x");
    m_chart.setLegend(1, "");
    m_chart.setLegend(3, "");
    EXPECT_FALSE(plot().legend->visible());
}

TEST_F(ChartWidgetTest, the_keys_go_from_point_to_point_and_choose_one) {
    EXPECT_EQ(m_chart.widget().focusPolicy(), Qt::TabFocus);
    addSpeeds(60);
    m_chart.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    m_chart.setCursor(20);
    drawn();
    const auto press = [this](int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        event.setAccepted(false);
        QCoreApplication::sendEvent(&m_chart.widget(), &event);
        return event.isAccepted();
    };
    for (const int key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_PageDown,
                          Qt::Key_PageUp, Qt::Key_End, Qt::Key_Right, Qt::Key_Home, Qt::Key_Left})
        press(key);
    EXPECT_THAT(m_hovers, ElementsAre(20, 21, 20, 30, 20, 59, 0));
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    EXPECT_THAT(m_ups, ElementsAre(1));
    EXPECT_FALSE(press(Qt::Key_Space)) << "plays and pauses in every pane";
}

TEST_F(ChartWidgetTest, screen_readers_get_the_text_of_the_point_as_its_value) {
    addSpeeds(60);
    m_chart.setAxis(ChartAxis::Bottom, 0.0, 80.0);
    m_chart.onHover(m_gate.listener([this](int index) {
        m_chart.setHoverText(index < 0 ? "" : "second " + std::to_string(index));
    }));
    drawn();
    QAccessibleInterface* chart = QAccessible::queryAccessibleInterface(&m_chart.widget());
    QAccessibleValueInterface* value = chart->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->maximumValue().toInt(), 59);
    value->setCurrentValue(7);
    EXPECT_EQ(value->currentValue().toInt(), 7);
    EXPECT_EQ(chart->text(QAccessible::Value).toStdString(), "second 7");
    EXPECT_TRUE(m_ups.empty()) << "to look at a second does not play it";
}

TEST_F(ChartWidgetTest, shows_that_it_has_the_keys) {
    addSpeeds(60);
    const QImage before = drawn();
    m_chart.widget().activateWindow();
    m_chart.widget().setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(waitFor([this] { return m_chart.widget().hasFocus(); }));
    const QRgb white = qRgb(0xEA, 0xF0, 0xF6);
    EXPECT_EQ(inColumn(drawn(), 0, white), m_chart.widget().height());
    EXPECT_LT(inColumn(before, 0, white), 10);
}

TEST_F(ChartWidgetTest, tells_its_axes_to_screen_readers) {
    m_chart.setAxisTitle(ChartAxis::Left, "Speed (Km/h)");
    m_chart.setAxisTitle(ChartAxis::Bottom, "Time");
    drawn();
    EXPECT_EQ(m_chart.widget().accessibleDescription(), "Speed (Km/h) / Time");
}

TEST_F(ChartWidgetTest, a_blow_of_one_second_is_seen_among_ten_hours) {
    constexpr int tenHours = 36000;
    constexpr int blow = 20011;
    for (int i = 0; i < tenHours; ++i)
        m_chart.addXY(1, i, i == blow ? 4.0 : 0.2 * std::sin(i * 0.7), "10:00", automaticColour);
    m_chart.setAxis(ChartAxis::Left, -1.0, 5.0);
    const QImage image = drawn();
    // Fifty-five samples share each column of pixels; the blow must not be thinned out.
    const QPointF peak = m_chart.placeOf(blow, 4);
    const QPointF quiet = m_chart.placeOf(blow - 2000, 0);
    const auto heightAt = [&](double x) { return inColumn(image, x, accent); };
    EXPECT_GT(std::max({heightAt(peak.x() - 1), heightAt(peak.x()), heightAt(peak.x() + 1)}),
              heightAt(quiet.x()) + 20);
    EXPECT_EQ(m_chart.indexAt(peak), blow);
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

#pragma once

#include <QObject>

class QCustomPlot;
class QFrame;
class QKeyEvent;

namespace velmorant {

class ChartWidget;

/// The chart for those who use no mouse: a stop of the Tab key, the arrow keys go from point to
/// point, Home, End and the page keys further, Enter is a click on the point. Screen readers get a
/// slider over the points with the point's text as its value.
///
/// Belongs to the plot.
class ChartKeys : public QObject {
    Q_OBJECT
  public:
    ChartKeys(ChartWidget& chart, QCustomPlot& plot);
    ChartWidget& chart() { return m_chart; }
    /// The point that is shown has another text.
    void tell();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool use(const QKeyEvent& event);
    void showFocus(bool on);

    ChartWidget& m_chart;
    QCustomPlot& m_plot;
    QFrame* m_frame; ///< tells that the chart has the keys
};

} // namespace velmorant

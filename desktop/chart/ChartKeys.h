#pragma once

#include <QObject>

class QCustomPlot;
class QFrame;
class QKeyEvent;

namespace velmorant {

class ChartWidget;

/// Makes the chart usable without a mouse: Tab reaches it, the arrow keys move from point to point,
/// Home, End and the page keys move further, Enter acts as a click on the point. Screen readers get
/// a slider over the points with the point's text as its value.
///
/// Belongs to the plot.
class ChartKeys : public QObject {
    Q_OBJECT
  public:
    ChartKeys(ChartWidget& chart, QCustomPlot& plot);
    ChartWidget& chart() { return m_chart; }
    /// The text of the point that is shown has changed.
    void tell();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool use(const QKeyEvent& event);
    void showFocus(bool on);

    ChartWidget& m_chart;
    QCustomPlot& m_plot;
    QFrame* m_frame; ///< shows that the chart has the keyboard focus
};

} // namespace velmorant

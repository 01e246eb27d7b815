#include "desktop/chart/ChartKeys.h"

#include "desktop/chart/ChartWidget.h"

#include <QAccessibleWidget>
#include <QFrame>
#include <QKeyEvent>

#include <qcustomplot.h>

#include <algorithm>

namespace velmorant {

namespace {

constexpr int pageOfPoints = 10;

class ChartAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    ChartAccessible(QWidget& plot, ChartKeys& keys)
        : QAccessibleWidget(&plot, QAccessible::Slider), m_keys(keys) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text text) const override {
        return text == QAccessible::Value ? m_keys.chart().hoverText()
                                          : QAccessibleWidget::text(text);
    }
    QVariant currentValue() const override { return m_keys.chart().presentPoint(); }
    void setCurrentValue(const QVariant& value) override { m_keys.chart().point(value.toInt()); }
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return std::max(m_keys.chart().pointCount() - 1, 0); }
    QVariant minimumStepSize() const override { return 1; }

  private:
    ChartKeys& m_keys;
};

QAccessibleInterface* chartInterface(const QString&, QObject* object) {
    auto* plot = qobject_cast<QCustomPlot*>(object);
    auto* keys = plot ? plot->findChild<ChartKeys*>() : nullptr;
    return keys ? new ChartAccessible(*plot, *keys) : nullptr;
}

} // namespace

ChartKeys::ChartKeys(ChartWidget& chart, QCustomPlot& plot)
    : QObject(&plot), m_chart(chart), m_plot(plot), m_frame(new QFrame(&plot)) {
    QAccessible::installFactory(chartInterface);
    m_frame->setObjectName("focus");
    m_frame->setStyleSheet("#focus { border: 2px solid #EAF0F6; background: transparent; }");
    m_frame->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_frame->hide();
    // A click leaves the keys to the window, where they play.
    m_plot.setFocusPolicy(Qt::TabFocus);
    m_plot.installEventFilter(this);
}

bool ChartKeys::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        return use(*static_cast<QKeyEvent*>(event));
    case QEvent::FocusIn:
        showFocus(true);
        break;
    case QEvent::FocusOut:
        showFocus(false);
        m_chart.point(-1);
        break;
    case QEvent::Resize:
        m_frame->setGeometry(m_plot.rect());
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool ChartKeys::use(const QKeyEvent& event) {
    const int last = m_chart.pointCount() - 1;
    if (last < 0 || (event.modifiers() & ~Qt::KeypadModifier) != 0)
        return false;
    // The first key shows the point that plays.
    const bool shown = m_chart.pointed() >= 0;
    const auto step = [&](int points) {
        m_chart.point(std::clamp(m_chart.presentPoint() + (shown ? points : 0), 0, last));
        return true;
    };
    switch (event.key()) {
    case Qt::Key_Left:
        return step(-1);
    case Qt::Key_Right:
        return step(1);
    case Qt::Key_PageUp:
        return step(-pageOfPoints);
    case Qt::Key_PageDown:
        return step(pageOfPoints);
    case Qt::Key_Home:
        m_chart.point(0);
        return true;
    case Qt::Key_End:
        m_chart.point(last);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_chart.choose(m_chart.presentPoint());
        return true;
    default:
        return false;
    }
}

void ChartKeys::showFocus(bool on) {
    m_frame->setGeometry(m_plot.rect());
    m_frame->setVisible(on);
    m_frame->raise();
}

void ChartKeys::tell() {
    if (!m_plot.hasFocus())
        return;
    QAccessibleValueChangeEvent event(&m_plot, m_chart.presentPoint());
    QAccessible::updateAccessibility(&event);
}

} // namespace velmorant

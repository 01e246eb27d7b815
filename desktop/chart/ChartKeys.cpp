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
        : QAccessibleWidget(&plot, QAccessible::Slider), keys_(keys) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text text) const override {
        return text == QAccessible::Value ? keys_.chart().hoverText()
                                          : QAccessibleWidget::text(text);
    }
    QVariant currentValue() const override { return keys_.chart().presentPoint(); }
    void setCurrentValue(const QVariant& value) override { keys_.chart().point(value.toInt()); }
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return std::max(keys_.chart().pointCount() - 1, 0); }
    QVariant minimumStepSize() const override { return 1; }

  private:
    ChartKeys& keys_;
};

QAccessibleInterface* chartInterface(const QString&, QObject* object) {
    auto* plot = qobject_cast<QCustomPlot*>(object);
    auto* keys = plot ? plot->findChild<ChartKeys*>() : nullptr;
    return keys ? new ChartAccessible(*plot, *keys) : nullptr;
}

} // namespace

ChartKeys::ChartKeys(ChartWidget& chart, QCustomPlot& plot)
    : QObject(&plot), chart_(chart), plot_(plot), frame_(new QFrame(&plot)) {
    QAccessible::installFactory(chartInterface);
    frame_->setObjectName("focus");
    frame_->setStyleSheet("#focus { border: 2px solid #EAF0F6; background: transparent; }");
    frame_->setAttribute(Qt::WA_TransparentForMouseEvents);
    frame_->hide();
    // A click leaves the keys to the window, where they play.
    plot_.setFocusPolicy(Qt::TabFocus);
    plot_.installEventFilter(this);
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
        chart_.point(-1);
        break;
    case QEvent::Resize:
        frame_->setGeometry(plot_.rect());
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool ChartKeys::use(const QKeyEvent& event) {
    const int last = chart_.pointCount() - 1;
    if (last < 0 || (event.modifiers() & ~Qt::KeypadModifier) != 0)
        return false;
    // The first key shows the point that plays.
    const bool shown = chart_.pointed() >= 0;
    const auto step = [&](int points) {
        chart_.point(std::clamp(chart_.presentPoint() + (shown ? points : 0), 0, last));
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
        chart_.point(0);
        return true;
    case Qt::Key_End:
        chart_.point(last);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        chart_.choose(chart_.presentPoint());
        return true;
    default:
        return false;
    }
}

void ChartKeys::showFocus(bool on) {
    frame_->setGeometry(plot_.rect());
    frame_->setVisible(on);
    frame_->raise();
}

void ChartKeys::tell() {
    if (!plot_.hasFocus())
        return;
    QAccessibleValueChangeEvent event(&plot_, chart_.presentPoint());
    QAccessible::updateAccessibility(&event);
}

} // namespace velmorant

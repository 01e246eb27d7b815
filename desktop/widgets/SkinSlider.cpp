#include "desktop/widgets/SkinSlider.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

namespace velmorant {
namespace {

QString timeText(double seconds) {
    const int whole = static_cast<int>(seconds);
    return QStringLiteral("%1:%2").arg(whole / 60).arg(whole % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

SkinSlider::SkinSlider(std::shared_ptr<SkinDrawing> drawing, const SkinElement& element,
                       QWidget* parent)
    : QWidget(parent), drawing_(std::move(drawing)), id_(element.id) {
    SkinSliderAccessible::install();
    const QRect area = element.bounds.toAlignedRect();
    setGeometry(area);
    origin_ = area.topLeft();
    range_ = drawing_->bounds(id_ + (drawing_->has(id_ + ".range") ? ".range" : ".track"));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setMouseTracking(true);
}

void SkinSlider::setValue(double value) {
    if (value == value_)
        return;
    value_ = value;
    update();
    const double shown = options_.seconds ? value / 100.0 * options_.seconds() : value;
    QAccessibleValueChangeEvent event(this, shown);
    QAccessible::updateAccessibility(&event);
}

void SkinSlider::setOn(bool on) {
    on_ = on;
    update();
}

double SkinSlider::positionOf(double value) const {
    return range_.left() - origin_.x() + value / 100.0 * range_.width();
}

double SkinSlider::valueAt(double x) const {
    const double inRange = x + origin_.x() - range_.left();
    return std::clamp(inRange / range_.width() * 100.0, 0.0, 100.0);
}

void SkinSlider::changeByUser(double value) {
    const double clamped = std::clamp(value, 0.0, 100.0);
    setValue(clamped);
    emit changed(clamped);
}

void SkinSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    dragTo(event->position().x());
}

void SkinSlider::mouseMoveEvent(QMouseEvent* event) {
    if (!dragged_)
        return;
    if (event->buttons() & Qt::LeftButton)
        dragTo(event->position().x());
    else
        endDrag(*dragged_); // it was let go over a box that came up meanwhile
}

void SkinSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !dragged_)
        return event->ignore();
    endDrag(valueAt(event->position().x()));
}

void SkinSlider::endDrag(double value) {
    dragged_.reset();
    update();
    if (options_.drag == SliderDrag::AtRelease)
        changeByUser(value);
}

void SkinSlider::dragTo(double x) {
    dragged_ = valueAt(x);
    update();
    if (options_.drag == SliderDrag::Live)
        changeByUser(*dragged_);
    else
        emit previewed(*dragged_);
}

void SkinSlider::wheelEvent(QWheelEvent* event) {
    const double notches = event->angleDelta().y() / 120.0;
    if (notches == 0)
        return event->ignore();
    changeByUser(value_ + notches * options_.step);
}

void SkinSlider::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Right:
    case Qt::Key_Up:
        return changeByUser(value_ + options_.step);
    case Qt::Key_Left:
    case Qt::Key_Down:
        return changeByUser(value_ - options_.step);
    case Qt::Key_PageUp:
        return changeByUser(value_ + options_.page);
    case Qt::Key_PageDown:
        return changeByUser(value_ - options_.page);
    case Qt::Key_Home:
        return changeByUser(0);
    case Qt::Key_End:
        return changeByUser(100);
    default:
        event->ignore();
    }
}

QString SkinSlider::thumbId() const {
    const QString thumb = id_ + ".thumb";
    const auto first = [&](std::initializer_list<const char*> endings) {
        for (const char* ending : endings)
            if (drawing_->has(thumb + ending))
                return thumb + ending;
        return drawing_->has(thumb + ".normal") ? thumb + ".normal" : thumb;
    };
    if (!isEnabled())
        return first({".disabled"});
    if (dragged_)
        return first({".pressed"});
    if (on_)
        return hasFocus() ? first({".on.focus", ".focus"}) : first({".on"});
    if (hasFocus())
        return first({".focus"});
    if (underMouse())
        return first({".hover"});
    return first({".normal"});
}

void SkinSlider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const auto paintPart = [&](const QString& id) {
        drawing_->paint(painter, id, drawing_->bounds(id).translated(-origin_));
    };
    const double x = positionOf(shownValue());
    if (!isEnabled())
        paintPart(id_ + ".track.disabled");
    if (isEnabled() && drawing_->has(id_ + ".fill")) {
        // The groove as a whole, seen up to the value: a fill drawn for one value is drawn out.
        QRectF whole = drawing_->bounds(id_ + ".fill");
        whole.setRight(std::max(whole.right(), drawing_->bounds(id_ + ".track").right()));
        painter.save();
        painter.setClipRect(QRectF(0, 0, x, height()));
        drawing_->paint(painter, id_ + ".fill", whole.translated(-origin_));
        painter.restore();
    }
    const QString thumb = thumbId();
    QRectF knob = drawing_->bounds(thumb).translated(-origin_);
    knob.moveCenter(QPointF(x, knob.center().y()));
    drawing_->paint(painter, thumb, knob);
}

SkinSliderAccessible::SkinSliderAccessible(SkinSlider* slider)
    : QAccessibleWidget(slider, QAccessible::Slider) {}

void SkinSliderAccessible::install() {
    QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
        auto* slider = qobject_cast<SkinSlider*>(object);
        return slider ? new SkinSliderAccessible(slider) : nullptr;
    });
}

SkinSlider& SkinSliderAccessible::slider() const {
    return *static_cast<SkinSlider*>(object());
}

void* SkinSliderAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QString SkinSliderAccessible::text(QAccessible::Text text) const {
    const double value = currentValue().toDouble();
    const bool isTime = slider().options().seconds != nullptr;
    if (text == QAccessible::Value)
        return isTime ? timeText(value) : QString::number(qRound(value));
    if (text == QAccessible::Description && isTime)
        return timeText(value) + QStringLiteral(" / ") + timeText(whole());
    return QAccessibleWidget::text(text);
}

QVariant SkinSliderAccessible::currentValue() const {
    return slider().value() / 100.0 * whole();
}

double SkinSliderAccessible::whole() const {
    const SliderOptions& options = slider().options();
    return options.seconds ? std::max(options.seconds(), 0.0) : 100.0;
}

void SkinSliderAccessible::setCurrentValue(const QVariant& value) {
    if (whole() > 0)
        slider().changeByUser(value.toDouble() / whole() * 100.0);
}

} // namespace velmorant

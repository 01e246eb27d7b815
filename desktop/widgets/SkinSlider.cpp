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
    : QWidget(parent), m_drawing(std::move(drawing)), m_id(element.id) {
    SkinSliderAccessible::install();
    const QRect area = element.bounds.toAlignedRect();
    setGeometry(area);
    m_origin = area.topLeft();
    m_range = m_drawing->bounds(m_id + (m_drawing->has(m_id + ".range") ? ".range" : ".track"));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setMouseTracking(true);
}

void SkinSlider::setValue(double value) {
    if (value == m_value)
        return;
    m_value = value;
    update();
    const double shown = m_options.seconds ? value / 100.0 * m_options.seconds() : value;
    QAccessibleValueChangeEvent event(this, shown);
    QAccessible::updateAccessibility(&event);
}

void SkinSlider::setOn(bool on) {
    m_on = on;
    update();
}

double SkinSlider::positionOf(double value) const {
    return m_range.left() - m_origin.x() + value / 100.0 * m_range.width();
}

double SkinSlider::valueAt(double x) const {
    const double inRange = x + m_origin.x() - m_range.left();
    return std::clamp(inRange / m_range.width() * 100.0, 0.0, 100.0);
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
    if (!m_dragged)
        return;
    if (event->buttons() & Qt::LeftButton)
        dragTo(event->position().x());
    else
        endDrag(*m_dragged); // it was let go over a box that came up meanwhile
}

void SkinSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_dragged)
        return event->ignore();
    endDrag(valueAt(event->position().x()));
}

void SkinSlider::endDrag(double value) {
    m_dragged.reset();
    update();
    if (m_options.drag == SliderDrag::AtRelease)
        changeByUser(value);
}

void SkinSlider::dragTo(double x) {
    m_dragged = valueAt(x);
    update();
    if (m_options.drag == SliderDrag::Live)
        changeByUser(*m_dragged);
    else
        emit previewed(*m_dragged);
}

void SkinSlider::wheelEvent(QWheelEvent* event) {
    const double notches = event->angleDelta().y() / 120.0;
    if (notches == 0)
        return event->ignore();
    changeByUser(m_value + notches * m_options.step);
}

void SkinSlider::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Right:
    case Qt::Key_Up:
        return changeByUser(m_value + m_options.step);
    case Qt::Key_Left:
    case Qt::Key_Down:
        return changeByUser(m_value - m_options.step);
    case Qt::Key_PageUp:
        return changeByUser(m_value + m_options.page);
    case Qt::Key_PageDown:
        return changeByUser(m_value - m_options.page);
    case Qt::Key_Home:
        return changeByUser(0);
    case Qt::Key_End:
        return changeByUser(100);
    default:
        event->ignore();
    }
}

QString SkinSlider::thumbId() const {
    const QString thumb = m_id + ".thumb";
    const auto first = [&](std::initializer_list<const char*> endings) {
        for (const char* ending : endings)
            if (m_drawing->has(thumb + ending))
                return thumb + ending;
        return m_drawing->has(thumb + ".normal") ? thumb + ".normal" : thumb;
    };
    if (!isEnabled())
        return first({".disabled"});
    if (m_dragged)
        return first({".pressed"});
    if (m_on)
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
        m_drawing->paint(painter, id, m_drawing->bounds(id).translated(-m_origin));
    };
    const double x = positionOf(shownValue());
    if (!isEnabled())
        paintPart(m_id + ".track.disabled");
    if (isEnabled() && m_drawing->has(m_id + ".fill")) {
        // The groove as a whole, seen up to the value: a fill drawn for one value is drawn out.
        QRectF whole = m_drawing->bounds(m_id + ".fill");
        whole.setRight(std::max(whole.right(), m_drawing->bounds(m_id + ".track").right()));
        painter.save();
        painter.setClipRect(QRectF(0, 0, x, height()));
        m_drawing->paint(painter, m_id + ".fill", whole.translated(-m_origin));
        painter.restore();
    }
    const QString thumb = thumbId();
    QRectF knob = m_drawing->bounds(thumb).translated(-m_origin);
    knob.moveCenter(QPointF(x, knob.center().y()));
    m_drawing->paint(painter, thumb, knob);
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

#include "desktop/widgets/SkinButton.h"

#include "desktop/widgets/Theme.h"
#include <QKeyEvent>
#include <QPainter>
#include <utility>

namespace velmorant {

SkinButton::SkinButton(std::shared_ptr<SkinDrawing> drawing, const SkinElement& element,
                       SkinOn meaning, QWidget* parent)
    : QAbstractButton(parent), m_drawing(std::move(drawing)), m_id(element.id) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCheckable(meaning == SkinOn::Chosen && m_drawing->has(m_id + ".on"));
    setGeometry(element.bounds.toAlignedRect());
    // Assistive technology toggles a checkable button instead of clicking it.
    connect(this, &QAbstractButton::toggled, this, [this](bool checked) {
        if (m_switching)
            return;
        setOn(!checked);
        click();
    });
}

void SkinButton::setOn(bool on) {
    m_on = on;
    update();
    if (!isCheckable())
        return;
    m_switching = true;
    setChecked(on);
    m_switching = false;
}

QString SkinButton::stateId() const {
    const auto first = [this](std::initializer_list<const char*> endings) {
        for (const char* ending : endings)
            if (m_drawing->has(m_id + ending))
                return m_id + ending;
        return m_drawing->has(m_id + ".normal") ? m_id + ".normal" : m_id;
    };
    if (!isEnabled())
        return first({".disabled"});
    if (isDown())
        return first({".pressed"});
    if (m_on && m_drawing->has(m_id + ".on"))
        return hasFocus() ? first({".on.focus", ".on"}) : first({".on"});
    if (hasFocus())
        return first({".focus"});
    if (underMouse())
        return first({".hover"});
    return first({".normal"});
}

void SkinButton::paintEvent(QPaintEvent*) {
    const QString state = stateId();
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_drawing->picture(state, size(), devicePixelRatioF()));
    // Where the state as drawn does not show the focus, a ring over it does.
    if (hasFocus() && !state.endsWith(QLatin1String(".focus"))) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette::text, 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 5, 5);
    }
}

// The base class would take the arrow keys to move the focus; here they belong to the window.
void SkinButton::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat())
            click();
        return;
    case Qt::Key_Space:
    case Qt::Key_Select:
        QAbstractButton::keyPressEvent(event);
        return;
    default:
        event->ignore();
    }
}

void SkinButton::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Select)
        QAbstractButton::keyReleaseEvent(event);
    else
        event->ignore();
}

} // namespace velmorant

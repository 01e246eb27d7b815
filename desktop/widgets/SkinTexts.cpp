#include "desktop/widgets/SkinTexts.h"

#include "desktop/system/shownText.h"
#include <QAccessibleWidget>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace velmorant {
namespace {

/// The text cut in its middle until it fits when it wraps: a notice begins with a file's name and
/// ends with the reason, and both have to stay.
QString cutToFit(const QString& text, const QFontMetrics& metrics, const QSize& size, int flags) {
    const QRect room(QPoint(0, 0), size);
    QString shown = text;
    for (int width = size.width() * (size.height() / metrics.lineSpacing());
         width > 0 && !room.contains(metrics.boundingRect(room, flags, shown));
         width -= metrics.averageCharWidth())
        shown = metrics.elidedText(text, Qt::ElideMiddle, width);
    return shown;
}

/// A number that is read and not set, as on a dial; its digits are no things of their own.
class SkinDigitsAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    explicit SkinDigitsAccessible(SkinDigits& digits)
        : QAccessibleWidget(&digits, QAccessible::Dial), m_digits(digits) {}

    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        return state;
    }
    QString text(QAccessible::Text text) const override {
        return text == QAccessible::Value ? QString::number(m_digits.number())
                                          : QAccessibleWidget::text(text);
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QVariant currentValue() const override { return m_digits.number(); }
    void setCurrentValue(const QVariant&) override {}
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return std::pow(10, m_digits.children().size()) - 1; }
    QVariant minimumStepSize() const override { return 1; }

  private:
    SkinDigits& m_digits;
};

QAccessibleInterface* digitsInterface(const QString&, QObject* object) {
    auto* digits = qobject_cast<SkinDigits*>(object);
    return digits ? new SkinDigitsAccessible(*digits) : nullptr;
}

} // namespace

SkinLabel::SkinLabel(const SkinElement& element, QWidget* parent) : QLabel(parent) {
    setGeometry(element.bounds.toAlignedRect());
    QFont ownFont = font();
    ownFont.setPixelSize(element.text.pixels);
    ownFont.setBold(element.text.bold);
    setFont(ownFont);
    QPalette colours = QLabel::palette();
    colours.setColor(QPalette::WindowText, element.text.colour);
    setPalette(colours);
    setTextFormat(Qt::PlainText);
    setWordWrap(height() > element.text.pixels * 3);
    if (wordWrap()) {
        setMargin(8);
        setAlignment(element.text.alignment | Qt::AlignTop);
    } else {
        setAlignment(element.text.alignment | Qt::AlignVCenter);
    }
}

void SkinLabel::paintEvent(QPaintEvent* event) {
    if (wordWrap())
        return QLabel::paintEvent(event);
    const bool severalLines = height() >= 2 * fontMetrics().lineSpacing();
    const int flags = static_cast<int>(alignment()) | (severalLines ? Qt::TextWrapAnywhere : 0);
    const QString shown = severalLines ? cutToFit(text(), fontMetrics(), size(), flags)
                                       : fontMetrics().elidedText(text(), Qt::ElideRight, width());
    setToolTip(shown == text() ? QString() : shownToolTip(text()));
    QPainter painter(this);
    painter.setPen(QLabel::palette().color(QPalette::WindowText));
    painter.drawText(rect(), flags, shown);
}

SkinDigits::SkinDigits(const SkinDrawing& drawing, QWidget* parent) : QWidget(parent) {
    QAccessible::installFactory(digitsInterface);
    QRectF all;
    for (const SkinElement& element : drawing.elements())
        if (element.kind == SkinElementKind::Digit)
            all |= element.bounds;
    setGeometry(all.toAlignedRect());
    setAccessibleName(drawing.digitsTitle());
}

int SkinDigits::number() const {
    QList<SkinDigit*> digits;
    for (QObject* child : children())
        digits << static_cast<SkinDigit*>(child);
    std::sort(digits.begin(), digits.end(),
              [](const SkinDigit* left, const SkinDigit* right) { return left->x() < right->x(); });
    int number = 0;
    for (const SkinDigit* digit : digits)
        number = number * 10 + digit->digit();
    return number;
}

void SkinDigits::digitChanged() {
    if (std::exchange(m_telling, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_telling = false;
            QAccessibleValueChangeEvent event(this, number());
            QAccessible::updateAccessibility(&event);
        },
        Qt::QueuedConnection);
}

SkinDigit::SkinDigit(std::shared_ptr<SkinDrawing> drawing, const SkinElement& element,
                     SkinDigits& digits)
    : QWidget(&digits), m_drawing(std::move(drawing)), m_digits(digits) {
    setGeometry(element.bounds.toAlignedRect().translated(-digits.pos()));
}

void SkinDigit::setDigit(int digit) {
    if (std::exchange(m_digit, digit) == digit)
        return;
    update();
    m_digits.digitChanged();
}

void SkinDigit::paintEvent(QPaintEvent*) {
    // The strip ten cells wide, moved so that the cell of the digit lies in this widget.
    QPainter painter(this);
    const QSize strip(width() * 10, height());
    painter.drawPixmap(-m_digit * width(), 0,
                       m_drawing->picture(QStringLiteral("datum"), strip, devicePixelRatioF()));
}

} // namespace velmorant

#include "desktop/widgets/SkinTexts.h"

#include "desktop/system/shownText.h"
#include <QPainter>
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

SkinDigit::SkinDigit(std::shared_ptr<SkinDrawing> drawing, const SkinElement& element,
                     QWidget* parent)
    : QLabel(QStringLiteral("0"), parent), drawing_(std::move(drawing)) {
    setGeometry(element.bounds.toAlignedRect());
}

void SkinDigit::setDigit(int digit) {
    digit_ = digit;
    setText(QString::number(digit));
}

void SkinDigit::paintEvent(QPaintEvent*) {
    // The strip ten cells wide, moved so that the cell of the digit lies in this widget.
    QPainter painter(this);
    const QSize strip(width() * 10, height());
    painter.drawPixmap(-digit_ * width(), 0,
                       drawing_->picture(QStringLiteral("datum"), strip, devicePixelRatioF()));
}

} // namespace velmorant

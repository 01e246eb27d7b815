#include "desktop/system/QtMessageBox.h"

#include "desktop/system/shownText.h"
#include <QApplication>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <utility>

namespace velmorant {
namespace {

struct Sign {
    QColor ground;
    QString text;
};

Sign signOf(MessageStyle style) {
    switch (style) {
    case MessageStyle::Stop:
        return {QColor(0xB3, 0x26, 0x1E), QStringLiteral("!")};
    case MessageStyle::Question:
        return {QColor(0x11, 0x32, 0x3A), QStringLiteral("?")};
    default:
        return {QColor(0x11, 0x32, 0x3A), QStringLiteral("i")};
    }
}

/// Drawn here: the pictures of icon themes differ from desktop to desktop, and some have none.
QPixmap pictureOf(MessageStyle style, double devicePixelRatio) {
    constexpr int side = 44;
    const Sign sign = signOf(style);
    QPixmap picture(QSize(side, side) * devicePixelRatio);
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(sign.ground);
    painter.drawEllipse(QRectF(1, 1, side - 2, side - 2));
    QFont font = painter.font();
    font.setPixelSize(26);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(0, 0, side, side), Qt::AlignCenter, sign.text);
    return picture;
}

bool asksYesOrNo(MessageStyle style) {
    return style == MessageStyle::Question || style == MessageStyle::InformationChoice;
}

/// The window over which the box appears. A desktop without a window manager names no active one;
/// the box then belongs to the largest window that is shown.
QWidget* windowBelow() {
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    if (QWidget* active = QApplication::activeWindow())
        return active;
    QWidget* largest = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->isWindow() && window->windowType() != Qt::Popup &&
            (largest == nullptr || window->width() > largest->width()))
            largest = window;
    return largest;
}

} // namespace

QtMessageBox::QtMessageBox(HandlerGate& gate, ButtonText buttonText)
    : m_gate(gate), m_buttonText(std::move(buttonText)) {}

MessageAnswer QtMessageBox::show(const std::string& text, const std::string& title,
                                 MessageStyle style) {
    QMessageBox box(windowBelow());
    box.setIconPixmap(pictureOf(style, box.devicePixelRatioF()));
    box.setContentsMargins(16, 16, 16, 12);
    box.setWindowTitle(QString::fromStdString(title));
    box.setText(shownText(text));
    // A text is shown as it is: a path may look like markup.
    box.setTextFormat(Qt::PlainText);
    const auto add = [&](MessageAnswer answer, QMessageBox::ButtonRole role) {
        return box.addButton(QString::fromStdString(m_buttonText(answer)), role);
    };
    const QPushButton* yes = nullptr;
    if (asksYesOrNo(style)) {
        QPushButton* first = add(MessageAnswer::Yes, QMessageBox::YesRole);
        QPushButton* second = add(MessageAnswer::No, QMessageBox::NoRole);
        box.setDefaultButton(first);
        box.setEscapeButton(second);
        yes = first;
    } else {
        QPushButton* only = add(MessageAnswer::Ok, QMessageBox::AcceptRole);
        box.setDefaultButton(only);
        box.setEscapeButton(only);
    }
    const HandlerGate::ModalScope modal(m_gate);
    box.exec();
    if (!asksYesOrNo(style))
        return MessageAnswer::Ok;
    return box.clickedButton() == yes ? MessageAnswer::Yes : MessageAnswer::No;
}

} // namespace velmorant

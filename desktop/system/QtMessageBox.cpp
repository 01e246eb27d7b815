#include "desktop/system/QtMessageBox.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

namespace velmorant {
namespace {

QMessageBox::Icon iconOf(MessageStyle style) {
    switch (style) {
    case MessageStyle::Stop:
        return QMessageBox::Critical;
    case MessageStyle::Question:
        return QMessageBox::Question;
    default:
        return QMessageBox::Information;
    }
}

bool asksYesOrNo(MessageStyle style) {
    return style == MessageStyle::Question || style == MessageStyle::InformationChoice;
}

} // namespace

QtMessageBox::QtMessageBox(HandlerGate& gate, ButtonText buttonText)
    : gate_(gate), buttonText_(std::move(buttonText)) {}

MessageAnswer QtMessageBox::show(const std::string& text, const std::string& title,
                                 MessageStyle style) {
    QMessageBox box(QApplication::activeWindow());
    box.setIcon(iconOf(style));
    box.setWindowTitle(QString::fromStdString(title));
    box.setText(QString::fromStdString(text));
    // A text is shown as it is: a path may look like markup.
    box.setTextFormat(Qt::PlainText);
    const auto add = [&](MessageAnswer answer, QMessageBox::ButtonRole role) {
        return box.addButton(QString::fromStdString(buttonText_(answer)), role);
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
    const HandlerGate::ModalScope modal(gate_);
    box.exec();
    if (!asksYesOrNo(style))
        return MessageAnswer::Ok;
    return box.clickedButton() == yes ? MessageAnswer::Yes : MessageAnswer::No;
}

} // namespace velmorant

#include "desktop/widgets/Theme.h"

#include <QApplication>
#include <QLabel>
#include <QPalette>
#include <QProxyStyle>
#include <QToolTip>

namespace velmorant {
namespace {

/// The base style with plain buttons, because the pictures of the desktop's icon themes do not fit
/// the dark ground, and with plain labels, those of the toolkit's own boxes included: the name of a
/// file may look like markup.
class PlainStyle : public QProxyStyle {
  public:
    PlainStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    using QProxyStyle::polish;
    void polish(QWidget* widget) override {
        QProxyStyle::polish(widget);
        // Tool tips are labels too; the page's come as markup in which names are escaped.
        auto* label = qobject_cast<QLabel*>(widget);
        if (label != nullptr && !label->inherits("QTipLabel"))
            label->setTextFormat(Qt::PlainText);
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, result);
    }
};

QPalette darkPalette() {
    QPalette colours;
    colours.setColor(QPalette::Window, palette::card);
    colours.setColor(QPalette::WindowText, palette::text);
    colours.setColor(QPalette::Base, palette::well);
    colours.setColor(QPalette::AlternateBase, palette::row);
    colours.setColor(QPalette::Text, palette::text);
    colours.setColor(QPalette::PlaceholderText, palette::secondText);
    colours.setColor(QPalette::Button, palette::control);
    colours.setColor(QPalette::ButtonText, palette::text);
    colours.setColor(QPalette::BrightText, Qt::white);
    colours.setColor(QPalette::ToolTipBase, palette::control);
    colours.setColor(QPalette::ToolTipText, palette::text);
    colours.setColor(QPalette::Highlight, palette::accent);
    colours.setColor(QPalette::HighlightedText, palette::textOnAccent);
    colours.setColor(QPalette::Link, palette::accent);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        colours.setColor(QPalette::Disabled, role, palette::disabledText);
    return colours;
}

const char* const styleSheet = R"(
QPushButton { background: #1C2530; color: #EAF0F6; border: 1px solid #75869A; border-radius: 6px;
              min-height: 30px; min-width: 80px; padding: 0 14px; }
QPushButton:hover { background: #2A3746; }
QPushButton:pressed { background: #0D131A; color: #45C9D6; }
QPushButton:default { background: #45C9D6; color: #04191E; border-color: #45C9D6; }
QPushButton:default:hover { background: #74DEE8; }
QPushButton:default:pressed { background: #2C9FAB; }
QPushButton:focus { border: 2px solid #EAF0F6; }
QPushButton:disabled { background: #121821; color: #788591; border-color: #26313D; }
QLineEdit { background: #080B10; border: 1px solid #75869A; border-radius: 4px; padding: 4px;
            selection-background-color: #45C9D6; selection-color: #04191E; }
QLineEdit:focus { border-color: #EAF0F6; }
QProgressBar { background: #080B10; border: 1px solid #75869A; border-radius: 6px; color: #EAF0F6;
               min-height: 20px; text-align: center; }
QProgressBar::chunk { background: #2A6F78; border-radius: 5px; }
QToolTip { background: #1C2530; color: #EAF0F6; border: 1px solid #75869A; padding: 3px; }
QMenu { background: #121821; border: 1px solid #75869A; padding: 4px; }
QMenu::item { padding: 6px 24px; }
QMenu::item:selected { background: #45C9D6; color: #04191E; }
QMenu::item:disabled { color: #788591; }
QScrollBar:vertical { background: transparent; width: 10px; margin: 0; }
QScrollBar:horizontal { background: transparent; height: 10px; margin: 0; }
QScrollBar::handle { background: #5C6C7E; border-radius: 4px; margin: 1px; }
QScrollBar::handle:vertical { min-height: 28px; }
QScrollBar::handle:horizontal { min-width: 28px; }
QScrollBar::handle:hover { background: #75869A; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
)";

} // namespace

void applyTheme(QApplication& application) {
    QApplication::setStyle(new PlainStyle);
    QApplication::setPalette(darkPalette());
    QToolTip::setPalette(darkPalette());
    application.setStyleSheet(QString::fromLatin1(styleSheet));
}

} // namespace velmorant

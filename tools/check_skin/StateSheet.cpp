#include "tools/check_skin/StateSheet.h"

#include <QPainter>

#include <algorithm>
#include <array>

namespace velmorant {
namespace {

constexpr int gap = 16;
constexpr int captionHeight = 24;
constexpr int nameWidth = 150;
constexpr int leastColumn = 80;
constexpr std::array columns{"normal", "hover", "pressed", "focus", "on", "on.focus", "disabled"};

QStringList statefulOf(const DissectedSkin& drawing, SkinKind kind) {
    QStringList names;
    for (const ElementRule& rule : rulesOf(kind).elements) {
        if (statesOf(rule.type).isEmpty())
            continue;
        const QString name = rule.type == ElementType::Slider ? rule.name + ".thumb" : rule.name;
        if (drawing.has(name))
            names << name;
    }
    return names;
}

} // namespace

QImage stateSheet(const DissectedSkin& drawing, SkinKind kind) {
    const QStringList names = statefulOf(drawing, kind);
    int column = leastColumn;
    int height = gap + captionHeight;
    for (const QString& name : names) {
        const QSize size = drawing.bounds(name).size().toSize();
        column = std::max(column, size.width());
        height += size.height() + gap;
    }
    column += gap;
    QImage sheet(nameWidth + column * static_cast<int>(columns.size()) + gap, height,
                 QImage::Format_ARGB32_Premultiplied);
    sheet.fill(QColor(0x12, 0x18, 0x21));
    QPainter painter(&sheet);
    painter.setPen(QColor(0xA8, 0xB5, 0xC3));
    for (int i = 0; i < static_cast<int>(columns.size()); ++i)
        painter.drawText(nameWidth + column * i, gap, columns[i]);
    int y = gap + captionHeight;
    for (const QString& name : names) {
        const int rowHeight = drawing.bounds(name).size().toSize().height();
        painter.drawText(gap, y + rowHeight / 2 + 4, name);
        for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
            const QString state = name + "." + QString(columns[i]);
            if (drawing.has(state))
                painter.drawImage(nameWidth + column * i, y,
                                  drawing.alone(state, drawing.bounds(state), 1));
        }
        y += rowHeight + gap;
    }
    return sheet;
}

} // namespace velmorant

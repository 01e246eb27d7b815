#include "desktop/widgets/RecordingListDelegate.h"

#include "desktop/widgets/RecordingListModel.h"
#include "desktop/widgets/Theme.h"
#include <QPainter>
#include <algorithm>

namespace velmorant {
namespace {

constexpr int pictureSize = 16;

void paintPicture(QPainter& painter, const QRect& cell, const QPixmap& picture) {
    QRect place(0, 0, pictureSize, pictureSize);
    place.moveCenter(cell.center());
    if (!picture.isNull())
        painter.drawPixmap(place, picture);
}

} // namespace

int RecordingListDelegate::rowHeight(const QFont& font) {
    return std::max(24, QFontMetrics(font).height() + 4);
}

QSize RecordingListDelegate::sizeHint(const QStyleOptionViewItem& option,
                                      const QModelIndex&) const {
    return {0, rowHeight(option.font)};
}

void RecordingListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
    painter->save();
    paintGround(*painter, option, index);
    switch (index.column()) {
    case RecordingListModel::PlayingSign:
        if (index.data(RecordingListModel::PlayingRole).toBool())
            paintPicture(*painter, option.rect.adjusted(2, 0, 0, 0), m_pictures.playing);
        break;
    case RecordingListModel::Mark:
        paintPicture(*painter, option.rect,
                     index.data(RecordingListModel::MarkedRole).toBool() ? m_pictures.marked
                                                                         : m_pictures.notMarked);
        break;
    default:
        paintText(*painter, option, index);
    }
    painter->restore();
}

void RecordingListDelegate::paintGround(QPainter& painter, const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const {
    const bool playing = index.data(RecordingListModel::PlayingRole).toBool();
    const bool selected = option.state & QStyle::State_Selected;
    const QRect& cell = option.rect;
    if (selected || playing)
        painter.fillRect(cell, palette::row);
    if (playing && index.column() == RecordingListModel::PlayingSign)
        painter.fillRect(QRect(cell.topLeft(), QSize(3, cell.height())), QColor(255, 255, 0));
    if (!selected)
        return;
    // The chosen row has a frame: two pixels in the text's colour while the list has the keys.
    const bool keys = option.widget && option.widget->hasFocus();
    const int width = keys ? 2 : 1;
    const QColor colour = keys ? palette::text : palette::outline;
    painter.fillRect(QRect(cell.left(), cell.top(), cell.width(), width), colour);
    painter.fillRect(QRect(cell.left(), cell.bottom() - width + 1, cell.width(), width), colour);
    if (index.column() == RecordingListModel::PlayingSign && !playing)
        painter.fillRect(QRect(cell.topLeft(), QSize(width, cell.height())), colour);
    if (index.column() == RecordingListModel::Text)
        painter.fillRect(QRect(cell.right() - width + 1, cell.top(), width, cell.height()), colour);
}

void RecordingListDelegate::paintText(QPainter& painter, const QStyleOptionViewItem& option,
                                      const QModelIndex& index) const {
    QFont font = option.font;
    font.setBold(index.data(RecordingListModel::PlayingRole).toBool());
    painter.setFont(font);
    painter.setPen(index.data(Qt::ForegroundRole).value<QColor>());
    QString text = index.data(Qt::DisplayRole).toString();
    const QString kind = index.data(RecordingListModel::KindRole).toString();
    constexpr int padding = 6;
    QRect cell = option.rect.adjusted(padding, 0, -4, 0);
    if (!kind.isEmpty() && text.endsWith(kind)) {
        text.chop(kind.size());
        const QRect place = cell.adjusted(m_kindOffset - padding, 0, 0, 0);
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, kind.trimmed());
        cell.setRight(std::min(cell.right(), place.left() - 4));
    }
    text = painter.fontMetrics().elidedText(text.trimmed(), Qt::ElideRight, cell.width());
    painter.drawText(cell, Qt::AlignLeft | Qt::AlignVCenter, text);
}

} // namespace velmorant

#pragma once

#include <QPixmap>
#include <QStyledItemDelegate>

namespace velmorant {

/// The pictures of a row, 16 x 16.
struct RowPictures {
    QPixmap notMarked;
    QPixmap marked;
    QPixmap playing;
};

/// Paints a row: sign of the playing one, mark, date and time, and the kind at a place that does
/// not move between regular and bold rows.
class RecordingListDelegate : public QStyledItemDelegate {
    Q_OBJECT
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void setPictures(RowPictures pictures) { m_pictures = std::move(pictures); }
    /// From the left edge of the text column, pixels.
    void setKindOffset(int pixels) { m_kindOffset = pixels; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// Of a row in that font, pixels.
    static int rowHeight(const QFont& font);

  private:
    void paintGround(QPainter& painter, const QStyleOptionViewItem& option,
                     const QModelIndex& index) const;
    void paintText(QPainter& painter, const QStyleOptionViewItem& option,
                   const QModelIndex& index) const;

    RowPictures m_pictures;
    int m_kindOffset = 190;
};

} // namespace velmorant

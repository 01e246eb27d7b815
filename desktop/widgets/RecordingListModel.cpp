#include "desktop/widgets/RecordingListModel.h"

#include "desktop/system/shownText.h"
#include <QColor>
#include <QFont>
#include <algorithm>
#include <utility>

namespace velmorant {

RecordingListModel::RecordingListModel(QObject* parent) : QAbstractTableModel(parent) {}

void RecordingListModel::setSource(const RowSource* source) {
    beginResetModel();
    source_ = source;
    count_ = source ? source->rowCount() : 0;
    endResetModel();
}

void RecordingListModel::setWords(RowWords words) {
    words_ = std::move(words);
}

void RecordingListModel::rowsAdded(int first, int count) {
    if (!source_ || count <= 0)
        return;
    const int row = std::clamp(first - 1, 0, count_);
    beginInsertRows({}, row, row + count - 1);
    count_ += count;
    endInsertRows();
}

void RecordingListModel::rowsRemoved(int first, int count) {
    const int row = first - 1;
    const int removed = std::min(count, count_ - row);
    if (!source_ || row < 0 || removed <= 0)
        return;
    beginRemoveRows({}, row, row + removed - 1);
    count_ -= removed;
    endRemoveRows();
}

void RecordingListModel::rowsChanged(int first, int count) {
    const int last = std::min(first - 1 + count, count_) - 1;
    if (first >= 1 && last >= first - 1)
        emit dataChanged(index(first - 1, 0), index(last, ColumnCount - 1));
}

int RecordingListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count_;
}

int RecordingListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

Qt::ItemFlags RecordingListModel::flags(const QModelIndex& index) const {
    return QAbstractTableModel::flags(index) | Qt::ItemIsUserCheckable;
}

QVariant RecordingListModel::data(const QModelIndex& index, int role) const {
    const int row = index.row() + 1;
    // Between a change of the source and its report the two may differ.
    if (!source_ || !index.isValid() || row > source_->rowCount())
        return {};
    const bool playing = source_->weight(row) == RowSource::Weight::Bold;
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == Text ? QString::fromStdString(source_->displayText(row))
                                      : QVariant();
    case Qt::ToolTipRole:
        return shownToolTip(source_->toolTip(row));
    case Qt::ForegroundRole: {
        const std::int32_t colour = source_->colour(row);
        return QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
    }
    case Qt::FontRole: {
        QFont font;
        font.setBold(playing);
        return font;
    }
    case Qt::CheckStateRole:
        return source_->mark(row) == RowSource::Mark::Marked ? Qt::Checked : Qt::Unchecked;
    case Qt::AccessibleTextRole:
        return accessibleText(row, index.column());
    case KindRole:
        return QString::fromStdString(source_->kindLabel(row));
    case MarkedRole:
        return source_->mark(row) == RowSource::Mark::Marked;
    case PlayingRole:
        return playing;
    default:
        return {};
    }
}

QVariant RecordingListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal ||
        (role != Qt::DisplayRole && role != Qt::AccessibleTextRole))
        return {};
    return QString::fromStdString(section == PlayingSign ? words_.playing
                                  : section == Mark      ? words_.marked
                                                         : words_.recording);
}

QVariant RecordingListModel::accessibleText(int row, int column) const {
    const bool marked = source_->mark(row) == RowSource::Mark::Marked;
    const bool playing = source_->weight(row) == RowSource::Weight::Bold;
    const QString mark = QString::fromStdString(marked ? words_.marked : words_.notMarked);
    const QString sign = QString::fromStdString(playing ? words_.playing : words_.notPlaying);
    switch (column) {
    case PlayingSign:
        return sign;
    case Mark:
        return mark;
    default: {
        // The cell with the focus is the text's: it says all of the row.
        QStringList words{QString::fromStdString(source_->displayText(row)).simplified()};
        if (!mark.isEmpty())
            words << mark;
        if (playing && !sign.isEmpty())
            words << sign;
        return words.join(QStringLiteral(", "));
    }
    }
}

} // namespace velmorant

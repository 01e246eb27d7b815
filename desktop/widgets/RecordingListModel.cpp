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
    m_source = source;
    m_count = source ? source->rowCount() : 0;
    endResetModel();
}

void RecordingListModel::setWords(RowWords words) {
    m_words = std::move(words);
}

void RecordingListModel::rowsAdded(int first, int count) {
    if (!m_source || count <= 0)
        return;
    const int row = std::clamp(first - 1, 0, m_count);
    beginInsertRows({}, row, row + count - 1);
    m_count += count;
    endInsertRows();
}

void RecordingListModel::rowsRemoved(int first, int count) {
    const int row = first - 1;
    const int removed = std::min(count, m_count - row);
    if (!m_source || row < 0 || removed <= 0)
        return;
    beginRemoveRows({}, row, row + removed - 1);
    m_count -= removed;
    endRemoveRows();
}

void RecordingListModel::rowsChanged(int first, int count) {
    const int last = std::min(first - 1 + count, m_count) - 1;
    if (first >= 1 && last >= first - 1)
        emit dataChanged(index(first - 1, 0), index(last, ColumnCount - 1));
}

int RecordingListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_count;
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
    if (!m_source || !index.isValid() || row > m_source->rowCount())
        return {};
    const bool playing = m_source->weight(row) == RowSource::Weight::Bold;
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == Text ? QString::fromStdString(m_source->displayText(row))
                                      : QVariant();
    case Qt::ToolTipRole:
        return shownToolTip(m_source->toolTip(row));
    case Qt::ForegroundRole: {
        const std::int32_t colour = m_source->colour(row);
        return QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
    }
    case Qt::FontRole: {
        QFont font;
        font.setBold(playing);
        return font;
    }
    case Qt::CheckStateRole:
        return m_source->mark(row) == RowSource::Mark::Marked ? Qt::Checked : Qt::Unchecked;
    case Qt::AccessibleTextRole:
        return accessibleText(row, index.column());
    case KindRole:
        return QString::fromStdString(m_source->kindLabel(row));
    case MarkedRole:
        return m_source->mark(row) == RowSource::Mark::Marked;
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
    return QString::fromStdString(section == PlayingSign ? m_words.playing
                                  : section == Mark      ? m_words.marked
                                                         : m_words.recording);
}

QVariant RecordingListModel::accessibleText(int row, int column) const {
    const bool marked = m_source->mark(row) == RowSource::Mark::Marked;
    const bool playing = m_source->weight(row) == RowSource::Weight::Bold;
    const QString mark = QString::fromStdString(marked ? m_words.marked : m_words.notMarked);
    const QString sign = QString::fromStdString(playing ? m_words.playing : m_words.notPlaying);
    switch (column) {
    case PlayingSign:
        return sign;
    case Mark:
        return mark;
    default: {
        // The cell with the focus is the text's: it says all of the row.
        QStringList words{QString::fromStdString(m_source->displayText(row)).simplified()};
        if (!mark.isEmpty())
            words << mark;
        if (playing && !sign.isEmpty())
            words << sign;
        return words.join(QStringLiteral(", "));
    }
    }
}

} // namespace velmorant

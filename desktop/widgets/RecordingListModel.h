#pragma once

#include "desktop/widgets/RowSource.h"
#include <QAbstractTableModel>

namespace velmorant {

/// What screen readers say about a row beside its text, and about its columns.
struct RowWords {
    std::string marked;
    std::string notMarked;
    std::string playing;
    std::string recording;
    std::string notPlaying;
};

/// Shows a RowSource to the view without a copy of its texts. The source changes first and the
/// model is told afterwards.
class RecordingListModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    /// CheckStateRole is the mark, for screen readers alone: the rows are switched by the program.
    enum Column { PlayingSign, Mark, Text, ColumnCount };
    enum Role { KindRole = Qt::UserRole, MarkedRole, PlayingRole };

    explicit RecordingListModel(QObject* parent = nullptr);
    /// Not owned; null: no rows.
    void setSource(const RowSource* source);
    void setWords(RowWords words);

    // 1-based, as the source counts.
    void rowsAdded(int first, int count);
    void rowsRemoved(int first, int count);
    void rowsChanged(int first, int count);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    QVariant accessibleText(int row, int column) const;

    const RowSource* m_source = nullptr;
    int m_count = 0;
    RowWords m_words;
};

} // namespace velmorant

#pragma once

#include <QStyledItemDelegate>

namespace velmorant {

class FileKinds;

/// Shows kinds and dates of a file dialog's rows in the program's own way; the toolkit writes them
/// in the system's language, which need not be the program's. A date is year, month, day and time:
/// the same in every language, and easy to compare down a column.
class FileRowDelegate : public QStyledItemDelegate {
  public:
    /// `kinds` is not owned and must outlive the delegate.
    explicit FileRowDelegate(const FileKinds& kinds, QObject* parent = nullptr);

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

  private:
    const FileKinds& m_kinds;
};

} // namespace velmorant

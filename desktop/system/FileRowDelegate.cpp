#include "desktop/system/FileRowDelegate.h"

#include "desktop/system/FileKinds.h"

#include <QDateTime>
#include <QFileSystemModel>

namespace velmorant {

namespace {
// Of the toolkit's file model.
constexpr int kindColumn = 2;
constexpr int dateColumn = 3;
} // namespace

FileRowDelegate::FileRowDelegate(const FileKinds& kinds, QObject* parent)
    : QStyledItemDelegate(parent), m_kinds(kinds) {}

void FileRowDelegate::initStyleOption(QStyleOptionViewItem* option,
                                      const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const auto* files = qobject_cast<const QFileSystemModel*>(index.model());
    if (files == nullptr)
        return;
    if (index.column() == kindColumn)
        // What was read before the dialog had its own provider is still the toolkit's text.
        option->text = m_kinds.type(files->fileInfo(index));
    else if (index.column() == dateColumn)
        option->text = files->lastModified(index).toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

} // namespace velmorant

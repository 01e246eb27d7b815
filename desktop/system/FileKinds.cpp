#include "desktop/system/FileKinds.h"

#include <QFileInfo>

#include <utility>

namespace velmorant {

FileKinds::FileKinds(QString folder, QString file)
    : m_folder(std::move(folder)),
      m_file(std::move(file)),
      m_folderIcon(QFileIconProvider::icon(Folder)),
      m_fileIcon(QFileIconProvider::icon(File)) {}

QIcon FileKinds::icon(IconType type) const {
    return QFileIconProvider::icon(type);
}

QIcon FileKinds::icon(const QFileInfo& info) const {
    return info.isDir() ? m_folderIcon : m_fileIcon;
}

QString FileKinds::type(const QFileInfo& info) const {
    if (info.isDir())
        return m_folder;
    return QString(m_file).replace(QLatin1String("%1"), info.suffix().toUpper()).trimmed();
}

} // namespace velmorant

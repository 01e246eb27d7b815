#include "desktop/system/FileKinds.h"

#include <QFileInfo>

#include <utility>

namespace velmorant {

FileKinds::FileKinds(QString folder, QString file)
    : folder_(std::move(folder)),
      file_(std::move(file)),
      folderIcon_(QFileIconProvider::icon(Folder)),
      fileIcon_(QFileIconProvider::icon(File)) {}

QIcon FileKinds::icon(IconType type) const {
    return QFileIconProvider::icon(type);
}

QIcon FileKinds::icon(const QFileInfo& info) const {
    return info.isDir() ? folderIcon_ : fileIcon_;
}

QString FileKinds::type(const QFileInfo& info) const {
    if (info.isDir())
        return folder_;
    return QString(file_).replace(QLatin1String("%1"), info.suffix().toUpper()).trimmed();
}

} // namespace velmorant

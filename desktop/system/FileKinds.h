#pragma once

#include <QFileIconProvider>
#include <QString>

namespace velmorant {

/// What a file dialog says of the kind of a file, told from its name alone. The toolkit's own
/// provider says it in the system's language and reads the beginning of every file for it, which
/// takes long on a memory card of hundreds of recordings. Used by the dialog's threads: it does not
/// change after construction.
class FileKinds : public QFileIconProvider {
  public:
    /// "%1" of `file` stands for the extension, for example "%1 file".
    FileKinds(QString folder, QString file);

    QIcon icon(IconType type) const override;
    QIcon icon(const QFileInfo& info) const override;
    /// "Folder", or "MP4 file" for a name ending in .mp4.
    QString type(const QFileInfo& info) const override;

  private:
    QString m_folder;
    QString m_file;
    QIcon m_folderIcon;
    QIcon m_fileIcon;
};

} // namespace velmorant

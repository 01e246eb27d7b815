#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <string>

namespace velmorant {

/// A folder of a test, removed with it.
class TemporaryFolder {
  public:
    std::string path(const std::string& name = {}) const {
        return name.empty() ? m_directory.path().toStdString()
                            : m_directory.filePath(QString::fromStdString(name)).toStdString();
    }

    std::string write(const std::string& name, const QByteArray& bytes) const {
        QFile file(QString::fromStdString(path(name)));
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
        return path(name);
    }

    QByteArray read(const std::string& name) const {
        QFile file(QString::fromStdString(path(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

    QStringList names() const {
        return QDir(m_directory.path())
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }

  private:
    QTemporaryDir m_directory;
};

} // namespace velmorant

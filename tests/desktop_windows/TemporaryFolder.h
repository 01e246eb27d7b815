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
        return name.empty() ? directory_.path().toStdString()
                            : directory_.filePath(QString::fromStdString(name)).toStdString();
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
        return QDir(directory_.path())
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }

  private:
    QTemporaryDir directory_;
};

} // namespace velmorant

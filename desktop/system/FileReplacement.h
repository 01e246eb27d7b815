#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <string>

namespace velmorant {

/// A file that is written beside its name and takes the name when it is complete and on the disk.
/// Without commit() nothing of it stays. Every call throws StepError with path and reason.
class FileReplacement {
  public:
    explicit FileReplacement(const std::string& path);
    void write(const QByteArray& bytes);
    void setPermissions(QFileDevice::Permissions permissions);
    void commit();
    QIODevice& device() { return file_; }

  private:
    [[noreturn]] void fail() const;

    QSaveFile file_;
};

} // namespace velmorant

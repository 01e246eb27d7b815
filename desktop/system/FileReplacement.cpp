#include "desktop/system/FileReplacement.h"

#include "common/StepError.h"

namespace velmorant {

FileReplacement::FileReplacement(const std::string& path) : file_(QString::fromStdString(path)) {
    if (!file_.open(QIODevice::WriteOnly))
        fail();
}

void FileReplacement::write(const QByteArray& bytes) {
    if (file_.write(bytes) != bytes.size())
        fail();
}

void FileReplacement::setPermissions(QFileDevice::Permissions permissions) {
    if (!file_.setPermissions(permissions))
        fail();
}

void FileReplacement::commit() {
    if (!file_.commit())
        fail();
}

void FileReplacement::fail() const {
    throw StepError(file_.fileName().toStdString() + ": " + file_.errorString().toStdString());
}

} // namespace velmorant

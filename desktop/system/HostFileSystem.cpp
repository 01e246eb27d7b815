#include "desktop/system/HostFileSystem.h"

#include "common/FileReplacement.h"
#include "common/StepError.h"
#include <QFile>
#include <filesystem>
#include <system_error>

namespace velmorant {
namespace {

std::filesystem::path pathOf(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw StepError(path + ": " + reason);
}

void failOn(const std::error_code& error, const std::string& path) {
    if (error)
        fail(path, error.message());
}

} // namespace

bool HostFileSystem::fileExists(const std::string& path) const {
    std::error_code error;
    const auto status = std::filesystem::status(pathOf(path), error);
    return !error && std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

bool HostFileSystem::folderExists(const std::string& path) const {
    std::error_code error;
    return std::filesystem::is_directory(pathOf(path), error);
}

void HostFileSystem::createFolder(const std::string& path) {
    std::error_code error;
    const bool created = std::filesystem::create_directory(pathOf(path), error);
    failOn(error, path);
    if (!created)
        fail(path, "the folder exists already");
}

void HostFileSystem::keepPrivate(const std::string& folder) {
    if (!folderExists(folder))
        fail(folder, "no such folder");
    std::error_code error;
    std::filesystem::permissions(pathOf(folder), std::filesystem::perms::owner_all, error);
    failOn(error, folder);
}

void HostFileSystem::createEmptyFile(const std::string& path) {
    FileReplacement file(path);
    file.commit();
}

void HostFileSystem::deleteFile(const std::string& path) {
    if (folderExists(path))
        fail(path, "is a folder");
    std::error_code error;
    const bool removed = std::filesystem::remove(pathOf(path), error);
    failOn(error, path);
    if (!removed)
        fail(path, "no such file");
}

void HostFileSystem::deleteFolder(const std::string& path) {
    if (!folderExists(path))
        fail(path, "no such folder");
    std::error_code error;
    std::filesystem::remove_all(pathOf(path), error);
    failOn(error, path);
}

void HostFileSystem::copyFile(const std::string& source, const std::string& destination) {
    QFile from(QString::fromStdString(source));
    if (!from.open(QIODevice::ReadOnly))
        fail(source, from.errorString().toStdString());
    FileReplacement to(destination);
    constexpr qint64 blockSize = 1 << 20;
    while (!from.atEnd()) {
        const QByteArray block = from.read(blockSize);
        if (block.isEmpty())
            fail(source, from.errorString().toStdString());
        to.write({block.constData(), static_cast<std::size_t>(block.size())});
    }
    to.setMode(static_cast<std::uint32_t>(std::filesystem::status(pathOf(source)).permissions()));
    to.commit();
}

} // namespace velmorant

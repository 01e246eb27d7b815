#include "desktop/system/FreedesktopShellObject.h"

#include "common/FileReplacement.h"
#include "common/StepError.h"
#include "common/textRules.h"
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <utility>

namespace velmorant {
namespace {

const std::string registryKey =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders\\";

/// Escapes of every string value.
std::string stringValue(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '\\':
            escaped += "\\\\";
            break;
        case '\n':
            escaped += "\\n";
            break;
        case '\r':
            escaped += "\\r";
            break;
        case '\t':
            escaped += "\\t";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

/// One quoted argument of "Exec", before the escapes of a string value.
std::string quotedArgument(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '`' || c == '$' || c == '\\')
            quoted += '\\';
        if (c == '%')
            quoted += '%';
        quoted += c;
    }
    return quoted + "\"";
}

std::string entryText(const std::string& name, const std::string& icon, const std::string& target,
                      const std::string& folder) {
    std::string text = "[Desktop Entry]\nType=Application\nVersion=1.0\n";
    text += "Name=" + stringValue(name) + "\n";
    text += "Exec=" + stringValue(quotedArgument(target)) + "\n";
    text += "Path=" + stringValue(folder) + "\n";
    if (!icon.empty())
        text += "Icon=" + stringValue(icon) + "\n";
    return text + "Terminal=false\nCategories=AudioVideo;Video;Player;\n";
}

} // namespace

FreedesktopShellObject::FreedesktopShellObject(std::string iconName)
    : m_iconName(std::move(iconName)) {}

std::string FreedesktopShellObject::readRegistry(const std::string& valueName) const {
    const std::pair<std::string, QStandardPaths::StandardLocation> values[] = {
        {"Desktop", QStandardPaths::DesktopLocation},
        {"Programs", QStandardPaths::ApplicationsLocation},
    };
    for (const auto& [name, location] : values) {
        if (!equalsIgnoringCase(valueName, name) &&
            !equalsIgnoringCase(valueName, registryKey + name))
            continue;
        const QString folder = QStandardPaths::writableLocation(location);
        if (folder.isEmpty())
            throw StepError(valueName + ": this desktop has no such folder");
        return folder.toStdString();
    }
    throw StepError(valueName + ": no such registry value");
}

void FreedesktopShellObject::createShortcut(const std::string& path, const std::string& targetPath,
                                            const std::string& workingDirectory) {
    const QFileInfo file(QString::fromStdString(path));
    if (!QDir().mkpath(file.absolutePath()))
        throw StepError(file.absolutePath().toStdString() + ": the folder cannot be made");
    const std::string name = file.completeBaseName().toStdString();
    FileReplacement shortcut(path);
    shortcut.write(entryText(name, m_iconName, targetPath, workingDirectory));
    // Desktops start a desktop entry in the user's own folders only when it is executable.
    shortcut.setMode(0755);
    shortcut.commit();
}

} // namespace velmorant

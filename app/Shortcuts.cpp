#include "app/Shortcuts.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "ports/ensureFolder.h"

#include <cstdint>

namespace velmorant {

namespace {

constexpr const char* desktopValue = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\"
                                     "CurrentVersion\\Explorer\\Shell Folders\\Desktop";
constexpr const char* programsValue = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\"
                                      "CurrentVersion\\Explorer\\Shell Folders\\Programs";
constexpr const char* programName = "Velmorant DVR Tools";
constexpr int titleOffset = 1100;
constexpr int languageStep = 10000;

} // namespace

Shortcuts::Shortcuts(ShellObject& shell, FileSystem& files, const HostPaths& paths,
                     const Texts& texts)
    : m_shell(shell), m_files(files), m_paths(paths), m_texts(texts) {}

void Shortcuts::create(const std::string& target, const std::string& languageIndex) {
    const std::int32_t index = toInt16(languageIndex);
    const std::string title = m_texts.byId(index * languageStep + titleOffset);
    const std::string targetPath = checkFolder(target);
    if (targetPath.empty())
        throw StepError(target + ": No such file or folder");
    const std::string workingFolder = folderOf(m_paths, targetPath);
    const std::string name = title + m_paths.shortcutEnding();

    const std::string desktop = m_shell.readRegistry(desktopValue);
    m_shell.createShortcut(m_paths.join(desktop, name), targetPath, workingFolder);
    const std::string menu = m_paths.join(m_shell.readRegistry(programsValue), programName);
    ensureFolder(m_files, m_paths, menu);
    m_shell.createShortcut(m_paths.join(menu, name), targetPath, workingFolder);
    ensureFolder(m_files, m_paths, m_paths.temporaryFolder());
}

void Shortcuts::remove() {
    const std::string desktop = m_shell.readRegistry(desktopValue);
    m_files.deleteFile(m_paths.join(desktop, programName + m_paths.shortcutEnding()));
    m_files.deleteFolder(m_paths.temporaryFolder());
}

std::string Shortcuts::checkFolder(const std::string& path) const {
    std::string checked;
    for (const std::string& component : m_paths.components(path)) {
        checked = checked.empty() ? component : m_paths.join(checked, component);
        if (!m_files.folderExists(checked) && !m_files.fileExists(checked))
            return {};
    }
    return checked;
}

} // namespace velmorant

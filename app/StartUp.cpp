#include "app/StartUp.h"

#include "app/IniFile.h"
#include "app/Shortcuts.h"
#include "app/commandLine.h"
#include "common/StepError.h"
#include "common/textRules.h"
#include "common/trapErrors.h"
#include "ports/ensureFolder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmorant {

namespace {

// In English whatever the language is: the tables may be what failed.
constexpr const char* failureText = "System resource lost,please reboot or re-setup";
constexpr const char* failureTitle = "system information";

/// The default of "mainv", which stands for no language: the table has no texts for it.
constexpr const char* notChosenLanguage = "1003";

constexpr int informationTitle = 3000;
constexpr int controlBandHeight = 209; // pixels

std::int32_t timePart(const std::string& text, std::int32_t limit) {
    const bool digits = !text.empty() && std::all_of(text.begin(), text.end(), [](char letter) {
        return letter >= '0' && letter <= '9';
    });
    const std::int32_t value = digits ? toInt32(text) : limit;
    if (value >= limit)
        throw StepError("Type mismatch: \"" + text + "\" is no part of a time of day");
    return value;
}

} // namespace

double minutesOfOffset(const std::string& offset) {
    const bool west = offset.starts_with('-');
    const std::vector<std::string> parts = split(west ? offset.substr(1) : offset, ':');
    if (parts.size() != 2)
        throw StepError("Type mismatch: \"" + offset + "\" is no time of day");
    const double minutes = timePart(parts[0], 24) * 60 + timePart(parts[1], 60);
    return west ? 0.0 - minutes : minutes;
}

StartUp::StartUp(const StartUpNeeds& needs) : m_needs(needs) {}

StartUpResult StartUp::run(const std::string& commandLine) {
    try {
        if (!commandLine.empty()) {
            runInstaller(commandLine);
            return StartUpResult::Installed;
        }
        readConfiguration();
        showWindows();
    } catch (const StepError& error) {
        m_needs.messageBox.show(std::string(failureText) + error.what(), failureTitle,
                                MessageStyle::Stop);
        return StartUpResult::Failed;
    }
    if (!m_notKept.empty())
        trapErrors(m_needs.errors, [&] {
            m_needs.messageBox.show(
                m_needs.texts.addition("configuration.notKept") + '\n' + m_notKept,
                m_needs.texts.byOffset(informationTitle), MessageStyle::Information);
        });
    return StartUpResult::Running;
}

void StartUp::runInstaller(const std::string& commandLine) {
    const std::vector<std::string> arguments = splitArguments(commandLine);
    Shortcuts shortcuts(m_needs.shell, m_needs.files, m_needs.paths, m_needs.texts);
    if (arguments.size() == 2)
        shortcuts.create(arguments[0], arguments[1]);
    else if (arguments.size() > 2)
        shortcuts.remove();
}

void StartUp::readConfiguration() {
    const std::string path = m_needs.paths.globalConfigurationFile();
    m_notKept = createConfiguration(path);
    IniFile configuration(m_needs.profile);
    configuration.open(path, "config");
    const auto read = [&](const std::string& key, const std::string& defaultValue) {
        std::string value = configuration.readKey(key);
        if (!equalsIgnoringCase(value, ""))
            return ReadValue{value, Kept::Yes};
        if (configuration.writeKey(key, defaultValue) == IniFileWrite::Kept)
            return ReadValue{defaultValue, Kept::Yes};
        if (m_notKept.empty())
            m_notKept = path;
        return ReadValue{defaultValue, Kept::No};
    };
    const ReadValue language = read("mainv", notChosenLanguage);
    const ReadValue area = read("Area", "2021");
    const ReadValue unit = read("Unit", "1001");
    useLanguage(language, path);
    readTimeZone(area.text);
    m_needs.settings.setUnit(toInt32(unit.text));
}

/// A folder without rights must not keep the program from starting with what it can read: the
/// answer is the reason, empty when the file is there.
std::string StartUp::createConfiguration(const std::string& path) {
    if (m_needs.files.fileExists(path))
        return {};
    try {
        ensureFolder(m_needs.files, m_needs.paths, folderOf(m_needs.paths, path));
        m_needs.files.createEmptyFile(path);
        return {};
    } catch (const StepError& error) {
        noteError(m_needs.errors, error);
        return error.what();
    }
}

void StartUp::useLanguage(const ReadValue& language, const std::string& path) {
    if (language.text != notChosenLanguage || m_needs.languageForThisRun.empty()) {
        m_needs.settings.setLanguage(toInt32(language.text));
        // That this default has no texts would only be what follows from it.
        if (language.kept == Kept::No)
            throw StepError(m_notKept == path ? path + ": cannot be written" : m_notKept);
        return;
    }
    m_needs.settings.setLanguage(toInt32(m_needs.languageForThisRun));
    if (m_notKept.empty())
        m_notKept = path;
}

void StartUp::readTimeZone(const std::string& area) {
    m_needs.settings.timeZoneId = toInt32(area);
    const std::string zone = m_needs.texts.byOffset(m_needs.settings.timeZoneId);
    const std::vector<std::string> parts = split(zone, '|');
    if (parts.size() < 2)
        throw StepError("Subscript out of range: \"" + zone + "\" is no time zone");
    m_needs.settings.timeZoneMinutes = minutesOfOffset(parts[1]);
}

void StartUp::showWindows() {
    m_needs.windows.showSplash();
    m_needs.windows.bringSplashToForeground();
    m_needs.playerBands.setHeight("MediaControl",
                                  controlBandHeight * m_needs.screen.twipsPerPixelY());
    m_needs.playerBands.setChild("MediaControl", "frmCurve");
    m_needs.playerBands.recalculateLayout();
    m_needs.playerBands.recalculateLayout();
    m_needs.frameBands.setChild("ControlBand", "frmMediaCtrl");
    m_needs.frameBands.recalculateLayout();
    m_needs.windows.loadMainWindow();
    m_needs.windows.showMainWindow();
}

} // namespace velmorant

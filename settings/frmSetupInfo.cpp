#include "settings/frmSetupInfo.h"

#include "common/Language.h"
#include "common/SpeedUnit.h"
#include "common/textRules.h"
#include "common/trapErrors.h"
#include "settings/sizeAndCentre.h"

namespace velmorant {

namespace {

constexpr PixelSize dialogSize{800, 480};

constexpr int informationTitle = 3000;
constexpr int warningTitle = 3011;
constexpr int missingFile = 3012;
constexpr int restartQuestion = 3020;
constexpr int leastSuccess = 33; // of the shell's results

} // namespace

frmSetupInfo::frmSetupInfo(const frmSetupInfoNeeds& needs) : m_needs(needs) {}

SkinLoad frmSetupInfo::Load() {
    m_pendingLanguage = m_needs.settings.languageCode;
    m_pendingUnit = m_needs.settings.unitCode;
    m_kept = true;
    sizeAndCentre(m_needs.window, m_needs.screen, dialogSize);
    return applySkin();
}

std::string frmSetupInfo::dialogText(int offset) const {
    return m_needs.texts.byId(m_pendingLanguage % 10 * 10000 + offset);
}

SkinLoad frmSetupInfo::applySkin() {
    const std::string path =
        m_needs.paths.programFile("skin/setup/" + std::to_string(m_pendingLanguage % 10) + ".mp4");
    if (m_needs.files.fileExists(path) && m_needs.skin.load(path)) {
        showSelection();
        return SkinLoad::Loaded;
    }
    // In the dialog's own language, which may be another one than the program's.
    trapErrors(m_needs.errors, [&] {
        m_needs.messageBox.show(dialogText(missingFile), dialogText(warningTitle),
                                MessageStyle::Stop);
    });
    m_needs.window.close();
    return SkinLoad::Missing;
}

void frmSetupInfo::showSelection() {
    for (const Language& language : languages)
        m_needs.skin.setOn("lang" + std::to_string(language.code()),
                           language.code() == m_pendingLanguage);
    for (const SpeedUnit& unit : speedUnits)
        m_needs.skin.setOn("unit" + std::to_string(unit.code), unit.code == m_pendingUnit);
}

void frmSetupInfo::SkinClick(const std::string& element) {
    const std::string name = upperCase(element);
    trapErrors(m_needs.errors, [&] {
        for (const Language& language : languages) {
            if (name == "LANG" + std::to_string(language.code()))
                chooseLanguage(language.code());
        }
        for (const SpeedUnit& unit : speedUnits) {
            if (name == "UNIT" + std::to_string(unit.code))
                chooseUnit(unit.code);
        }
        if (name == "CMDCLOSE")
            applyAndClose();
    });
}

void frmSetupInfo::chooseLanguage(std::int32_t code) {
    m_pendingLanguage = code;
    applySkin();
}

void frmSetupInfo::chooseUnit(std::int32_t code) {
    m_pendingUnit = code;
    showSelection();
}

void frmSetupInfo::applyAndClose() {
    if (m_pendingLanguage != m_needs.settings.languageCode &&
        applyLanguage() == Applied::ProgramEnds)
        return;
    if (m_pendingUnit != m_needs.settings.unitCode)
        applyUnit();
    tellWhatWasNotKept();
    m_needs.window.close();
}

frmSetupInfo::Applied frmSetupInfo::applyLanguage() {
    keep("mainv", m_pendingLanguage);
    m_needs.settings.setLanguage(m_pendingLanguage);
    MessageAnswer answer = MessageAnswer::No;
    trapErrors(m_needs.errors, [&] {
        answer = m_needs.messageBox.show(m_needs.texts.byOffset(restartQuestion),
                                         m_needs.texts.byOffset(informationTitle),
                                         MessageStyle::Question);
    });
    if (answer == MessageAnswer::Yes && restart() == Applied::ProgramEnds)
        return Applied::ProgramEnds;
    return Applied::GoOn;
}

frmSetupInfo::Applied frmSetupInfo::restart() {
    // The new instance would start in the old language: the user is told before this one ends.
    tellWhatWasNotKept();
    trapErrors(m_needs.errors, [&] { m_needs.targets.saveRecordingList(); });
    const int result = m_needs.shell.execute(
        "open", m_needs.paths.executable("Velmorant DVR Tools"), "", "", ShowWindow::Normal);
    if (result < leastSuccess) {
        // Nobody is going to read the list; a later start must not find it.
        trapErrors(m_needs.errors, [&] { m_needs.targets.removeSavedList(); });
        // Ending now would take the user's list away with nothing in its place.
        trapErrors(m_needs.errors, [&] {
            m_needs.messageBox.show(m_needs.texts.addition("program.notStarted") + '\n' +
                                        m_needs.shell.lastErrorDescription(),
                                    m_needs.texts.byOffset(warningTitle), MessageStyle::Stop);
        });
        return Applied::GoOn;
    }
    m_needs.targets.endProgram();
    return Applied::ProgramEnds;
}

void frmSetupInfo::applyUnit() {
    keep("Unit", m_pendingUnit);
    m_needs.settings.setUnit(m_pendingUnit);
    trapErrors(m_needs.errors, [&] { m_needs.targets.redrawChart(); });
}

void frmSetupInfo::keep(const std::string& key, std::int32_t code) {
    if (!m_needs.targets.writeConfiguration(key, std::to_string(code)))
        m_kept = false;
}

void frmSetupInfo::tellWhatWasNotKept() {
    if (m_kept)
        return;
    m_kept = true;
    trapErrors(m_needs.errors, [&] {
        m_needs.messageBox.show(m_needs.texts.addition("configuration.notKept") + '\n' +
                                    m_needs.paths.globalConfigurationFile(),
                                m_needs.texts.byOffset(informationTitle),
                                MessageStyle::Information);
    });
}

} // namespace velmorant

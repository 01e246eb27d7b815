#include "app/frmMain.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "common/trapErrors.h"

#include <array>
#include <cstring>

namespace velmorant {

namespace {

constexpr int frameWidth = 1024; // pixels
constexpr int frameHeight = 708;

constexpr std::uint32_t messageGetMinMaxInfo = 0x24;
/// The record of that message: five points of two 32-bit numbers; the fifth is the largest size to
/// which the user may drag the window.
constexpr std::size_t minMaxInfoSize = 40;
constexpr std::size_t maxTrackSizeAt = 32;

constexpr int programTitle = 1100;
constexpr int informationTitle = 3000;
constexpr int exitQuestion = 3024;
constexpr int menuItemsBehind = 3; // the entry that is removed is this one from the end

} // namespace

frmMain::frmMain(const frmMainNeeds& needs) : m_needs(needs) {}

SkinLoad frmMain::Load() {
    const std::string skin = "skin/main/" + std::to_string(m_needs.settings.languageIndex) + ".mp4";
    const SkinLoad loaded = loadSkin(m_needs.skin, m_needs.paths.programFile(skin), m_needs.files,
                                     m_needs.texts, m_needs.messageBox);
    if (loaded == SkinLoad::Missing) {
        m_needs.window.close();
        m_needs.commands.endProgram();
        return loaded;
    }
    Unload(); // a second load must not take the frame's own procedure for the previous one
    m_saved = m_needs.native.windowProcedure();
    m_needs.native.setWindowProcedure(
        [this](const WindowMessage& message) { return windowProcedure(message); });
    const int position = m_needs.native.systemMenuItemCount() - menuItemsBehind;
    m_needs.native.deleteSystemMenuItem(position);
    m_needs.window.setCaption(m_needs.texts.byOffset(programTitle));
    return loaded;
}

void frmMain::Unload() {
    if (!m_saved)
        return;
    m_needs.native.setWindowProcedure(m_saved);
    m_saved = nullptr;
}

std::intptr_t frmMain::windowProcedure(const WindowMessage& message) {
    if (message.message == messageGetMinMaxInfo && message.record != nullptr) {
        std::array<std::byte, minMaxInfoSize> record;
        std::memcpy(record.data(), message.record, record.size());
        constexpr std::array<std::int32_t, 2> maxTrackSize = {frameWidth, frameHeight};
        std::memcpy(record.data() + maxTrackSizeAt, maxTrackSize.data(), sizeof(maxTrackSize));
        std::memcpy(message.record, record.data(), record.size());
    }
    return m_saved ? m_saved(message) : 0;
}

void frmMain::Resize() {
    // Setting the size reports a resize of its own.
    if (m_resizing)
        return;
    m_resizing = true;
    trapErrors(m_needs.errors, [&] {
        m_needs.window.move(m_needs.splash.left(), m_needs.splash.top());
        m_needs.window.resize(frameWidth * m_needs.screen.twipsPerPixelX(),
                              frameHeight * m_needs.screen.twipsPerPixelY());
    });
    m_resizing = false;
}

CloseDecision frmMain::CloseRequest() {
    try {
        const MessageAnswer answer = m_needs.messageBox.show(
            m_needs.texts.byOffset(exitQuestion), m_needs.texts.byOffset(informationTitle),
            MessageStyle::Question);
        if (answer != MessageAnswer::Yes)
            return CloseDecision::Stay;
        m_needs.waits.letEventsRun();
        return CloseDecision::Close;
    } catch (const StepError& error) {
        noteError(m_needs.errors, error);
        return CloseDecision::Stay;
    }
}

void frmMain::SkinClick(const std::string& element) {
    const std::string name = lowerCase(element);
    trapErrors(m_needs.errors, [&] {
        if (name == "open")
            m_needs.commands.openFiles();
        else if (name == "delete")
            m_needs.commands.deleteAll();
        else if (name == "setup")
            m_needs.commands.showSettings();
        else if (name == "info")
            m_needs.commands.showAbout();
    });
}

} // namespace velmorant

#include "track/TrackExportRun.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "track/TrackReason.h"

#include <algorithm>
#include <chrono>

namespace velmorant {

namespace {

constexpr int warningTitle = 3011;
/// How often the bar moves at least.
constexpr std::chrono::milliseconds look{100};

/// A file's name without its ending.
std::string stemOf(const std::string& name) {
    const std::size_t dot = name.find_last_of('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

} // namespace

void TrackExportRun::run(const std::string& recording, const std::string& format) {
    if (std::find(formats.begin(), formats.end(), format) == formats.end())
        return;
    const std::string name = fileNameOf(m_needs.paths, recording);
    try {
        const std::string target = chosenTarget(name, format);
        if (target.empty())
            return;
        m_cancelled = false;
        m_needs.window.onCancel([this] { m_cancelled = true; });
        m_needs.window.showWhile(m_needs.texts.addition("list.menu.export"), [&] {
            m_needs.window.setText(name);
            m_needs.window.setValue(0);
            m_needs.exporter.start({recording, target, format, stemOf(name)});
            follow();
        });
        tell(name, target);
    } catch (const StepError& error) {
        m_needs.messages.show(name + "\n" + error.what(), m_needs.texts.byOffset(warningTitle),
                              MessageStyle::Stop);
    }
}

std::string TrackExportRun::chosenTarget(const std::string& name, const std::string& format) {
    return m_needs.dialogs.saveFile({m_needs.texts.addition("list.menu.export"),
                                     upperCase(format) + "|*." + format,
                                     stemOf(name) + "." + format});
}

void TrackExportRun::follow() {
    const auto running = [this] {
        return m_needs.exporter.state().stage == ExportState::Stage::Running;
    };
    while (running() && !m_cancelled) {
        m_needs.waits.sleepUntil(look, [&] { return !running() || m_cancelled; });
        m_needs.window.setValue(m_needs.exporter.state().percent);
    }
    if (m_cancelled)
        m_needs.exporter.stop();
    while (running())
        m_needs.waits.sleepUntil(look, [&] { return !running(); });
}

void TrackExportRun::tell(const std::string& name, const std::string& target) {
    const ExportState state = m_needs.exporter.state();
    if (state.stage == ExportState::Stage::Done)
        m_needs.status.show(fileNameOf(m_needs.paths, target));
    if (state.stage != ExportState::Stage::Failed)
        return;
    const TrackReason reason{TrackReason::Kind::NoTrack, state.code, 0,
                             boundedLine(state.technical)};
    m_needs.messages.show(name + "\n" + wordsWithDetails(reason, m_needs.texts),
                          m_needs.texts.byOffset(warningTitle), MessageStyle::Stop);
}

} // namespace velmorant

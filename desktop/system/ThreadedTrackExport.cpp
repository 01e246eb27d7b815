#include "desktop/system/ThreadedTrackExport.h"

#include "common/FileReplacement.h"
#include "common/StepError.h"
#include "telemetry/Extract.h"
#include "telemetry/export/TrackExporter.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <sstream>

namespace velmorant {

namespace {

using Stage = ExportState::Stage;

ExportState failed(std::string_view code, const std::string& technical) {
    return {Stage::Failed, 0, std::string(code), technical};
}

ExportState failed(const telemetry::Error& error) {
    return failed(name(error.code), describe(error));
}

/// In memory: a track is small beside its recording.
std::string exported(const ExportOrder& order, telemetry::ExportFormat format,
                     const telemetry::Telemetry& read) {
    std::ostringstream out;
    const auto exporter = telemetry::makeExporter(format, telemetry::Positions::trusted, out);
    exporter->begin();
    exporter->beginTrip(order.title);
    exporter->recording(order.recording, read);
    exporter->endTrip();
    exporter->end();
    return out.str();
}

bool sameFile(const std::string& left, const std::string& right) {
    std::error_code unknown;
    return std::filesystem::equivalent(left, right, unknown);
}

} // namespace

ThreadedTrackExport::~ThreadedTrackExport() {
    end();
}

void ThreadedTrackExport::start(const ExportOrder& order) {
    end();
    m_stopping = false;
    m_percent = 0;
    m_state = {};
    m_thread = std::thread([this, order] { run(order); });
}

ExportState ThreadedTrackExport::state() const {
    const std::lock_guard lock(m_mutex);
    ExportState state = m_state;
    state.percent = m_percent;
    return state;
}

void ThreadedTrackExport::end() {
    m_stopping = true;
    if (m_thread.joinable())
        m_thread.join();
}

void ThreadedTrackExport::run(const ExportOrder& order) {
    ExportState state;
    try {
        state = carriedOut(order);
    } catch (const std::exception& failure) {
        // An exception that leaves a thread ends the program.
        state = failed("not-written", failure.what());
    }
    const std::lock_guard lock(m_mutex);
    m_state = std::move(state);
}

ExportState ThreadedTrackExport::carriedOut(const ExportOrder& order) {
    const auto format = telemetry::exportFormatNamed(order.format);
    if (!format)
        return failed("", "no format \"" + order.format + "\"");
    if (sameFile(order.recording, order.target))
        return failed("same-file", order.target + ": is the recording");
    telemetry::ReadOptions options;
    options.shouldStop = [this] { return m_stopping.load(); };
    options.progress = [this](std::uint64_t done, std::uint64_t total) {
        m_percent = total == 0 ? 0 : static_cast<int>(std::min(done, total) * 100 / total);
    };
    const auto read = telemetry::extractFile(order.recording, options);
    if (m_stopping)
        return {Stage::Stopped, 0, {}, {}};
    if (!read)
        return failed(read.error());
    if (read.value().fixes() == 0)
        return failed(name(telemetry::ReasonCode::noTelemetry),
                      order.recording + ": no position is known");
    FileReplacement file(order.target);
    file.write(exported(order, *format, read.value()));
    if (m_stopping)
        return {Stage::Stopped, 0, {}, {}};
    file.commit();
    return {Stage::Done, 100, {}, {}};
}

} // namespace velmorant

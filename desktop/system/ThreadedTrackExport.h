#pragma once

#include "ports/TrackExport.h"

#include <atomic>
#include <mutex>
#include <thread>

namespace velmorant {

/// Exports on a thread of its own, in this process. The state may be queried at any time.
class ThreadedTrackExport : public TrackExport {
  public:
    ThreadedTrackExport() = default;
    /// Stops the export under way and waits for it to end.
    ~ThreadedTrackExport() override;
    ThreadedTrackExport(const ThreadedTrackExport&) = delete;
    ThreadedTrackExport& operator=(const ThreadedTrackExport&) = delete;

    void start(const ExportOrder& order) override;
    ExportState state() const override;
    void stop() override { m_stopping = true; }

  private:
    void run(const ExportOrder& order);
    ExportState carriedOut(const ExportOrder& order);
    void end();

    std::atomic<bool> m_stopping{false};
    std::atomic<int> m_percent{0};
    mutable std::mutex m_mutex;
    ExportState m_state{ExportState::Stage::Done, 0, {}, {}};
    std::thread m_thread;
};

} // namespace velmorant

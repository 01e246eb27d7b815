#pragma once

#include "ports/TrackExport.h"

#include <atomic>
#include <mutex>
#include <thread>

namespace velmorant {

/// Exports on a thread of its own, in this process. The state is safe to ask for at any time.
class ThreadedTrackExport : public TrackExport {
  public:
    ThreadedTrackExport() = default;
    /// Stops what runs and waits for its end.
    ~ThreadedTrackExport() override;
    ThreadedTrackExport(const ThreadedTrackExport&) = delete;
    ThreadedTrackExport& operator=(const ThreadedTrackExport&) = delete;

    void start(const ExportOrder& order) override;
    ExportState state() const override;
    void stop() override { stopping_ = true; }

  private:
    void run(const ExportOrder& order);
    ExportState carriedOut(const ExportOrder& order);
    void end();

    std::atomic<bool> stopping_{false};
    std::atomic<int> percent_{0};
    mutable std::mutex mutex_;
    ExportState state_{ExportState::Stage::Done, 0, {}, {}};
    std::thread thread_;
};

} // namespace velmorant

// Ctrl-C and its like: the unfinished files go, then the program ends as the signal would end it.
#pragma once

#include <atomic>
#include <csignal>
#include <thread>

#include "extractor/command/UnfinishedFiles.h"

namespace velmorant::telemetry {

// Made before any other thread, which then inherit that the signals are left to this one. A signal
// that the caller had ignored stays ignored.
class SignalWatch {
  public:
    explicit SignalWatch(UnfinishedFiles& unfinished);
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

  private:
    void watch();

    UnfinishedFiles& unfinished_;
    sigset_t signals_{};
    std::atomic<bool> over_ = false;
    std::thread thread_;
};

} // namespace velmorant::telemetry

#include "extractor/command/main/SignalWatch.h"

#include <pthread.h>

namespace velmorant::telemetry {

SignalWatch::SignalWatch(UnfinishedFiles& unfinished) : unfinished_(unfinished) {
    // A reader that goes away is a failed write, which is told and ends the run.
    std::signal(SIGPIPE, SIG_IGN);
    sigemptyset(&signals_);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&signals_, number);
    }
    pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
    thread_ = std::thread([this] { watch(); });
}

SignalWatch::~SignalWatch() {
    over_ = true;
    // The signal is blocked: the thread takes it by waiting for it, and nothing is terminated.
    // NOLINTNEXTLINE(bugprone-bad-signal-to-kill-thread)
    pthread_kill(thread_.native_handle(), SIGTERM); // wakes the thread and nobody else
    thread_.join();
}

void SignalWatch::watch() {
    int number = 0;
    if (sigwait(&signals_, &number) != 0 || over_) {
        return;
    }
    const auto none = unfinished_.discardAll();
    std::signal(number, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &signals_, nullptr);
    std::raise(number);
}

} // namespace velmorant::telemetry

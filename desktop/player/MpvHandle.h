#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <mpv/client.h>

namespace velmorant {

/// Owns one libmpv core, in which no script runs. Everything but the constructor is asynchronous:
/// no call waits for the core, which may be busy opening a file on a slow card. Requests are
/// executed in the order given.
class MpvHandle {
  public:
    using Options = std::vector<std::pair<const char*, const char*>>;

    /// Throws StepError when libmpv cannot be started. Sets the numeric locale to "C", which libmpv
    /// demands.
    explicit MpvHandle(const Options& options);
    ~MpvHandle();
    MpvHandle(const MpvHandle&) = delete;
    MpvHandle& operator=(const MpvHandle&) = delete;

    mpv_handle* get() const { return m_handle; }
    /// `reply` is returned in the MPV_EVENT_COMMAND_REPLY event; 0 when it is not needed.
    void command(const std::vector<std::string>& words, std::uint64_t reply = 0);
    void setFlag(const char* property, bool value);
    void setNumber(const char* property, double value);
    void setText(const char* property, const char* value);

  private:
    mpv_handle* m_handle;
};

} // namespace velmorant

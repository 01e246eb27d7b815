#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace velmorant {

enum class TransferState {
    Error = 11,            ///< also when the connection fails in the middle of the body
    ResponseCompleted = 12 ///< status and headers are there, the body follows in chunks
};

/// The transfer control: one asynchronous "get" at a time. It keeps little of the body: what was
/// not fetched with chunk() waits in the connection, so that a large file needs no large memory.
class HttpTransfer {
  public:
    virtual ~HttpTransfer() = default;
    virtual void setPort(int port) = 0; ///< for addresses that name none
    /// Ends a transfer under way. Redirects are followed to the same scheme, host and port alone.
    virtual void get(const std::string& url) = 0;
    virtual void cancel() = 0; ///< no listener is called for this transfer any more
    /// The value of a response header; empty when the response has none of that name.
    virtual std::string header(const std::string& name) const = 0;
    /// The next bytes of the body, at most `size`; empty when none have arrived.
    virtual std::vector<std::byte> chunk(std::size_t size) = 0;
    virtual bool atEnd() const = 0; ///< the body has ended well and was fetched whole
    virtual int responseCode() const = 0;
    virtual std::string responseText() const = 0; ///< the status line's reason, or the error
    virtual void onStateChanged(std::function<void(TransferState)> listener) = 0;
    /// After ResponseCompleted: bytes of the body have arrived, or it has ended. A listener that
    /// leaves bytes behind is called again.
    virtual void onData(std::function<void()> listener) = 0;
};

} // namespace velmorant

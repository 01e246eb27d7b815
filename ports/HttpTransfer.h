#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace velmorant {

enum class TransferState { Error = 11, ResponseCompleted = 12 };

/// The transfer control: one asynchronous "get" at a time.
class HttpTransfer {
  public:
    virtual ~HttpTransfer() = default;
    virtual void setPort(int port) = 0; ///< for http addresses that name none
    virtual void get(const std::string& url) = 0;
    virtual void cancel() = 0;
    /// The value of a response header; empty when the response has none of that name.
    virtual std::string header(const std::string& name) const = 0;
    /// The next bytes of the body, at most `size`; empty at its end. Throws StepError when the
    /// connection fails in the middle.
    virtual std::vector<std::byte> chunk(std::size_t size) = 0;
    virtual int responseCode() const = 0;
    virtual std::string responseText() const = 0;
    virtual void onStateChanged(std::function<void(TransferState)> listener) = 0;
};

} // namespace velmorant

#pragma once

#include <QSocketNotifier>
#include <QTimer>

#include <curl/curl.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace velmorant {

/// libcurl's transfers in Qt's event loop: one multi handle, which keeps connections for the next
/// transfer, its sockets watched by notifiers and its time-outs by a timer.
class CurlLoop {
  public:
    /// `progressed` is called from the event loop after libcurl has done what it could; it may add
    /// and remove transfers.
    explicit CurlLoop(std::function<void()> progressed);
    ~CurlLoop(); ///< no transfer may be left in it
    CurlLoop(const CurlLoop&) = delete;
    CurlLoop& operator=(const CurlLoop&) = delete;

    /// Begins at once what can be done without waiting, and does not call `progressed` for that.
    /// False when the transfer has ended with it.
    bool add(CURL* transfer);
    void remove(CURL* transfer);
    /// How a transfer ended; reported once. The transfer is out of the loop then.
    std::optional<CURLcode> takeResult();

  private:
    struct Watch {
        std::unique_ptr<QSocketNotifier> read;
        std::unique_ptr<QSocketNotifier> write;
    };

    static int socketWanted(CURL* transfer, curl_socket_t socket, int what, void* loop, void*);
    static int timeWanted(CURLM* multi, long milliseconds, void* loop);
    void watch(std::unique_ptr<QSocketNotifier>& notifier, curl_socket_t socket, bool wanted,
               QSocketNotifier::Type type);
    void act(curl_socket_t socket, int events);

    std::function<void()> m_progressed;
    std::map<curl_socket_t, Watch> m_watches;
    QTimer m_timer;
    CURLM* m_multi;
};

} // namespace velmorant

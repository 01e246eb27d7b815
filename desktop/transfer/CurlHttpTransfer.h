#pragma once

#include "desktop/gate/GatedListener.h"
#include "ports/HttpTransfer.h"

#include <QTimer>
#include <QUrl>

#include <curl/curl.h>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmorant {

class CurlLoop;

/// The transfer control on libcurl, for http and https addresses.
///
/// ResponseCompleted is sent as soon as a good response begins; onData() reports arriving body
/// data, of which never much more than a quarter of a megabyte is held in memory. Error is sent for
/// everything else: no connection, a certificate that is not trusted, a status of 400 and above,
/// another kind of address, a connection that breaks in the body, 30 seconds without a byte, and a
/// redirection that leaves scheme, host or port, or the fifth in a row. responseCode() is the HTTP
/// status, or 0 when there was no response. Listeners are called from the event loop, never from
/// inside a call.
///
/// The connection is kept for the next transfer, and closed when none comes for a while.
/// Certificates are checked with the system's store, or with SSL_CERT_FILE and SSL_CERT_DIR where
/// the environment names them; http_proxy, https_proxy and no_proxy are followed.
class CurlHttpTransfer : public HttpTransfer {
  public:
    /// Listeners are called through it.
    explicit CurlHttpTransfer(GatedDelivery delivery);
    ~CurlHttpTransfer() override;

    void setPort(int port) override;
    void get(const std::string& url) override; ///< cancels one that is under way
    void cancel() override;
    std::string header(const std::string& name) const override;
    std::vector<std::byte> chunk(std::size_t size) override;
    bool atEnd() const override;
    int responseCode() const override;
    std::string responseText() const override;
    void onStateChanged(std::function<void(TransferState)> listener) override;
    void onData(std::function<void()> listener) override;

  private:
    struct Release {
        void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    static std::size_t headerArrived(const char* line, std::size_t, std::size_t size, void* self);
    static std::size_t bodyArrived(const char* bytes, std::size_t, std::size_t size, void* self);
    void setUp();
    void setUpCertificates();
    void begin(const QUrl& url);
    void drop();
    void takeHeader(std::string_view line);
    void progressed();
    void responseBegan();
    void redirected(const QUrl& target);
    void ended(CURLcode code);
    std::string described(CURLcode code) const;
    void fail(int code, const std::string& text);
    void announce(TransferState state);
    void tellData();
    void tellLater(std::function<void()> call);
    void deliver(std::function<void()> call);
    std::size_t waiting() const { return m_body.size() - m_taken; }

    std::unique_ptr<CURL, Release> m_easy;
    std::unique_ptr<curl_slist, Release> m_headers;
    std::unique_ptr<CurlLoop> m_loop; ///< holds the connection
    std::array<char, CURL_ERROR_SIZE> m_error{};
    QTimer m_idle;
    GatedDelivery m_delivery;
    QUrl m_asked; ///< the present address, after redirections
    int m_port = 80;
    int m_redirections = 0;
    unsigned m_generation =
        0; ///< of the present transfer: late calls of an earlier one are dropped

    bool m_running = false; ///< the transfer is in the loop
    std::string m_statusLine;
    bool m_headersComplete = false;
    bool m_announced = false;
    bool m_dataTold = false; ///< and the listener was not called yet
    bool m_paused = false;
    bool m_complete = false; ///< the body has ended well
    std::string m_body;      ///< what has arrived
    std::size_t m_taken = 0; ///< of it, from the front

    int m_responseCode = 0;
    std::string m_responseText;
    std::function<void(TransferState)> m_listener;
    std::function<void()> m_dataListener;
};

} // namespace velmorant

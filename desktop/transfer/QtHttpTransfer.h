#pragma once

#include "ports/HttpTransfer.h"

#include <QNetworkAccessManager>
#include <QPointer>
#include <QUrl>

#include <functional>

class QNetworkReply;

namespace velmorant {

/// The transfer control on Qt Network, for http and https addresses.
///
/// ResponseCompleted is sent as soon as a good response begins; what arrives of the body is told by
/// onData(), and never more than a quarter of a megabyte of it lies in memory. Error is sent for
/// everything else: no connection, a status of 400 and above, another kind of address, a connection
/// that breaks in the body, 30 seconds without a byte, and a redirection that leaves scheme, host
/// or port, or the fifth in a row. responseCode() is the HTTP status, or 0 when there was no
/// response. Listeners are called from the event loop, never from inside a call.
class QtHttpTransfer : public HttpTransfer {
  public:
    /// Brings a call of a listener to the time when it may run (HandlerGate::runWhenFree).
    using Delivery = std::function<void(std::function<void()>)>;

    /// Unset: listeners are called at once.
    explicit QtHttpTransfer(Delivery deliver = {});
    ~QtHttpTransfer() override;

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
    void begin(const QUrl& url);
    void drop();
    void responseBegan();
    void redirected(const QUrl& url);
    void finished();
    void fail(int code, const QString& text);
    void announce(TransferState state);
    void scheduleData();
    void deliver(std::function<void()> call);

    QNetworkAccessManager network_;
    QPointer<QNetworkReply> reply_;
    QUrl asked_; ///< the present address, after redirections
    Delivery deliver_;
    int port_ = 80;
    int redirections_ = 0;
    bool announced_ = false;
    bool dataScheduled_ = false;
    unsigned generation_ = 0; ///< of the present transfer: late calls of an earlier one are dropped
    int responseCode_ = 0;
    std::string responseText_;
    std::function<void(TransferState)> listener_;
    std::function<void()> dataListener_;
};

} // namespace velmorant

#pragma once

#include "ports/HttpTransfer.h"

#include <QNetworkAccessManager>
#include <QPointer>
#include <QUrl>

#include <memory>

class QNetworkReply;

namespace velmorant {

/// The transfer control on Qt Network, for http and https addresses.
///
/// ResponseCompleted is sent as soon as a good response begins; the body then comes through
/// chunk(), which waits for it piece by piece, so that never more than a quarter of a megabyte of
/// it lies in memory. Error is sent for everything else: no connection, a status of 400 and above,
/// another kind of address, and a redirection that leaves the host or https, or the fifth in a row.
/// responseCode() is then the HTTP status where there was one, else Qt's number of the error.
/// States are sent from the event loop, never from inside a call.
class QtHttpTransfer : public HttpTransfer {
  public:
    /// `wait` lets a few events run while chunk() waits for the network; it must return within
    /// a fraction of a second. Unset: everything but user input runs.
    explicit QtHttpTransfer(std::function<void()> wait = {});
    ~QtHttpTransfer() override;

    void setPort(int port) override;
    void get(const std::string& url) override; ///< cancels one that is under way
    void cancel() override;
    std::string header(const std::string& name) const override;
    std::vector<std::byte> chunk(std::size_t size) override;
    int responseCode() const override;
    std::string responseText() const override;
    void onStateChanged(std::function<void(TransferState)> listener) override;

  private:
    void begin(const QUrl& url);
    void drop();
    void responseBegan();
    void redirected(const QUrl& url);
    void finished();
    void fail(int code, const QString& text);
    void announce(TransferState state);

    QNetworkAccessManager network_;
    QPointer<QNetworkReply> reply_;
    QUrl asked_; ///< the present address, after redirections
    std::function<void()> wait_;
    int port_ = 80;
    int redirections_ = 0;
    bool announced_ = false;
    int responseCode_ = 0;
    std::string responseText_;
    std::function<void(TransferState)> listener_;
};

} // namespace velmorant

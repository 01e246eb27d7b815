#include "desktop/transfer/QtHttpTransfer.h"

#include "common/StepError.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkReply>

#include <algorithm>

namespace velmorant {

namespace {

constexpr qint64 bufferSize = 256 * 1024;
constexpr int timeoutMilliseconds = 30000;
constexpr int waitMilliseconds = 20;
constexpr int mostRedirections = 5;

bool isWeb(const QUrl& url) {
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == "http" || url.scheme() == "https");
}

} // namespace

QtHttpTransfer::QtHttpTransfer(std::function<void()> wait) : wait_(std::move(wait)) {
    if (!wait_)
        wait_ = [] {
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                                QEventLoop::WaitForMoreEvents,
                                            waitMilliseconds);
        };
}

QtHttpTransfer::~QtHttpTransfer() {
    drop();
}

void QtHttpTransfer::setPort(int port) {
    port_ = port;
}

void QtHttpTransfer::get(const std::string& text) {
    drop();
    responseCode_ = 0;
    responseText_.clear();
    announced_ = false;
    redirections_ = 0;
    QUrl url(QString::fromStdString(text), QUrl::TolerantMode);
    if (isWeb(url)) {
        if (url.scheme() == "http" && url.port() == -1)
            url.setPort(port_);
        begin(url);
        return;
    }
    QMetaObject::invokeMethod(
        &network_, [this] { fail(QNetworkReply::ProtocolUnknownError, "not an http address"); },
        Qt::QueuedConnection);
}

void QtHttpTransfer::begin(const QUrl& url) {
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, "VelmorantDVRTools/" VELMORANT_VERSION);
    // A packed body would not have the length that its header names.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setTransferTimeout(timeoutMilliseconds);
    asked_ = url;
    reply_ = network_.get(request);
    reply_->setReadBufferSize(bufferSize);
    QObject::connect(reply_, &QNetworkReply::metaDataChanged, &network_,
                     [this] { responseBegan(); });
    QObject::connect(reply_, &QNetworkReply::redirected, &network_,
                     [this](const QUrl& target) { redirected(target); });
    QObject::connect(reply_, &QNetworkReply::finished, &network_, [this] { finished(); });
}

void QtHttpTransfer::redirected(const QUrl& target) {
    // The reply's own address is the target's by now.
    const bool safe = isWeb(target) && target.host() == asked_.host() &&
                      (asked_.scheme() == "http" || target.scheme() == "https");
    if (safe && ++redirections_ < mostRedirections) {
        asked_ = target;
        emit reply_->redirectAllowed();
    } else {
        fail(QNetworkReply::InsecureRedirectError,
             "redirected to another host, or too often: " + target.toDisplayString());
    }
}

void QtHttpTransfer::responseBegan() {
    const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (announced_ || status < 200 || (status >= 300 && status < 400))
        return;
    const QString reason = reply_->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
    if (status >= 400) {
        fail(status, reason);
        return;
    }
    responseCode_ = status;
    responseText_ = reason.toStdString();
    announce(TransferState::ResponseCompleted);
}

void QtHttpTransfer::finished() {
    if (!announced_)
        fail(reply_->error(), reply_->errorString());
}

void QtHttpTransfer::fail(int code, const QString& text) {
    drop();
    responseCode_ = code;
    responseText_ = text.toStdString();
    announce(TransferState::Error);
}

void QtHttpTransfer::announce(TransferState state) {
    announced_ = true;
    if (listener_)
        listener_(state);
}

void QtHttpTransfer::cancel() {
    drop();
}

void QtHttpTransfer::drop() {
    if (!reply_)
        return;
    reply_->disconnect(&network_);
    reply_->abort();
    reply_->deleteLater();
    reply_.clear();
}

std::string QtHttpTransfer::header(const std::string& name) const {
    return reply_ ? reply_->rawHeader(QByteArray::fromStdString(name)).toStdString()
                  : std::string();
}

std::vector<std::byte> QtHttpTransfer::chunk(std::size_t size) {
    const QPointer<QNetworkReply> reply = reply_;
    while (reply && reply == reply_ && reply->bytesAvailable() == 0 && !reply->isFinished())
        wait_();
    if (!reply || reply != reply_)
        throw StepError("the transfer was cancelled");
    std::vector<std::byte> bytes(std::min(size, static_cast<std::size_t>(reply->bytesAvailable())));
    const qint64 read =
        reply->read(reinterpret_cast<char*>(bytes.data()), static_cast<qint64>(bytes.size()));
    bytes.resize(read > 0 ? static_cast<std::size_t>(read) : 0);
    if (bytes.empty() && reply->error() != QNetworkReply::NoError)
        throw StepError(reply->url().toDisplayString().toStdString() + ": " +
                        reply->errorString().toStdString());
    return bytes;
}

int QtHttpTransfer::responseCode() const {
    return responseCode_;
}

std::string QtHttpTransfer::responseText() const {
    return responseText_;
}

void QtHttpTransfer::onStateChanged(std::function<void(TransferState)> listener) {
    listener_ = std::move(listener);
}

} // namespace velmorant

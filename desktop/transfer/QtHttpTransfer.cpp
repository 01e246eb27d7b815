#include "desktop/transfer/QtHttpTransfer.h"

#include <QNetworkReply>

#include <algorithm>
#include <utility>

namespace velmorant {

namespace {

constexpr qint64 bufferSize = 256 * 1024;
constexpr int timeoutMilliseconds = 30000;
constexpr int mostRedirections = 5;

bool isWeb(const QUrl& url) {
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == "http" || url.scheme() == "https");
}

int portOf(const QUrl& url) {
    return url.port(url.scheme() == "https" ? 443 : 80);
}

} // namespace

QtHttpTransfer::QtHttpTransfer(Delivery deliver) : deliver_(std::move(deliver)) {}

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
        &network_,
        [this, asked = generation_] {
            if (asked == generation_)
                fail(0, "not an http address");
        },
        Qt::QueuedConnection);
}

void QtHttpTransfer::begin(const QUrl& url) {
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, "VelmorantDVRTools/" VELMORANT_VERSION);
    // A packed body would not have the length that its header names.
    request.setRawHeader("Accept-Encoding", "identity");
    // Qt asks the server again and again while it waits for a redirection to be allowed.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setTransferTimeout(timeoutMilliseconds);
    asked_ = url;
    reply_ = network_.get(request);
    reply_->setReadBufferSize(bufferSize);
    QObject::connect(reply_, &QNetworkReply::metaDataChanged, &network_,
                     [this] { responseBegan(); });
    QObject::connect(reply_, &QNetworkReply::readyRead, &network_, [this] { scheduleData(); });
    QObject::connect(reply_, &QNetworkReply::finished, &network_, [this] { finished(); });
}

void QtHttpTransfer::redirected(const QUrl& target) {
    const bool safe = isWeb(target) && target.host() == asked_.host() &&
                      target.scheme() == asked_.scheme() && portOf(target) == portOf(asked_);
    if (safe && ++redirections_ < mostRedirections) {
        drop();
        begin(target);
    } else {
        fail(0, "redirected to another host, or too often: " + target.toDisplayString());
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
    scheduleData();
}

void QtHttpTransfer::finished() {
    const QNetworkReply::NetworkError error = reply_->error();
    const QUrl target = reply_->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (!announced_ && target.isValid()) {
        redirected(reply_->url().resolved(target));
        return;
    }
    if (!announced_ || error != QNetworkReply::NoError)
        fail(announced_ ? responseCode_ : 0, reply_->errorString());
    else
        scheduleData();
}

void QtHttpTransfer::fail(int code, const QString& text) {
    drop();
    responseCode_ = code;
    responseText_ = text.toStdString();
    announce(TransferState::Error);
}

void QtHttpTransfer::announce(TransferState state) {
    announced_ = true;
    deliver([this, state] {
        if (listener_)
            listener_(state);
    });
}

void QtHttpTransfer::scheduleData() {
    // What arrives before the response was announced is told with it.
    if (!announced_ || std::exchange(dataScheduled_, true))
        return;
    QMetaObject::invokeMethod(
        &network_,
        [this, asked = generation_] {
            if (asked != generation_)
                return;
            deliver([this, asked] {
                dataScheduled_ = false;
                if (dataListener_)
                    dataListener_();
                if (asked == generation_ && reply_ && reply_->bytesAvailable() > 0)
                    scheduleData();
            });
        },
        Qt::QueuedConnection);
}

void QtHttpTransfer::deliver(std::function<void()> call) {
    auto current = [this, asked = generation_, call = std::move(call)] {
        if (asked == generation_)
            call();
    };
    if (deliver_)
        deliver_(std::move(current));
    else
        current();
}

void QtHttpTransfer::cancel() {
    drop();
}

void QtHttpTransfer::drop() {
    ++generation_;
    dataScheduled_ = false;
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
    if (!reply_)
        return {};
    std::vector<std::byte> bytes(
        std::min(size, static_cast<std::size_t>(reply_->bytesAvailable())));
    const qint64 read =
        reply_->read(reinterpret_cast<char*>(bytes.data()), static_cast<qint64>(bytes.size()));
    bytes.resize(read > 0 ? static_cast<std::size_t>(read) : 0);
    return bytes;
}

bool QtHttpTransfer::atEnd() const {
    return reply_ && reply_->isFinished() && reply_->error() == QNetworkReply::NoError &&
           reply_->bytesAvailable() == 0;
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

void QtHttpTransfer::onData(std::function<void()> listener) {
    dataListener_ = std::move(listener);
}

} // namespace velmorant

#include "desktop/transfer/CurlHttpTransfer.h"

#include "desktop/transfer/CurlLoop.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <new>
#include <utility>

namespace velmorant {

namespace {

constexpr std::size_t bufferSize = 262144;
constexpr long readSize = 65536;
constexpr long timeoutSeconds = 30;
constexpr int mostRedirections = 5;
constexpr std::chrono::seconds keptFor{20};

bool isWeb(const QUrl& url) {
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == "http" || url.scheme() == "https");
}

int portOf(const QUrl& url) {
    return url.port(url.scheme() == "https" ? 443 : 80);
}

/// "Not Found" of "HTTP/1.1 404 Not Found".
std::string reasonOf(const std::string& statusLine) {
    const auto code = statusLine.find(' ');
    const auto reason = code == std::string::npos ? code : statusLine.find(' ', code + 1);
    return reason == std::string::npos ? std::string() : statusLine.substr(reason + 1);
}

} // namespace

CurlHttpTransfer::CurlHttpTransfer(GatedDelivery delivery)
    : easy_(curl_easy_init()), delivery_(std::move(delivery)) {
    if (!easy_)
        throw std::bad_alloc();
    setUp();
    setUpCertificates();
    idle_.setSingleShot(true);
    idle_.setInterval(keptFor);
    QObject::connect(&idle_, &QTimer::timeout, &idle_, [this] { loop_.reset(); });
}

CurlHttpTransfer::~CurlHttpTransfer() {
    drop();
}

void CurlHttpTransfer::setUp() {
    CURL* const easy = easy_.get();
    // A packed body would not have the length that its header names.
    headers_.reset(curl_slist_append(nullptr, "Accept-Encoding: identity"));
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers_.get());
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "VelmorantDVRTools/" VELMORANT_VERSION);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    // The newer version lets a server send megabytes that nobody has asked for yet.
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, readSize);
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT, timeoutSeconds);
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME, timeoutSeconds);
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, error_.data());
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &CurlHttpTransfer::headerArrived);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &CurlHttpTransfer::bodyArrived);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
}

// The names that the TLS library itself follows; libcurl asks it for certain files instead.
void CurlHttpTransfer::setUpCertificates() {
    const QByteArray file = qgetenv("SSL_CERT_FILE");
    const QByteArray folder = qgetenv("SSL_CERT_DIR");
    if (!file.isEmpty())
        curl_easy_setopt(easy_.get(), CURLOPT_CAINFO, file.constData());
    if (!folder.isEmpty())
        curl_easy_setopt(easy_.get(), CURLOPT_CAPATH, folder.constData());
}

void CurlHttpTransfer::setPort(int port) {
    port_ = port;
}

void CurlHttpTransfer::get(const std::string& text) {
    drop();
    redirections_ = 0;
    QUrl url(QString::fromStdString(text), QUrl::TolerantMode);
    if (isWeb(url)) {
        if (url.scheme() == "http" && url.port() == -1)
            url.setPort(port_);
        begin(url);
    } else {
        tellLater([this] { fail(0, "not an http address"); });
    }
}

void CurlHttpTransfer::begin(const QUrl& url) {
    if (!loop_)
        loop_ = std::make_unique<CurlLoop>([this] { progressed(); });
    idle_.stop();
    asked_ = url;
    error_.fill('\0');
    const QByteArray address = url.toEncoded(QUrl::RemoveFragment);
    curl_easy_setopt(easy_.get(), CURLOPT_URL, address.constData());
    running_ = true;
    if (!loop_->add(easy_.get()) || headersComplete_)
        tellLater([this] { progressed(); });
}

void CurlHttpTransfer::drop() {
    ++generation_;
    if (std::exchange(running_, false))
        loop_->remove(easy_.get());
    if (loop_)
        idle_.start();
    statusLine_.clear();
    headersComplete_ = announced_ = dataTold_ = paused_ = complete_ = false;
    body_.clear();
    taken_ = 0;
    responseCode_ = 0;
    responseText_.clear();
}

void CurlHttpTransfer::cancel() {
    drop();
}

std::size_t CurlHttpTransfer::headerArrived(const char* line, std::size_t, std::size_t size,
                                            void* self) {
    static_cast<CurlHttpTransfer*>(self)->takeHeader(std::string_view(line, size));
    return size;
}

void CurlHttpTransfer::takeHeader(std::string_view line) {
    // The lines behind a body in pieces are headers too.
    if (headersComplete_)
        return;
    while (line.ends_with('\n') || line.ends_with('\r'))
        line.remove_suffix(1);
    if (line.starts_with("HTTP/")) {
        statusLine_ = line;
    } else if (line.empty()) {
        long status = 0;
        curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
        headersComplete_ = status >= 200;
    }
}

std::size_t CurlHttpTransfer::bodyArrived(const char* bytes, std::size_t, std::size_t size,
                                          void* self) {
    auto* const transfer = static_cast<CurlHttpTransfer*>(self);
    if (transfer->waiting() >= bufferSize) {
        transfer->paused_ = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    transfer->body_.erase(0, std::exchange(transfer->taken_, 0));
    transfer->body_.append(bytes, size);
    return size;
}

void CurlHttpTransfer::progressed() {
    if (!running_)
        return;
    const auto result = loop_->takeResult();
    if (result) {
        running_ = false;
        idle_.start();
    }
    const unsigned asked = generation_;
    if (headersComplete_ && !announced_)
        responseBegan();
    if (asked == generation_ && result)
        ended(*result);
    if (asked == generation_)
        tellData();
}

void CurlHttpTransfer::responseBegan() {
    long status = 0;
    curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
    const std::string location = header("Location");
    const std::string reason = reasonOf(statusLine_);
    if (status >= 300 && status < 400 && !location.empty()) {
        redirected(asked_.resolved(QUrl(QString::fromStdString(location), QUrl::TolerantMode)));
    } else if (status >= 300) {
        fail(static_cast<int>(status), reason);
    } else {
        responseCode_ = static_cast<int>(status);
        responseText_ = reason;
        announce(TransferState::ResponseCompleted);
    }
}

void CurlHttpTransfer::redirected(const QUrl& target) {
    const bool safe = isWeb(target) && target.host() == asked_.host() &&
                      target.scheme() == asked_.scheme() && portOf(target) == portOf(asked_);
    if (safe && ++redirections_ < mostRedirections) {
        drop();
        begin(target);
    } else {
        fail(0,
             "redirected to another host, or too often: " + target.toDisplayString().toStdString());
    }
}

void CurlHttpTransfer::ended(CURLcode code) {
    complete_ = code == CURLE_OK && announced_;
    if (!complete_)
        fail(responseCode_, described(code));
}

std::string CurlHttpTransfer::described(CURLcode code) const {
    std::string detail = error_[0] != '\0' ? error_.data() : curl_easy_strerror(code);
    if (code == CURLE_PEER_FAILED_VERIFICATION)
        return "the server's certificate is not trusted: " + detail;
    return detail;
}

void CurlHttpTransfer::fail(int code, const std::string& text) {
    drop();
    responseCode_ = code;
    responseText_ = text;
    announce(TransferState::Error);
}

void CurlHttpTransfer::announce(TransferState state) {
    announced_ = true;
    deliver([this, state] {
        if (listener_)
            listener_(state);
    });
}

void CurlHttpTransfer::tellData() {
    if (!announced_ || (waiting() == 0 && !complete_) || std::exchange(dataTold_, true))
        return;
    deliver([this, asked = generation_] {
        dataTold_ = false;
        if (dataListener_)
            dataListener_();
        if (asked == generation_ && waiting() > 0)
            tellLater([this] { tellData(); });
    });
}

void CurlHttpTransfer::tellLater(std::function<void()> call) {
    QTimer::singleShot(0, &idle_, [this, asked = generation_, call = std::move(call)] {
        if (asked == generation_)
            call();
    });
}

void CurlHttpTransfer::deliver(std::function<void()> call) {
    delivery_([this, asked = generation_, call = std::move(call)] {
        if (asked == generation_)
            call();
    });
}

std::string CurlHttpTransfer::header(const std::string& name) const {
    curl_header* found = nullptr;
    if (!headersComplete_ ||
        curl_easy_header(easy_.get(), name.c_str(), 0, CURLH_HEADER, -1, &found) != CURLHE_OK)
        return {};
    return found->value;
}

std::vector<std::byte> CurlHttpTransfer::chunk(std::size_t size) {
    const std::size_t count = std::min(size, waiting());
    std::vector<std::byte> bytes(count);
    if (count > 0)
        std::memcpy(bytes.data(), body_.data() + taken_, count);
    taken_ += count;
    if (waiting() == 0) {
        body_.clear();
        taken_ = 0;
        // The rest comes, or the next piece of it at once.
        if (running_ && std::exchange(paused_, false))
            curl_easy_pause(easy_.get(), CURLPAUSE_CONT);
    }
    return bytes;
}

bool CurlHttpTransfer::atEnd() const {
    return complete_ && waiting() == 0;
}

int CurlHttpTransfer::responseCode() const {
    return responseCode_;
}

std::string CurlHttpTransfer::responseText() const {
    return responseText_;
}

void CurlHttpTransfer::onStateChanged(std::function<void(TransferState)> listener) {
    listener_ = std::move(listener);
}

void CurlHttpTransfer::onData(std::function<void()> listener) {
    dataListener_ = std::move(listener);
}

} // namespace velmorant

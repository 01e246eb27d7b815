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
    : m_easy(curl_easy_init()), m_delivery(std::move(delivery)) {
    if (!m_easy)
        throw std::bad_alloc();
    setUp();
    setUpCertificates();
    m_idle.setSingleShot(true);
    m_idle.setInterval(keptFor);
    QObject::connect(&m_idle, &QTimer::timeout, &m_idle, [this] { m_loop.reset(); });
}

CurlHttpTransfer::~CurlHttpTransfer() {
    drop();
}

void CurlHttpTransfer::setUp() {
    CURL* const easy = m_easy.get();
    // A packed body would not have the length that its header names.
    m_headers.reset(curl_slist_append(nullptr, "Accept-Encoding: identity"));
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, m_headers.get());
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "VelmorantDVRTools/" VELMORANT_VERSION);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    // The newer version lets a server send megabytes that nobody has asked for yet.
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, readSize);
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT, timeoutSeconds);
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME, timeoutSeconds);
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, m_error.data());
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
        curl_easy_setopt(m_easy.get(), CURLOPT_CAINFO, file.constData());
    if (!folder.isEmpty())
        curl_easy_setopt(m_easy.get(), CURLOPT_CAPATH, folder.constData());
}

void CurlHttpTransfer::setPort(int port) {
    m_port = port;
}

void CurlHttpTransfer::get(const std::string& text) {
    drop();
    m_redirections = 0;
    QUrl url(QString::fromStdString(text), QUrl::TolerantMode);
    if (isWeb(url)) {
        if (url.scheme() == "http" && url.port() == -1)
            url.setPort(m_port);
        begin(url);
    } else {
        tellLater([this] { fail(0, "not an http address"); });
    }
}

void CurlHttpTransfer::begin(const QUrl& url) {
    if (!m_loop)
        m_loop = std::make_unique<CurlLoop>([this] { progressed(); });
    m_idle.stop();
    m_asked = url;
    m_error.fill('\0');
    const QByteArray address = url.toEncoded(QUrl::RemoveFragment);
    curl_easy_setopt(m_easy.get(), CURLOPT_URL, address.constData());
    m_running = true;
    if (!m_loop->add(m_easy.get()) || m_headersComplete)
        tellLater([this] { progressed(); });
}

void CurlHttpTransfer::drop() {
    ++m_generation;
    if (std::exchange(m_running, false))
        m_loop->remove(m_easy.get());
    if (m_loop)
        m_idle.start();
    m_statusLine.clear();
    m_headersComplete = m_announced = m_dataTold = m_paused = m_complete = false;
    m_body.clear();
    m_taken = 0;
    m_responseCode = 0;
    m_responseText.clear();
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
    if (m_headersComplete)
        return;
    while (line.ends_with('\n') || line.ends_with('\r'))
        line.remove_suffix(1);
    if (line.starts_with("HTTP/")) {
        m_statusLine = line;
    } else if (line.empty()) {
        long status = 0;
        curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
        m_headersComplete = status >= 200;
    }
}

std::size_t CurlHttpTransfer::bodyArrived(const char* bytes, std::size_t, std::size_t size,
                                          void* self) {
    auto* const transfer = static_cast<CurlHttpTransfer*>(self);
    if (transfer->waiting() >= bufferSize) {
        transfer->m_paused = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    transfer->m_body.erase(0, std::exchange(transfer->m_taken, 0));
    transfer->m_body.append(bytes, size);
    return size;
}

void CurlHttpTransfer::progressed() {
    if (!m_running)
        return;
    const auto result = m_loop->takeResult();
    if (result) {
        m_running = false;
        m_idle.start();
    }
    const unsigned asked = m_generation;
    if (m_headersComplete && !m_announced)
        responseBegan();
    if (asked == m_generation && result)
        ended(*result);
    if (asked == m_generation)
        tellData();
}

void CurlHttpTransfer::responseBegan() {
    long status = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    const std::string location = header("Location");
    const std::string reason = reasonOf(m_statusLine);
    if (status >= 300 && status < 400 && !location.empty()) {
        redirected(m_asked.resolved(QUrl(QString::fromStdString(location), QUrl::TolerantMode)));
    } else if (status >= 300) {
        fail(static_cast<int>(status), reason);
    } else {
        m_responseCode = static_cast<int>(status);
        m_responseText = reason;
        announce(TransferState::ResponseCompleted);
    }
}

void CurlHttpTransfer::redirected(const QUrl& target) {
    const bool safe = isWeb(target) && target.host() == m_asked.host() &&
                      target.scheme() == m_asked.scheme() && portOf(target) == portOf(m_asked);
    if (safe && ++m_redirections < mostRedirections) {
        drop();
        begin(target);
    } else {
        fail(0,
             "redirected to another host, or too often: " + target.toDisplayString().toStdString());
    }
}

void CurlHttpTransfer::ended(CURLcode code) {
    m_complete = code == CURLE_OK && m_announced;
    if (!m_complete)
        fail(m_responseCode, described(code));
}

std::string CurlHttpTransfer::described(CURLcode code) const {
    std::string detail = m_error[0] != '\0' ? m_error.data() : curl_easy_strerror(code);
    if (code == CURLE_PEER_FAILED_VERIFICATION)
        return "the server's certificate is not trusted: " + detail;
    return detail;
}

void CurlHttpTransfer::fail(int code, const std::string& text) {
    drop();
    m_responseCode = code;
    m_responseText = text;
    announce(TransferState::Error);
}

void CurlHttpTransfer::announce(TransferState state) {
    m_announced = true;
    deliver([this, state] {
        if (m_listener)
            m_listener(state);
    });
}

void CurlHttpTransfer::tellData() {
    if (!m_announced || (waiting() == 0 && !m_complete) || std::exchange(m_dataTold, true))
        return;
    deliver([this, asked = m_generation] {
        m_dataTold = false;
        if (m_dataListener)
            m_dataListener();
        if (asked == m_generation && waiting() > 0)
            tellLater([this] { tellData(); });
    });
}

void CurlHttpTransfer::tellLater(std::function<void()> call) {
    QTimer::singleShot(0, &m_idle, [this, asked = m_generation, call = std::move(call)] {
        if (asked == m_generation)
            call();
    });
}

void CurlHttpTransfer::deliver(std::function<void()> call) {
    m_delivery([this, asked = m_generation, call = std::move(call)] {
        if (asked == m_generation)
            call();
    });
}

std::string CurlHttpTransfer::header(const std::string& name) const {
    curl_header* found = nullptr;
    if (!m_headersComplete ||
        curl_easy_header(m_easy.get(), name.c_str(), 0, CURLH_HEADER, -1, &found) != CURLHE_OK)
        return {};
    return found->value;
}

std::vector<std::byte> CurlHttpTransfer::chunk(std::size_t size) {
    const std::size_t count = std::min(size, waiting());
    std::vector<std::byte> bytes(count);
    if (count > 0)
        std::memcpy(bytes.data(), m_body.data() + m_taken, count);
    m_taken += count;
    if (waiting() == 0) {
        m_body.clear();
        m_taken = 0;
        // The rest comes, or the next piece of it at once.
        if (m_running && std::exchange(m_paused, false))
            curl_easy_pause(m_easy.get(), CURLPAUSE_CONT);
    }
    return bytes;
}

bool CurlHttpTransfer::atEnd() const {
    return m_complete && waiting() == 0;
}

int CurlHttpTransfer::responseCode() const {
    return m_responseCode;
}

std::string CurlHttpTransfer::responseText() const {
    return m_responseText;
}

void CurlHttpTransfer::onStateChanged(std::function<void(TransferState)> listener) {
    m_listener = std::move(listener);
}

void CurlHttpTransfer::onData(std::function<void()> listener) {
    m_dataListener = std::move(listener);
}

} // namespace velmorant

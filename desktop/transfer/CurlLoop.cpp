#include "desktop/transfer/CurlLoop.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace velmorant {

CurlLoop::CurlLoop(std::function<void()> progressed)
    : m_progressed(std::move(progressed)), m_multi(curl_multi_init()) {
    if (!m_multi)
        throw std::bad_alloc();
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { act(CURL_SOCKET_TIMEOUT, 0); });
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETFUNCTION, &CurlLoop::socketWanted);
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERFUNCTION, &CurlLoop::timeWanted);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERDATA, this);
}

CurlLoop::~CurlLoop() {
    curl_multi_cleanup(m_multi);
}

bool CurlLoop::add(CURL* transfer) {
    curl_multi_add_handle(m_multi, transfer);
    // A connection that is kept takes the request now, without a round of the event loop.
    int running = 0;
    curl_multi_socket_action(m_multi, CURL_SOCKET_TIMEOUT, 0, &running);
    return running > 0;
}

void CurlLoop::remove(CURL* transfer) {
    curl_multi_remove_handle(m_multi, transfer);
}

std::optional<CURLcode> CurlLoop::takeResult() {
    int left = 0;
    while (const CURLMsg* const message = curl_multi_info_read(m_multi, &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        const CURLcode code = message->data.result;
        curl_multi_remove_handle(m_multi, message->easy_handle);
        return code;
    }
    return std::nullopt;
}

int CurlLoop::socketWanted(CURL*, curl_socket_t socket, int what, void* loop, void*) {
    auto* const self = static_cast<CurlLoop*>(loop);
    const bool removed = what == CURL_POLL_REMOVE;
    Watch& watch = self->m_watches[socket];
    self->watch(watch.read, socket, !removed && (what & CURL_POLL_IN) != 0, QSocketNotifier::Read);
    self->watch(watch.write, socket, !removed && (what & CURL_POLL_OUT) != 0,
                QSocketNotifier::Write);
    return 0;
}

// A notifier that is not wanted is kept: this may be called from its own signal, and the next
// transfer of the connection wants it again.
void CurlLoop::watch(std::unique_ptr<QSocketNotifier>& notifier, curl_socket_t socket, bool wanted,
                     QSocketNotifier::Type type) {
    if (wanted && !notifier) {
        notifier = std::make_unique<QSocketNotifier>(socket, type);
        const int event = type == QSocketNotifier::Read ? CURL_CSELECT_IN : CURL_CSELECT_OUT;
        QObject::connect(notifier.get(), &QSocketNotifier::activated, &m_timer,
                         [this, socket, event] { act(socket, event); });
    }
    if (notifier)
        notifier->setEnabled(wanted);
}

int CurlLoop::timeWanted(CURLM*, long milliseconds, void* loop) {
    auto* const self = static_cast<CurlLoop*>(loop);
    if (milliseconds < 0)
        self->m_timer.stop();
    else
        self->m_timer.start(
            static_cast<int>(std::min<long>(milliseconds, std::numeric_limits<int>::max())));
    return 0;
}

void CurlLoop::act(curl_socket_t socket, int events) {
    int running = 0;
    curl_multi_socket_action(m_multi, socket, events, &running);
    m_progressed();
}

} // namespace velmorant

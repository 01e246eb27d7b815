#include "update/FileDownload.h"

#include "common/StepError.h"
#include "common/textRules.h"

#include <charconv>
#include <string_view>
#include <utility>

namespace velmorant {

namespace {

constexpr int ok = 200;
constexpr int httpPort = 80;
constexpr int httpsPort = 443;
// Between two rounds of the event loop. Many small chunks would cost more in events than in bytes,
// more of them would be felt in the windows.
constexpr int chunksPerEvent = 256;

std::uint64_t lengthOf(const std::string& text) {
    std::uint64_t length = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, length);
    if (result.ec != std::errc() || result.ptr != end)
        throw StepError("the server tells no sensible length: " + text);
    return length;
}

bool isHttps(const std::string& url) {
    return equalsIgnoringCase(leftCharacters(url, 8), "https://");
}

// A catalogue tells no rights.
bool isProgram(const std::vector<std::byte>& start) {
    const std::string_view text(reinterpret_cast<const char*>(start.data()), start.size());
    return text.starts_with("\x7f"
                            "ELF") ||
           text.starts_with("#!");
}

} // namespace

FileDownload::FileDownload(HttpTransfer& transfer, ProgramTree& tree, DownloadListener listener)
    : m_transfer(transfer), m_tree(tree), m_listener(std::move(listener)) {
    m_transfer.onStateChanged([this](TransferState state) { stateChanged(state); });
    m_transfer.onData([this] { dataArrived(); });
}

FileDownload::~FileDownload() {
    cancel();
    m_transfer.onStateChanged({});
    m_transfer.onData({});
}

void FileDownload::start(const DownloadRequest& request) {
    cancel();
    m_request = request;
    m_transfer.setPort(isHttps(request.url) ? httpsPort : httpPort);
    m_transfer.get(request.url);
}

void FileDownload::cancel() {
    if (m_request)
        m_transfer.cancel();
    m_request.reset();
    m_file.reset();
    m_length.reset();
    m_digest.reset();
}

template <typename Step>
void FileDownload::guard(Step step) {
    try {
        step();
    } catch (const StepError& error) {
        fail(DownloadFault::Other, error.what());
    }
}

void FileDownload::stateChanged(TransferState state) {
    if (!m_request)
        return;
    if (state == TransferState::Error) {
        const int code = m_transfer.responseCode();
        const std::string status = code > 0 ? std::to_string(code) + " " : std::string();
        fail(code == 0 ? DownloadFault::NotConnected : DownloadFault::Other,
             status + m_transfer.responseText());
        return;
    }
    guard([this] { openFile(); });
}

void FileDownload::openFile() {
    if (m_transfer.responseCode() != ok)
        throw StepError("the server answers " + std::to_string(m_transfer.responseCode()) + " " +
                        m_transfer.responseText());
    const std::string length = m_transfer.header("Content-Length");
    if (!length.empty()) {
        m_length = lengthOf(length);
        if (*m_length > m_request->largest)
            throw StepError("the file is larger than it can be");
        if (m_listener.length)
            m_listener.length(static_cast<std::int64_t>(*m_length));
    }
    m_file = m_tree.beginFile(m_request->path);
    m_digest.emplace();
}

void FileDownload::dataArrived() {
    if (m_request && m_file)
        guard([this] { writeChunks(); });
}

void FileDownload::writeChunks() {
    for (int i = 0; i < chunksPerEvent; ++i) {
        const std::vector<std::byte> chunk = m_transfer.chunk(chunkSize);
        if (chunk.empty())
            break;
        if (m_file->size() + chunk.size() > m_request->largest)
            throw StepError("the file is larger than it can be");
        if (m_file->size() == 0 && m_file->isNew() && isProgram(chunk))
            m_file->makeExecutable();
        m_file->write(chunk);
        m_digest->add(chunk);
        if (m_listener.written)
            m_listener.written(static_cast<std::int64_t>(m_file->size()));
        // The listener may have closed the window.
        if (!m_file)
            return;
    }
    if (m_transfer.atEnd())
        finish();
}

void FileDownload::finish() {
    if (m_length && m_file->size() != *m_length)
        throw StepError("the file has " + std::to_string(m_file->size()) + " of " +
                        std::to_string(*m_length) + " bytes");
    const std::string& wanted = m_request->sha256;
    if (!wanted.empty() && !equalsIgnoringCase(wanted, m_digest->hexDigits()))
        throw StepError("the file is not the one of the catalogue");
    m_tree.add(std::move(m_file));
    m_request.reset();
    m_length.reset();
    m_digest.reset();
    if (m_listener.complete)
        m_listener.complete();
}

void FileDownload::fail(DownloadFault fault, const std::string& reason) {
    const std::string described = m_request ? m_request->url + ": " + reason : reason;
    cancel();
    if (m_listener.failed)
        m_listener.failed({fault, described});
}

} // namespace velmorant

#pragma once

#include "ports/HttpTransfer.h"
#include "update/ProgramPath.h"
#include "update/ProgramTree.h"
#include "update/Sha256.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace velmorant {

struct DownloadRequest {
    std::string url;
    ProgramPath path;
    std::string sha256{};               ///< checked when not empty
    std::uint64_t largest = UINT64_MAX; ///< a longer body is a failure
};

enum class DownloadFault { NotConnected, Other };

struct DownloadFailure {
    DownloadFault fault;
    std::string reason; ///< with the address
};

/// What a listener learns of a download. Exactly one of `complete` and `failed` is called, unless
/// the download was cancelled.
struct DownloadListener {
    std::function<void(std::int64_t maximum)>
        length; ///< the response announces its "Content-Length"
    std::function<void(std::int64_t written)> written; ///< after each chunk
    std::function<void()> complete;                    ///< the file is in the tree's group
    std::function<void(const DownloadFailure&)> failed;
};

/// Fetches one file at a time into the program folder, written beside its destination. The file
/// joins the tree's group only when the response was 200, the body ended well and had the announced
/// length, and the digest fits. A program that was not there before gets the right to run.
class FileDownload {
  public:
    static constexpr std::size_t chunkSize = 1024;

    /// Transfer and tree must outlive the object.
    FileDownload(HttpTransfer& transfer, ProgramTree& tree, DownloadListener listener);
    ~FileDownload();
    FileDownload(const FileDownload&) = delete;
    FileDownload& operator=(const FileDownload&) = delete;

    /// Ends one under way. https uses port 443, http the address's own, else 80.
    void start(const DownloadRequest& request);
    void cancel();
    bool running() const { return m_request.has_value(); }

  private:
    void stateChanged(TransferState state);
    void dataArrived();
    void openFile();
    void writeChunks();
    void finish();
    void fail(DownloadFault fault, const std::string& reason);
    template <typename Step>
    void guard(Step step);

    HttpTransfer& m_transfer;
    ProgramTree& m_tree;
    DownloadListener m_listener;
    std::optional<DownloadRequest> m_request;
    std::unique_ptr<PendingFile> m_file;
    std::optional<std::uint64_t> m_length;
    std::optional<Sha256> m_digest;
};

} // namespace velmorant

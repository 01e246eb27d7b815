// What every reader of one recording shares: the bytes behind a small window, the call that ends a
// long run, and the list of what was found to be wrong on the way.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

#include "telemetry/ByteSource.h"
#include "telemetry/Bytes.h"

namespace velmorant::telemetry {

struct ReadOptions {
    // Asked now and then; true ends the reading with what there is.
    std::function<bool()> shouldStop;
    // Bytes scanned of the bytes to scan; called only while a whole file is searched.
    std::function<void(std::uint64_t done, std::uint64_t total)> progress;
};

class Input {
  public:
    explicit Input(ByteSource& source, ReadOptions options = {})
        : source_(source), options_(std::move(options)) {}

    const std::string& name() const { return source_.name(); }
    std::uint64_t size() const { return source_.size(); }
    ByteSource& source() { return source_; }
    const ReadOptions& options() const { return options_; }

    // Up to `length` (at most windowSize) bytes at `offset`, fewer at the file's end. The view is
    // good until the next call.
    Bytes peek(std::uint64_t offset, std::size_t length);
    // A part of any length up to `limit`; shorter at the file's end, empty above the limit.
    std::vector<std::uint8_t> read(std::uint64_t offset, std::uint64_t length, std::size_t limit);

    bool stopped();
    void progress(std::uint64_t done) const {
        if (options_.progress) {
            options_.progress(done, size());
        }
    }

    Error error(std::string box, std::uint64_t offset, std::string reason,
                ReasonCode code = ReasonCode::damaged, std::int64_t amount = 0) const {
        return {name(), std::move(box), offset, std::move(reason), ErrorKind::damaged,
                code,   amount};
    }
    // Keeps the first few complaints; a damaged file could make one for each of its samples.
    void note(Error error);
    const std::vector<Error>& notes() const { return notes_; }

    static constexpr std::size_t windowSize = 4096;

  private:
    ByteSource& source_;
    ReadOptions options_;
    std::array<std::uint8_t, windowSize> window_{};
    std::uint64_t windowStart_ = 0;
    std::size_t windowLength_ = 0;
    unsigned stopCalls_ = 0;
    bool stopped_ = false;
    std::vector<Error> notes_;
};

} // namespace velmorant::telemetry

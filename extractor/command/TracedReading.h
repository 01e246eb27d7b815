// A file that remembers which of its bytes were read.
#pragma once

#include <map>
#include <memory>

#include "telemetry/ByteSource.h"

namespace velmorant::telemetry {

class TracedSource final : public ByteSource {
  public:
    explicit TracedSource(std::unique_ptr<ByteSource> file) : file_(std::move(file)) {}

    const std::string& name() const override { return file_->name(); }
    std::uint64_t size() const override { return file_->size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> into) override {
        const std::size_t got = file_->readAt(offset, into);
        add(offset, offset + got);
        return got;
    }
    void announce(std::uint64_t offset, std::uint64_t length) override {
        file_->announce(offset, length);
    }

    void forget() { read_.clear(); }
    // How many of the bytes from `begin` up to `end` were read.
    std::uint64_t readBetween(std::uint64_t begin, std::uint64_t end) const;

  private:
    void add(std::uint64_t begin, std::uint64_t end);

    std::unique_ptr<ByteSource> file_;
    std::map<std::uint64_t, std::uint64_t> read_; // begin to end, none touching another
};

} // namespace velmorant::telemetry

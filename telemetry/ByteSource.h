// Where a recording's bytes come from: a file, or memory in tests.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "telemetry/Result.h"

namespace velmorant::telemetry {

class ByteSource {
  public:
    virtual ~ByteSource() = default;

    // The path as it was given; errors name it.
    virtual const std::string& name() const = 0;
    virtual std::uint64_t size() const = 0;
    // Fills `into` from `offset` on and returns how many bytes were there: fewer than asked only at
    // the end of the file or after a read error.
    virtual std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> into) = 0;
    // Tells the system that the range is wanted soon.
    virtual void announce(std::uint64_t offset, std::uint64_t length) = 0;
};

// A file read by position; it keeps no place and maps nothing.
Result<std::unique_ptr<ByteSource>> openFile(const std::string& path);

class MemorySource final : public ByteSource {
  public:
    MemorySource(std::string name, std::vector<std::uint8_t> bytes)
        : name_(std::move(name)), bytes_(std::move(bytes)) {}

    const std::string& name() const override { return name_; }
    std::uint64_t size() const override { return bytes_.size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> into) override {
        if (offset >= bytes_.size() || into.empty()) {
            return 0;
        }
        const std::size_t length =
            std::min(into.size(), bytes_.size() - static_cast<std::size_t>(offset));
        std::memcpy(into.data(), bytes_.data() + offset, length);
        return length;
    }
    void announce(std::uint64_t, std::uint64_t) override {}

  private:
    std::string name_;
    std::vector<std::uint8_t> bytes_;
};

} // namespace velmorant::telemetry

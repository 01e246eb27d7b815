// ISO base media boxes.
//
//   box      = size:u32be type:4cc [size64:u64be if size == 1] payload
//   size     counts the header too; 0 means "to the end of the enclosing space", allowed at the top
//            level alone
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "telemetry/Input.h"

namespace velmorant::telemetry {

using FourCharacterCode = std::uint32_t;

constexpr FourCharacterCode code(const char (&text)[5]) {
    FourCharacterCode value = 0;
    for (int i = 0; i < 4; ++i) {
        value = value << 8 | static_cast<unsigned char>(text[i]);
    }
    return value;
}

// Four printable characters; others show as '.'.
std::string codeText(FourCharacterCode value);

struct Box {
    FourCharacterCode type = 0;
    std::uint64_t offset = 0;      // of the header
    std::uint64_t payload = 0;     // of the first byte behind the header
    std::uint64_t payloadSize = 0; // cut at the end of the enclosing space
    bool cut = false;              // the header claims more than the enclosing space holds

    std::uint64_t end() const { return payload + payloadSize; }
};

// Walks the boxes between two offsets, in file order. It ends at the first header that cannot be
// one; error() then says why.
class BoxWalker {
  public:
    BoxWalker(Input& input, std::uint64_t begin, std::uint64_t end, std::string path)
        : input_(input), at_(begin), end_(end), path_(std::move(path)) {}

    std::optional<Box> next();
    const std::optional<Error>& error() const { return error_; }

  private:
    std::optional<Box> end();
    std::optional<Box> fail(const Box& box, const std::string& reason);

    Input& input_;
    std::uint64_t at_;
    std::uint64_t end_;
    std::string path_; // of the enclosing box; empty at the top level
    std::optional<Error> error_;
};

} // namespace velmorant::telemetry

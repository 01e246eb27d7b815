#include "telemetry/Result.h"

namespace velmorant::telemetry {

namespace {

// A path may hold line feeds and escape sequences; an error stays one harmless line.
std::string onOneLine(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        out.push_back(byte < 0x20 || byte == 0x7f ? '?' : c);
    }
    return out;
}

} // namespace

std::string describe(const Error& error) {
    std::string line = onOneLine(error.file);
    if (!error.box.empty()) {
        line += ": " + onOneLine(error.box);
    }
    if (error.kind == ErrorKind::damaged) {
        line += " at byte " + std::to_string(error.offset);
    }
    return line + ": " + onOneLine(error.reason);
}

} // namespace velmorant::telemetry

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

std::string_view name(ReasonCode code) {
    switch (code) {
    case ReasonCode::empty:
        return "empty";
    case ReasonCode::notARecording:
        return "not-a-recording";
    case ReasonCode::cutOff:
        return "cut-off";
    case ReasonCode::unfinished:
        return "unfinished";
    case ReasonCode::noTelemetry:
        return "no-telemetry";
    case ReasonCode::frontTrack:
        return "front-track";
    case ReasonCode::besideTrack:
        return "beside-track";
    case ReasonCode::timeUp:
        return "time-up";
    case ReasonCode::missing:
        return "missing";
    case ReasonCode::forbidden:
        return "forbidden";
    case ReasonCode::unreadable:
        return "unreadable";
    case ReasonCode::diskFull:
        return "disk-full";
    case ReasonCode::notWritten:
        return "not-written";
    case ReasonCode::damaged:
        break;
    }
    return "damaged";
}

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

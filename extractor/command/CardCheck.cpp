#include "extractor/command/CardCheck.h"

#include <algorithm>

namespace velmorant::telemetry {

namespace {

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text + ' ';
}

std::string plain(std::string text) {
    std::replace_if(
        text.begin(), text.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }, '?');
    return text;
}

const char* word(Health health) {
    return health == Health::good ? "good" : health == Health::wanting ? "WANTING" : "UNREADABLE";
}

} // namespace

CheckedRecording check(const Result<Telemetry>& outcome) {
    CheckedRecording checked;
    if (!outcome) {
        checked.health =
            outcome.error().kind == ErrorKind::unreadable ? Health::unreadable : Health::wanting;
        checked.damage = outcome.error().reason;
        return checked;
    }
    const Telemetry& telemetry = outcome.value();
    std::size_t length = 0;
    for (const Sample& sample : telemetry.samples) {
        length = sample.state == FixState::good ? 0 : length + 1;
        checked.gaps += length == 1 ? 1 : 0;
        checked.longest = std::max(checked.longest, length);
    }
    const auto damage = std::find_if(telemetry.notices.begin(), telemetry.notices.end(),
                                     [](const Error& notice) { return isFault(notice.code); });
    if (damage != telemetry.notices.end()) {
        checked.damage = damage->reason;
    }
    if (telemetry.fixes() == 0 || !checked.damage.empty()) {
        checked.health = Health::wanting;
    }
    return checked;
}

void writeCheckHeading(std::ostream& out) {
    out << padded("", 10) << padded("family", 30) << padded("seconds", 8) << padded("fixes", 8)
        << padded("clock", 8) << padded("gaps", 14) << "recording: damage\n";
}

void writeCheck(const std::string& path, const Result<Telemetry>& outcome, std::ostream& out) {
    const CheckedRecording checked = check(outcome);
    std::string gaps = std::to_string(checked.gaps);
    if (checked.gaps > 0) {
        gaps += " (" + std::to_string(checked.longest) + " s)";
    }
    std::string text = padded(word(checked.health), 10);
    if (outcome) {
        const Telemetry& telemetry = outcome.value();
        text += padded(telemetry.family, 30) + padded(std::to_string(telemetry.samples.size()), 8) +
                padded(std::to_string(telemetry.fixes()), 8) +
                padded(std::string(name(telemetry.base)), 8) + padded(gaps, 14);
    } else {
        text +=
            padded("-", 30) + padded("-", 8) + padded("-", 8) + padded("-", 8) + padded("-", 14);
    }
    out << text << plain(path) << (checked.damage.empty() ? "" : ": " + plain(checked.damage))
        << '\n';
}

} // namespace velmorant::telemetry

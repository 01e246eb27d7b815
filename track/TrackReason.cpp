#include "track/TrackReason.h"

#include "common/fillIn.h"
#include "common/textRules.h"

#include <algorithm>
#include <array>
#include <vector>

namespace velmorant {

namespace {

constexpr std::size_t longestLine = 300;

struct Words {
    std::string_view code;
    const char* addition;
};

/// The codes of the extractor; "track-file" is a file of its that cannot be used, "same-file" a
/// track that would be written over its recording.
constexpr std::array knownReasons = {
    Words{"empty", "reason.empty"},
    Words{"not-a-recording", "reason.notARecording"},
    Words{"cut-off", "reason.cutOff"},
    Words{"unfinished", "reason.unfinished"},
    Words{"no-telemetry", "reason.noTelemetry"},
    Words{"front-track", "reason.frontTrack"},
    Words{"beside-track", "reason.besideTrack"},
    Words{"time-up", "reason.timeUp"},
    Words{"missing", "reason.missing"},
    Words{"forbidden", "reason.forbidden"},
    Words{"unreadable", "reason.unreadable"},
    Words{"disk-full", "reason.diskFull"},
    Words{"not-written", "reason.notWritten"},
    Words{"track-file", "reason.trackFile"},
    Words{"same-file", "reason.sameFile"},
};

std::string additionOf(const TrackReason& reason) {
    if (reason.code == "cut-off" && reason.amount == 1)
        return "reason.cutOffBySecond";
    if (reason.code == "cut-off" && reason.amount > 1)
        return "reason.cutOffBySeconds";
    const bool noTrack = reason.kind == TrackReason::Kind::NoTrack;
    if (reason.code == "damaged")
        return noTrack ? "reason.damaged" : "reason.damagedInPart";
    const auto known = std::find_if(knownReasons.begin(), knownReasons.end(),
                                    [&](const Words& each) { return each.code == reason.code; });
    if (known != knownReasons.end())
        return known->addition;
    return noTrack ? "reason.noTrack" : "reason.partOfTrack";
}

/// The code in "NAME: [code] text"; empty without.
std::string_view codeOf(std::string_view line) {
    const std::size_t open = line.find('[');
    const std::size_t close = line.find(']', open == std::string_view::npos ? 0 : open);
    if (open == std::string_view::npos || close == std::string_view::npos)
        return {};
    // Brackets behind that belong to a path.
    if (line.substr(0, open).find('/') != std::string_view::npos)
        return {};
    const std::string_view code = line.substr(open + 1, close - open - 1);
    const bool plain = std::all_of(code.begin(), code.end(),
                                   [](char c) { return (c >= 'a' && c <= 'z') || c == '-'; });
    return plain ? code : std::string_view();
}

} // namespace

std::string plainWords(const TrackReason& reason, const Texts& texts) {
    return fillIn(texts.addition(additionOf(reason)), "%1", std::to_string(reason.amount));
}

std::string wordsWithDetails(const TrackReason& reason, const Texts& texts) {
    const std::string plain = plainWords(reason, texts);
    return reason.technical.empty() ? plain : plain + "\n" + reason.technical;
}

std::string boundedLine(std::string_view text) {
    std::string line = leftCharacters(text, longestLine);
    if (line.size() < text.size())
        line += "…";
    std::replace_if(
        line.begin(), line.end(),
        [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, ' ');
    return line;
}

TrackReason reasonOfWords(std::string_view words) {
    TrackReason reason;
    std::string_view told;
    for (std::size_t begin = 0; begin < words.size();) {
        const std::size_t end = std::min(words.find('\n', begin), words.size());
        const std::string_view line = words.substr(begin, end - begin);
        begin = end + 1;
        const std::string_view code = codeOf(line);
        // The line that names its reason counts more than what is written behind it.
        if (!code.empty())
            reason.code = code;
        if (!line.empty() && (!code.empty() || reason.code.empty()))
            told = line;
    }
    reason.technical = boundedLine(told);
    return reason;
}

} // namespace velmorant

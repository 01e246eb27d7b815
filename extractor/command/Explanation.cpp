#include "extractor/command/Explanation.h"

#include <algorithm>
#include <array>

#include "extractor/command/TracedReading.h"
#include "telemetry/Box.h"
#include "telemetry/ClockEvidence.h"
#include "telemetry/Extract.h"
#include "telemetry/export/ExportText.h"

namespace velmorant::telemetry {

namespace {

bool holdsBoxes(FourCharacterCode type) {
    constexpr std::array containers = {code("moov"), code("trak"), code("mdia"), code("minf"),
                                       code("stbl"), code("udta"), code("edts"), code("dinf")};
    return std::find(containers.begin(), containers.end(), type) != containers.end();
}

// Walks the boxes a second time, untraced.
class BoxLister {
  public:
    BoxLister(Input& input, const TracedSource& traced, std::vector<ReadBox>& into)
        : input_(input), traced_(traced), into_(into) {}

    void list(std::uint64_t begin, std::uint64_t end, const std::string& path, int depth) {
        constexpr int deepest = 8;
        constexpr std::size_t mostBoxes = 4096;
        int tracks = 0;
        BoxWalker walker(input_, begin, end, path);
        while (into_.size() < mostBoxes) {
            const auto box = walker.next();
            if (!box) {
                return;
            }
            std::string own = path + (path.empty() ? "" : "/") + codeText(box->type);
            if (box->type == code("trak")) {
                own += '[' + std::to_string(++tracks) + ']';
            }
            if (holdsBoxes(box->type) && depth < deepest) {
                if (box->type != code("trak") || !isPictureOrSound(*box)) {
                    list(box->payload, box->end(), own, depth + 1);
                }
            } else if (const auto read = traced_.readBetween(box->payload, box->end()); read > 0) {
                into_.push_back({own, box->offset, box->end() - box->offset, read});
            }
        }
    }

  private:
    bool isPictureOrSound(const Box& track) {
        BoxWalker inTrack(input_, track.payload, track.end(), {});
        while (const auto media = inTrack.next()) {
            if (media->type != code("mdia")) {
                continue;
            }
            BoxWalker inMedia(input_, media->payload, media->end(), {});
            while (const auto box = inMedia.next()) {
                if (box->type == code("hdlr")) {
                    const auto handler = input_.peek(box->payload, 12).u32be(8);
                    return handler == code("vide") || handler == code("soun");
                }
            }
        }
        return false;
    }

    Input& input_;
    const TracedSource& traced_;
    std::vector<ReadBox>& into_;
};

std::string placeText(std::size_t second) {
    const std::string seconds = std::to_string(second % 60);
    return std::to_string(second / 60) + (seconds.size() == 1 ? ":0" : ":") + seconds;
}

std::string rangeText(const StateRun& run) {
    return placeText(run.first) + (run.first == run.last ? "" : " to " + placeText(run.last));
}

// What is wrong with a state's seconds, for people who do not know the program's short words.
std::string_view meaning(FixState state) {
    switch (state) {
    case FixState::good:
        return "trusted";
    case FixState::noReading:
        return "the recording holds nothing for these seconds";
    case FixState::noFix:
        return "the recorder says itself that it had no position";
    case FixState::badDate:
        return "the date or time with the position cannot be";
    case FixState::outOfRange:
        return "the position is beyond the earth's degrees";
    case FixState::zeroPosition:
        return "0 and 0, which recorders write for nothing";
    case FixState::jump:
        return "no car gets there in that time";
    case FixState::stale:
        return "left over from an earlier drive";
    case FixState::frozen:
        return "no movement, though the car was elsewhere a second later";
    case FixState::parkedDrift:
        return "a speed without a movement";
    case FixState::enciphered:
        return "enciphered by a rule that is unknown";
    }
    return "";
}

// A path or a name out of a file may hold what would move a terminal's cursor.
std::string plain(std::string text) {
    std::replace_if(
        text.begin(), text.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }, '?');
    return text;
}

void writeSeconds(const Telemetry& telemetry, std::ostream& out) {
    const auto runs = stateRunsOf(telemetry);
    constexpr std::array states = {
        FixState::good,       FixState::noReading,    FixState::noFix,     FixState::badDate,
        FixState::outOfRange, FixState::zeroPosition, FixState::jump,      FixState::stale,
        FixState::frozen,     FixState::parkedDrift,  FixState::enciphered};
    for (const FixState state : states) {
        std::size_t seconds = 0;
        std::string ranges;
        std::size_t shown = 0;
        constexpr std::size_t mostShown = 20;
        for (const StateRun& run : runs) {
            if (run.state != state) {
                continue;
            }
            seconds += run.last - run.first + 1;
            if (shown++ < mostShown) {
                ranges += (ranges.empty() ? "" : ", ") + rangeText(run);
            }
        }
        if (seconds > 0) {
            out << "  " << seconds << " s " << name(state) << " (" << meaning(state)
                << "): " << ranges << (shown > mostShown ? ", ..." : "") << '\n';
        }
    }
}

void appendJsonMember(std::string& out, const char* key, std::string_view value) {
    out += ",\"";
    out += key;
    out += "\":";
    appendJsonText(out, value);
}

void appendClockJson(std::string& out, const Telemetry& telemetry) {
    out += ",\"clock\":{\"base\":";
    appendJsonText(out, name(telemetry.base));
    appendJsonMember(out, "meaning", clockText(telemetry));
    if (telemetry.clock.minutesAheadOfUtc) {
        out += ",\"minutesAheadOfUtc\":" + std::to_string(*telemetry.clock.minutesAheadOfUtc);
    }
    out += ",\"reasons\":[";
    for (std::size_t i = 0; i < telemetry.clock.reasons.size(); ++i) {
        out += i == 0 ? "" : ",";
        appendJsonText(out, telemetry.clock.reasons[i]);
    }
    out += "]}";
}

void appendErrorJson(std::string& out, const Error& error) {
    out += "{\"box\":";
    appendJsonText(out, error.box);
    out += ",\"offset\":" + std::to_string(error.offset);
    appendJsonMember(out, "reason", error.reason);
    out += '}';
}

void appendTelemetryJson(std::string& out, const Telemetry& telemetry) {
    appendJsonMember(out, "family", telemetry.family);
    out += ",\"duration\":";
    appendFixed(out, telemetry.duration, 3);
    out += ",\"seconds\":" + std::to_string(telemetry.samples.size());
    out += ",\"trusted\":" + std::to_string(telemetry.fixes());
    if (!telemetry.samples.empty() && telemetry.base != TimeBase::none) {
        std::string start;
        appendTime(start, telemetry.samples.front(), telemetry);
        appendJsonMember(out, "start", start);
    }
    appendClockJson(out, telemetry);
    out += ",\"states\":[";
    bool first = true;
    for (const StateRun& run : stateRunsOf(telemetry)) {
        out += first ? "{\"state\":" : ",{\"state\":";
        first = false;
        appendJsonText(out, name(run.state));
        out += ",\"first\":" + std::to_string(run.first) + ",\"last\":" + std::to_string(run.last) +
               '}';
    }
    out += "],\"notices\":[";
    for (std::size_t i = 0; i < telemetry.notices.size(); ++i) {
        out += i == 0 ? "" : ",";
        appendErrorJson(out, telemetry.notices[i]);
    }
    out += ']';
}

} // namespace

std::vector<StateRun> stateRunsOf(const Telemetry& telemetry) {
    std::vector<StateRun> runs;
    for (std::size_t i = 0; i < telemetry.samples.size(); ++i) {
        const FixState state = telemetry.samples[i].state;
        if (runs.empty() || runs.back().state != state) {
            runs.push_back({state, i, i});
        }
        runs.back().last = i;
    }
    return runs;
}

Explanation explain(const std::string& path) {
    auto file = openFile(path);
    if (!file) {
        return {.path = path, .outcome = file.error()};
    }
    TracedSource traced(std::move(file.value()));
    const auto siblings = siblingsOf(path);
    Explanation explanation{
        .path = path, .outcome = extract(traced, {}, siblings.get()), .fileSize = traced.size()};
    const auto all = families();
    const auto taken = std::find_if(all.begin(), all.end(), [&](const Family& family) {
        return explanation.outcome && family.name == explanation.outcome.value().family;
    });
    if (taken != all.end()) {
        // Once more, for what this family alone reads.
        traced.forget();
        (void)extractWith(std::span(&*taken, 1), traced, {}, siblings.get());
    }
    if (const auto again = openFile(path)) {
        Input input(*again.value());
        BoxLister(input, traced, explanation.boxes).list(0, input.size(), {}, 0);
    }
    return explanation;
}

void writeExplanation(const Explanation& explanation, std::ostream& out) {
    out << plain(explanation.path) << '\n';
    if (!explanation.outcome) {
        out << "cannot be used: " << plain(describe(explanation.outcome.error())) << '\n';
    } else {
        const Telemetry& telemetry = explanation.outcome.value();
        std::string length;
        appendFixed(length, telemetry.duration, 1);
        out << "format: " << telemetry.family << '\n'
            << "length: " << length << " s, of which " << telemetry.fixes() << " of "
            << telemetry.samples.size() << " seconds have a position that is trusted\n";
        writeSeconds(telemetry, out);
        out << "clock: " << clockText(telemetry) << '\n';
        if (!telemetry.samples.empty() && telemetry.base != TimeBase::none) {
            std::string start;
            appendTime(start, telemetry.samples.front(), telemetry);
            out << "  the recording starts at " << start << '\n';
        }
        for (const std::string& reason : telemetry.clock.reasons) {
            out << "  " << reason << '\n';
        }
        for (const Error& notice : telemetry.notices) {
            out << "notice: " << plain(describe(notice)) << '\n';
        }
    }
    out << "read from a file of " << explanation.fileSize << " bytes:\n";
    for (const ReadBox& box : explanation.boxes) {
        out << "  " << plain(box.path) << " at byte " << box.offset << ": " << box.read << " of "
            << box.size << " bytes\n";
    }
}

void writeExplanationAsJson(const Explanation& explanation, std::ostream& out) {
    std::string text = "{\"recording\":";
    appendJsonText(text, explanation.path);
    text += ",\"size\":" + std::to_string(explanation.fileSize);
    if (explanation.outcome) {
        appendTelemetryJson(text, explanation.outcome.value());
    } else {
        text += ",\"error\":";
        appendErrorJson(text, explanation.outcome.error());
    }
    text += ",\"boxes\":[";
    for (std::size_t i = 0; i < explanation.boxes.size(); ++i) {
        const ReadBox& box = explanation.boxes[i];
        text += i == 0 ? "{\"path\":" : ",{\"path\":";
        appendJsonText(text, box.path);
        text += ",\"offset\":" + std::to_string(box.offset) +
                ",\"size\":" + std::to_string(box.size) + ",\"read\":" + std::to_string(box.read) +
                '}';
    }
    out << text << "]}";
}

} // namespace velmorant::telemetry

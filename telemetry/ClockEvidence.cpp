#include "telemetry/ClockEvidence.h"

#include <algorithm>

#include "telemetry/UtcTime.h"

namespace velmorant::telemetry {

namespace {

constexpr std::int64_t quarter = 900; // every time zone is a whole number of quarters
constexpr std::int64_t farthest = 14 * std::int64_t{3600}; // of a zone from UTC
constexpr std::int64_t slack = 15; // seconds by which two clocks set to one time may differ

// How far one clock is ahead of the other as a zone would have it; nothing for other differences.
std::optional<std::int64_t> zoneBetween(std::int64_t difference) {
    const auto whole = static_cast<std::int64_t>(
        std::llround(static_cast<double>(difference) / static_cast<double>(quarter)) * quarter);
    return std::abs(difference - whole) <= slack && std::abs(whole) <= farthest
               ? std::optional(whole)
               : std::nullopt;
}

// Whether a zone is kept at this longitude: the sun's time give or take what countries add to it.
bool keptAt(double longitude, std::int64_t zone) {
    constexpr double degreesPerHour = 15;
    constexpr double mostAway = 3; // hours
    return !known(longitude) ||
           std::abs(std::remainder(static_cast<double>(zone) / 3600 - longitude / degreesPerHour,
                                   24)) <= mostAway;
}

std::string hours(std::int64_t seconds) {
    const std::int64_t minutes = std::abs(seconds) / 60;
    std::string text = std::to_string(minutes / 60);
    if (minutes % 60 != 0) {
        text += minutes % 60 < 10 ? ":0" : ":";
        text += std::to_string(minutes % 60);
    }
    return text + " h";
}

std::string aheadOrBehind(std::int64_t seconds) {
    return hours(seconds) + (seconds > 0 ? " ahead of" : " behind");
}

// How far the clock is ahead of the creation time, which some recorders set at the end.
std::optional<std::int64_t> aheadOfCreation(const ClockWitnesses& witnesses) {
    if (witnesses.creation <= 0) {
        return std::nullopt;
    }
    const auto fromStart = zoneBetween(witnesses.clock - witnesses.creation);
    return fromStart ? fromStart
                     : zoneBetween(witnesses.clock + std::llround(witnesses.duration) -
                                   witnesses.creation);
}

// Names the offset where the creation time, which is UTC by its definition, fits one.
void fitOffset(const ClockWitnesses& witnesses, ClockEvidence& evidence) {
    const auto ahead = aheadOfCreation(witnesses);
    if (ahead && *ahead != 0 && keptAt(witnesses.longitude, *ahead)) {
        evidence.minutesAheadOfUtc = static_cast<int>(*ahead / 60);
        evidence.reasons.push_back("it is " + aheadOrBehind(*ahead) + " the creation time");
    }
}

// Each of the following gives nothing where its witness is silent.
using Finding = std::optional<ClockEvidence>;

Finding fromName(const ClockWitnesses& witnesses) {
    const auto named = timeInName(witnesses.path);
    const auto zone = named ? zoneBetween(*named - witnesses.clock) : std::nullopt;
    if (!zone) {
        return std::nullopt;
    }
    ClockEvidence evidence;
    if (*zone == 0) {
        evidence.base = TimeBase::camera;
        evidence.reasons.emplace_back(
            "the file's name shows the same time, so the times come from the clock that names the "
            "files");
        fitOffset(witnesses, evidence);
    } else if (keptAt(witnesses.longitude, *zone)) {
        evidence.base = TimeBase::utc;
        evidence.reasons.push_back("the file's name is " + aheadOrBehind(*zone) +
                                   " these times, as local time is there");
    } else {
        return std::nullopt;
    }
    return evidence;
}

Finding fromFirstFix(const ClockWitnesses& witnesses) {
    if (!witnesses.setAtFirstFix) {
        return std::nullopt;
    }
    const auto zone = zoneBetween(*witnesses.setAtFirstFix);
    if (!zone || *zone == 0) {
        return std::nullopt;
    }
    ClockEvidence evidence;
    const bool toLocal = keptAt(witnesses.longitude, *zone);
    const bool toUtc = keptAt(witnesses.longitude, -*zone);
    const std::string set = "with the first position the clock was set " + hours(*zone) +
                            (*zone > 0 ? " forwards" : " back");
    if (toUtc && !toLocal) {
        evidence.base = TimeBase::utc;
        evidence.reasons.push_back(set + ", from the local time there to UTC");
        return evidence;
    }
    evidence.base = TimeBase::camera;
    if (toLocal && !toUtc) {
        evidence.minutesAheadOfUtc = static_cast<int>(*zone / 60);
        evidence.reasons.push_back(set + ", from UTC to the local time there");
    } else {
        evidence.reasons.push_back(set + ", so one of the two is not UTC");
        fitOffset(witnesses, evidence);
    }
    return evidence;
}

Finding fromCreation(const ClockWitnesses& witnesses) {
    const auto ahead = aheadOfCreation(witnesses);
    if (!ahead) {
        return std::nullopt;
    }
    ClockEvidence evidence;
    evidence.base = TimeBase::utc;
    if (*ahead == 0) {
        evidence.reasons.emplace_back("the creation time is the same");
        return evidence;
    }
    const bool isLocal = keptAt(witnesses.longitude, *ahead);
    const bool creationIsLocal = keptAt(witnesses.longitude, -*ahead);
    const std::string differs = "the times are " + aheadOrBehind(*ahead) + " the creation time";
    if (isLocal && !creationIsLocal) {
        evidence.base = TimeBase::camera;
        evidence.minutesAheadOfUtc = static_cast<int>(*ahead / 60);
        evidence.reasons.push_back(differs + ", as local time is there");
    } else if (creationIsLocal && !isLocal) {
        evidence.reasons.push_back(differs + ", which is on the local time there");
    } else {
        evidence.reasons.push_back(differs + "; nothing tells which of them is UTC");
    }
    return evidence;
}

bool oneOf(char c, std::string_view set) {
    return set.find(c) != std::string_view::npos;
}

// So many digits at a place, -1 where there are fewer; the place moves behind them.
int take(std::string_view text, std::size_t& at, std::size_t count) {
    int value = 0;
    for (std::size_t i = 0; i < count; ++i, ++at) {
        if (at >= text.size() || text[at] < '0' || text[at] > '9') {
            return -1;
        }
        value = value * 10 + (text[at] - '0');
    }
    return value;
}

std::optional<std::int64_t> timeAt(std::string_view text, std::size_t at, std::size_t yearDigits) {
    CivilTime time;
    time.year = take(text, at, yearDigits) + (yearDigits == 2 ? 2000 : 0);
    int second = 0;
    for (int* part : {&time.month, &time.day, &time.hour, &time.minute, &second}) {
        at += at < text.size() && oneOf(text[at], "_-. ") ? 1 : 0;
        *part = take(text, at, 2);
        if (*part < 0) {
            return std::nullopt;
        }
    }
    if (at < text.size() && oneOf(text[at], "0123456789")) {
        return std::nullopt; // a longer number is a count
    }
    time.second = second;
    const auto milliseconds = time.year < 2000 ? std::nullopt : toMilliseconds(time);
    return milliseconds ? std::optional(*milliseconds / 1000) : std::nullopt;
}

} // namespace

std::optional<std::int64_t> timeInName(std::string_view path) {
    const std::string_view name = path.substr(path.find_last_of("/\\") + 1);
    for (const std::size_t yearDigits : {std::size_t{4}, std::size_t{2}}) {
        for (std::size_t at = 0; at < name.size(); ++at) {
            const bool startsNumber =
                oneOf(name[at], "0123456789") && (at == 0 || !oneOf(name[at - 1], "0123456789"));
            if (const auto time = startsNumber ? timeAt(name, at, yearDigits) : std::nullopt) {
                return time;
            }
        }
    }
    return std::nullopt;
}

ClockEvidence judgeClock(const ClockWitnesses& witnesses) {
    ClockEvidence evidence;
    evidence.base = witnesses.declared;
    switch (witnesses.declared) {
    case TimeBase::none:
        evidence.reasons.emplace_back("the recording holds no time at all");
        break;
    case TimeBase::creation:
        evidence.reasons.emplace_back("the format has no clock: the times count from the creation "
                                      "time, whatever the recorder meant by it");
        break;
    case TimeBase::camera:
        evidence.reasons.emplace_back("the format holds the recorder's own clock");
        fitOffset(witnesses, evidence);
        break;
    case TimeBase::utc:
        if (witnesses.standard) {
            evidence.reasons.emplace_back("the format defines its times as UTC");
            break;
        }
        for (const auto& ask : {fromName, fromFirstFix, fromCreation}) {
            if (const auto found = ask(witnesses)) {
                return *found;
            }
        }
        evidence.reasons.emplace_back(
            "the format is said to hold UTC; nothing in the recording speaks for it or against it");
        break;
    }
    return evidence;
}

std::string describe(const ClockEvidence& clock) {
    switch (clock.base) {
    case TimeBase::utc:
        return "UTC";
    case TimeBase::creation:
        return "counted from the creation time, zone unknown";
    case TimeBase::camera:
        return clock.minutesAheadOfUtc
                   ? "the recorder's own clock, " +
                         aheadOrBehind(*clock.minutesAheadOfUtc * std::int64_t{60}) + " UTC"
                   : "the recorder's own clock, zone unknown";
    case TimeBase::none:
        break;
    }
    return "no clock";
}

std::optional<std::int64_t> setAtFirstFix(const std::vector<Sample>& samples) {
    std::int64_t before = noTime; // the clock less the second, in milliseconds
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const Sample& sample = samples[i];
        if (sample.timeRecorded == noTime) {
            continue;
        }
        const std::int64_t clock = sample.timeRecorded - static_cast<std::int64_t>(i) * 1000;
        if (sample.state == FixState::good) {
            return before == noTime ? std::nullopt
                                    : std::optional<std::int64_t>(
                                          std::llround(static_cast<double>(clock - before) / 1000));
        }
        if (sample.state == FixState::noFix) {
            before = clock;
        }
    }
    return std::nullopt;
}

} // namespace velmorant::telemetry

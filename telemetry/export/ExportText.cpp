#include "telemetry/export/ExportText.h"

#include <algorithm>

#include "telemetry/ClockEvidence.h"
#include "telemetry/UtcTime.h"

namespace velmorant::telemetry {

namespace {

void appendTwo(std::string& out, int value, int width = 2) {
    std::string text = std::to_string(value);
    out.append(text.size() < static_cast<std::size_t>(width)
                   ? static_cast<std::size_t>(width) - text.size()
                   : 0,
               '0');
    out += text;
}

bool exported(const Sample& sample, Positions positions) {
    if (positions == Positions::trusted) {
        return sample.state == FixState::good;
    }
    return std::abs(sample.rawLatitude) <= 90 && std::abs(sample.rawLongitude) <= 180;
}

} // namespace

std::vector<std::vector<ExportPoint>> runsOf(const Telemetry& telemetry, Positions positions,
                                             DateLine dateLine) {
    std::vector<std::vector<ExportPoint>> runs;
    bool open = false;
    for (std::size_t i = 0; i < telemetry.samples.size(); ++i) {
        const Sample& sample = telemetry.samples[i];
        if (!exported(sample, positions)) {
            open = false;
            continue;
        }
        const bool raw = positions == Positions::raw;
        // GPX leaves 180 degrees out; the same meridian has another name.
        constexpr double written = 180 - 5e-8; // what is nearer is written as 180
        ExportPoint point{i, raw ? sample.rawLatitude : sample.latitude,
                          raw ? sample.rawLongitude : sample.longitude,
                          raw && known(sample.rawSpeed) ? sample.rawSpeed : sample.speed};
        point.longitude = point.longitude >= written ? -180 : point.longitude;
        if (open && dateLine == DateLine::cut &&
            std::abs(point.longitude - runs.back().back().longitude) > 180) {
            open = false;
        }
        if (!open) {
            runs.emplace_back();
            open = true;
        }
        runs.back().push_back(point);
    }
    return runs;
}

std::string clockText(const Telemetry& telemetry) {
    ClockEvidence clock = telemetry.clock;
    clock.base = telemetry.base;
    return describe(clock);
}

void appendTime(std::string& out, const Sample& sample, const Telemetry& telemetry) {
    appendIsoTime(out, sample.time * 1000, telemetry.base == TimeBase::utc);
}

void appendIsoTime(std::string& out, std::int64_t milliseconds, bool withZone) {
    const CivilTime time = civilFromMilliseconds(milliseconds);
    const auto rest = static_cast<int>(std::llround(time.second * 1000));
    appendTwo(out, time.year, 4);
    out += '-';
    appendTwo(out, time.month);
    out += '-';
    appendTwo(out, time.day);
    out += 'T';
    appendTwo(out, time.hour);
    out += ':';
    appendTwo(out, time.minute);
    out += ':';
    appendTwo(out, rest / 1000);
    if (rest % 1000 != 0) {
        out += '.';
        appendTwo(out, rest % 1000, 3);
    }
    if (withZone) {
        out += 'Z';
    }
}

void appendJsonText(std::string& out, std::string_view text) {
    // The XML rules for characters are stricter than JSON's but for the controls, which JSON wants
    // escaped.
    constexpr char digits[] = "0123456789abcdef";
    out += '"';
    std::size_t at = 0;
    while (at < text.size()) {
        const char c = text[at];
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20) {
            out += "\\u00";
            out += digits[byte >> 4];
            out += digits[byte & 15];
            ++at;
            continue;
        }
        if (c == '"' || c == '\\') {
            out += '\\';
        }
        std::size_t length = 1;
        while (length < 4 && at + length < text.size() && !isXmlText(text.substr(at, length))) {
            ++length;
        }
        if (byte < 0x80) {
            out += c;
            ++at;
        } else if (isXmlText(text.substr(at, length))) {
            out += text.substr(at, length);
            at += length;
        } else {
            out += "\xef\xbf\xbd";
            ++at;
        }
    }
    out += '"';
}

} // namespace velmorant::telemetry

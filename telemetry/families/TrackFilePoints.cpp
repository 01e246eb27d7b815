#include "telemetry/families/TrackFilePoints.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "telemetry/Geometry.h"
#include "telemetry/Nmea.h"
#include "telemetry/Pieces.h"
#include "telemetry/UtcTime.h"

namespace velmorant::telemetry {

namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// The name of a tag without its prefix, empty for the end of an element.
std::string_view localName(std::string_view tag) {
    tag = tag.substr(0, tag.find_first_of(" \t\r\n/"));
    const std::size_t colon = tag.find(':');
    return colon == std::string_view::npos ? tag : tag.substr(colon + 1);
}

double attribute(std::string_view tag, std::string_view name) {
    for (std::size_t at = tag.find(name); at != std::string_view::npos;
         at = tag.find(name, at + 1)) {
        std::string_view rest = tag.substr(at + name.size());
        const bool whole = at > 0 && (tag[at - 1] == ' ' || tag[at - 1] == '\n' ||
                                      tag[at - 1] == '\t' || tag[at - 1] == '\r');
        rest = trimmed(rest);
        if (!whole || !rest.starts_with('=')) {
            continue;
        }
        rest = trimmed(rest.substr(1));
        if (rest.empty() || (rest[0] != '"' && rest[0] != '\'')) {
            continue;
        }
        const std::size_t end = rest.find(rest[0], 1);
        return end == std::string_view::npos ? unknown : decimal(trimmed(rest.substr(1, end - 1)));
    }
    return unknown;
}

// "text<tag" pieces make the elements of a point; the deepest texts count.
class GpxReader {
  public:
    explicit GpxReader(const VisitPoint& visit) : visit_(visit) {}

    bool piece(std::string_view text) {
        const std::size_t open = text.rfind('<');
        if (open == std::string_view::npos) {
            return true;
        }
        const std::string_view content = trimmed(text.substr(0, open));
        std::string_view tag = text.substr(open + 1);
        if (tag.starts_with('/')) {
            return endOf(localName(tag.substr(1)), content);
        }
        if (localName(tag) == "trkpt") {
            point_ = Fix{};
            point_->latitude = attribute(tag, "lat");
            point_->longitude = attribute(tag, "lon");
            if (tag.ends_with('/')) {
                return endOf("trkpt", {});
            }
        }
        return true;
    }

  private:
    bool endOf(std::string_view name, std::string_view content) {
        if (!point_) {
            return true;
        }
        if (name == "time") {
            readIsoTime(content, *point_);
        } else if (name == "ele") {
            point_->altitude = decimal(content);
        } else if (name == "speed") {
            point_->speed = decimal(content) * kmhPerMetrePerSecond;
        } else if (name == "course") {
            point_->heading = decimal(content);
        } else if (name == "trkpt") {
            const Fix point = *point_;
            point_.reset();
            return visit_(point);
        }
        return true;
    }

    const VisitPoint& visit_;
    std::optional<Fix> point_;
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return lower;
}

// The number behind a word that stands alone and ":" or "=".
double numberBehind(std::string_view text, std::string_view word) {
    for (std::size_t at = text.find(word); at != std::string_view::npos;
         at = text.find(word, at + 1)) {
        if (at > 0 && text[at - 1] >= 'a' && text[at - 1] <= 'z') {
            continue;
        }
        std::string_view rest = trimmed(text.substr(at + word.size()));
        if (!rest.starts_with(':') && !rest.starts_with('=')) {
            continue;
        }
        rest = trimmed(rest.substr(1));
        return decimal(rest.substr(0, rest.find_first_not_of("+-.0123456789")));
    }
    return unknown;
}

double firstKnown(std::string_view text, std::initializer_list<std::string_view> words) {
    for (const std::string_view word : words) {
        if (const double value = numberBehind(text, word); known(value)) {
            return value;
        }
    }
    return unknown;
}

// The number in front of a unit.
double numberBefore(std::string_view text, std::string_view unit) {
    const std::size_t at = text.find(unit);
    if (at == std::string_view::npos) {
        return unknown;
    }
    const std::string_view before = trimmed(text.substr(0, at));
    const std::size_t start = before.find_last_not_of("+-.0123456789");
    return decimal(before.substr(start == std::string_view::npos ? 0 : start + 1));
}

// "00:01:02,345" in seconds.
double cueTime(std::string_view text) {
    text = trimmed(text);
    const int hours = digits(text, 0, 2);
    const int minutes = digits(text, 3, 2);
    const int seconds = digits(text, 6, 2);
    if (hours < 0 || minutes < 0 || seconds < 0) {
        return unknown;
    }
    const int thousandths = digits(text, 9, 3);
    return hours * 3600 + minutes * 60 + seconds + (thousandths > 0 ? thousandths / 1000.0 : 0);
}

class SubtitleReader {
  public:
    explicit SubtitleReader(const VisitPoint& visit) : visit_(visit) {}

    bool line(std::string_view text) {
        const std::size_t arrow = text.find("-->");
        if (arrow != std::string_view::npos) {
            const bool goesOn = flush();
            cue_ = cueTime(text.substr(0, arrow));
            return goesOn;
        }
        if (known(cue_)) {
            read(text);
        }
        return true;
    }
    bool flush() {
        const bool complete =
            known(point_.mediaTime) && known(point_.latitude) && known(point_.longitude);
        const Fix point = point_;
        point_ = Fix{};
        return !complete || visit_(point);
    }

  private:
    void read(std::string_view text) {
        point_.mediaTime = cue_;
        const std::size_t sentence = text.find('$');
        if (const auto fix = sentence == std::string_view::npos ? std::nullopt
                                                                : readRmc(text.substr(sentence))) {
            point_ = *fix;
            point_.mediaTime = cue_;
            return;
        }
        const std::string lower = lowerCase(text);
        const auto set = [](double& value, double found) { value = known(found) ? found : value; };
        set(point_.latitude, firstKnown(lower, {"latitude", "lat"}));
        set(point_.longitude, firstKnown(lower, {"longitude", "longtitude", "lon", "long", "lng"}));
        set(point_.speed, numberBefore(lower, "km/h"));
        for (std::size_t at = 0; at + 19 <= text.size() && point_.time == noTime; ++at) {
            if (isDigit(text[at]) && (at == 0 || !isDigit(text[at - 1]))) {
                readIsoTime(text.substr(at, 19), point_);
            }
        }
    }

    const VisitPoint& visit_;
    double cue_ = unknown;
    Fix point_;
};

} // namespace

void readIsoTime(std::string_view text, Fix& fix) {
    text = trimmed(text);
    const std::array<int, 6> parts = {digits(text, 0, 4),  digits(text, 5, 2),
                                      digits(text, 8, 2),  digits(text, 11, 2),
                                      digits(text, 14, 2), digits(text, 17, 2)};
    if (*std::min_element(parts.begin(), parts.end()) < 0 || text[4] != '-' || text[7] != '-' ||
        (text[10] != 'T' && text[10] != ' ') || text[13] != ':' || text[16] != ':') {
        return;
    }
    CivilTime civil{parts[0], parts[1], parts[2],
                    parts[3], parts[4], static_cast<double>(parts[5])};
    std::string_view rest = text.substr(19);
    if (rest.starts_with('.')) {
        std::size_t end = 1;
        while (end < rest.size() && isDigit(rest[end])) {
            ++end;
        }
        const double fraction = decimal("0" + std::string(rest.substr(0, end)));
        civil.second += known(fraction) ? fraction : 0;
        rest.remove_prefix(end);
    }
    const auto milliseconds = toMilliseconds(civil);
    if (!milliseconds) {
        return;
    }
    fix.time = *milliseconds;
    fix.base = rest.empty() ? TimeBase::camera : TimeBase::utc;
    const int hours = digits(rest, 1, 2);
    const int minutes = digits(rest, 4, 2);
    if ((rest.starts_with('+') || rest.starts_with('-')) && hours >= 0 && minutes >= 0) {
        const std::int64_t offset = (hours * 60 + minutes) * 60000LL;
        fix.time += rest[0] == '+' ? -offset : offset;
    }
}

void forEachGpxPoint(ByteSource& source, const VisitPoint& visit) {
    constexpr std::size_t longestPiece = 4096; // no text or tag that counts is longer
    GpxReader reader(visit);
    forEachPiece(source, '>', longestPiece,
                 [&](std::string_view text) { return reader.piece(text); });
}

void forEachSubtitlePoint(ByteSource& source, const VisitPoint& visit) {
    constexpr std::size_t longestLine = 4096;
    SubtitleReader reader(visit);
    bool goesOn = true;
    forEachPiece(source, '\n', longestLine, [&](std::string_view text) {
        goesOn = reader.line(text);
        return goesOn;
    });
    if (goesOn) {
        reader.flush();
    }
}

} // namespace velmorant::telemetry

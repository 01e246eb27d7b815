#include "extractor/TrackFileWriter.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>

#include "telemetry/UtcTime.h"
#include "telemetry/XmlText.h"

namespace velmorant::telemetry {

namespace {

// A file that keeps what is appended in one small buffer; the first failure is remembered.
class Output {
  public:
    explicit Output(const std::string& path) : file_(std::fopen(path.c_str(), "wb")) {
        failed_ = file_ == nullptr;
        if (failed_) {
            reason_ = std::strerror(errno);
        } else {
            std::setvbuf(file_, nullptr, _IONBF, 0);
        }
        text_.reserve(flushAt + 2048);
    }
    ~Output() {
        if (file_ != nullptr) {
            std::fclose(file_);
        }
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    std::string& text() { return text_; }
    void flushWhenFull() {
        if (text_.size() >= flushAt) {
            flush();
        }
    }
    // Returns what went wrong, if anything did.
    std::optional<std::string> close() {
        flush();
        if (file_ != nullptr && std::fclose(file_) != 0 && !failed_) {
            failed_ = true;
            reason_ = std::strerror(errno);
        }
        file_ = nullptr;
        return failed_ ? std::optional(reason_) : std::nullopt;
    }

  private:
    static constexpr std::size_t flushAt = 65536;
    void flush() {
        if (!failed_ && std::fwrite(text_.data(), 1, text_.size(), file_) != text_.size()) {
            failed_ = true;
            reason_ = std::strerror(errno);
        }
        text_.clear();
    }

    std::FILE* file_;
    std::string text_;
    bool failed_ = false;
    std::string reason_;
};

void appendAttribute(std::string& out, const char* attribute, std::string_view value) {
    out += ' ';
    out += attribute;
    out += "=\"";
    appendXmlText(out, value);
    out += '"';
}

void appendTextElement(std::string& out, const char* element, std::string_view value) {
    out += '<';
    out += element;
    out += '>';
    appendXmlText(out, value);
    out += "</";
    out += element;
    out += ">\n";
}

template <class Append>
void element(std::string& out, std::string_view tag, Append append) {
    out += '<';
    out += tag;
    out += '>';
    append();
    out += "</";
    out += tag;
    out += ">\n";
}

void number(std::string& out, std::string_view tag, double value, int decimals) {
    element(out, tag, [&] { appendFixed(out, value, decimals); });
}

void integer(std::string& out, std::string_view tag, std::int64_t value) {
    element(out, tag, [&] { appendInteger(out, value); });
}

void coordinate(std::string& out, std::string_view tag, double value) {
    element(out, tag, [&] {
        // A page tells a longitude from a recording's number by its sign.
        if (!(value <= -5e-8)) {
            out += '+';
            value = value < 0 ? 0 : value;
        }
        appendFixed(out, value, 7);
    });
}

void appendPadded(std::string& out, std::int64_t value, int width) {
    std::int64_t bound = 1;
    for (int i = 1; i < width; ++i) {
        bound *= 10;
        if (value < bound) {
            out += '0';
        }
    }
    appendInteger(out, value);
}

void appendTimeRecorded(std::string& out, const Sample& sample) {
    const CivilTime time = civilFromMilliseconds(sample.timeRecorded);
    const auto rest = std::llround(time.second * 1000);
    out += "<time_recorded base=\"";
    out += name(sample.recordedBase);
    out += "\">";
    appendPadded(out, time.year, 4);
    out += '-';
    appendPadded(out, time.month, 2);
    out += '-';
    appendPadded(out, time.day, 2);
    out += 'T';
    appendPadded(out, time.hour, 2);
    out += ':';
    appendPadded(out, time.minute, 2);
    out += ':';
    appendPadded(out, rest / 1000, 2);
    out += '.';
    appendPadded(out, rest % 1000, 3);
    out += "</time_recorded>\n";
}

// The beginning that all samples share, and the seconds from that date's midnight to the first.
struct Start {
    std::string opening;
    std::int64_t secondOfDay = 0;
};

Start startOf(std::int64_t firstTime) {
    const CivilTime date = civilFromMilliseconds(firstTime * 1000);
    Start start;
    start.opening = "<gpsinfo>\n";
    integer(start.opening, "utc_Year", date.year);
    integer(start.opening, "utc_Month", date.month);
    integer(start.opening, "utc_Day", date.day);
    start.secondOfDay = ((firstTime % 86400) + 86400) % 86400;
    return start;
}

void appendSample(std::string& out, const Sample& sample, const Start& start, std::int64_t second) {
    const std::int64_t time = start.secondOfDay + second;
    out += start.opening;
    integer(out, "utc_Hour", time / 3600);
    integer(out, "utc_Minute", time / 60 % 60);
    integer(out, "utc_Second", time % 60);
    coordinate(out, "Latitude", sample.latitude);
    coordinate(out, "Longitude", sample.longitude);
    number(out, "Angle", sample.heading >= 359.995 ? 0 : sample.heading, 2);
    number(out, "Speed", sample.speed, 2);
    number(out, "G_sum", sample.magnitude(), 4);
    number(out, "G_x", sample.mean.x, 4);
    number(out, "G_y", sample.mean.y, 4);
    number(out, "G_z", sample.mean.z, 4);
    const bool fixed = sample.state == FixState::good;
    out += fixed ? "<fix>yes</fix>\n" : "<fix>no</fix>\n";
    if (!fixed) {
        appendTextElement(out, "fix_reason", name(sample.state));
    } else if (known(sample.altitude)) {
        number(out, "altitude", sample.altitude, 1);
    }
    if (sample.hasAcceleration) {
        number(out, "G_max", sample.strongest, 4);
    }
    if (sample.timeRecorded != noTime) {
        appendTimeRecorded(out, sample);
    }
    out += "</gpsinfo>\n";
}

void appendRecording(std::string& out, const std::string& recording) {
    if (isXmlText(recording)) {
        appendAttribute(out, "recording", recording);
    } else {
        appendAttribute(out, "recording", percentEncoded(recording));
        appendAttribute(out, "recording_encoding", "percent");
    }
}

void appendTelemetry(Output& output, const Telemetry& telemetry) {
    std::string& out = output.text();
    appendAttribute(out, "family", telemetry.family);
    appendAttribute(out, "time_base", name(telemetry.base));
    out += " duration=\"";
    appendFixed(out, telemetry.duration, 3);
    out += "\" fixes=\"";
    appendInteger(out, static_cast<std::int64_t>(telemetry.fixes()));
    out += "\">\n";
    for (const Error& notice : telemetry.notices) {
        appendTextElement(out, "notice", describe(notice));
    }
    const Start start = startOf(telemetry.samples.empty() ? 0 : telemetry.samples.front().time);
    std::int64_t second = 0;
    for (const Sample& sample : telemetry.samples) {
        appendSample(out, sample, start, second++);
        output.flushWhenFull();
    }
}

std::string besideName(const std::string& trackFile) {
    std::random_device random;
    return trackFile + ".part-" + std::to_string(random());
}

} // namespace

std::optional<std::string> writeTrackFile(const std::string& trackFile,
                                          const std::string& recording,
                                          const Result<Telemetry>& outcome) {
    const std::string beside = besideName(trackFile);
    Output output(beside);
    std::string& out = output.text();
    out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<track";
    appendRecording(out, recording);
    if (outcome) {
        appendTelemetry(output, outcome.value());
    } else {
        out += ">\n";
        appendTextElement(out, "error", outcome.error().reason);
    }
    out += "</track>\n";
    std::error_code renameError;
    auto problem = output.close();
    if (!problem) {
        std::filesystem::rename(beside, trackFile, renameError);
        if (renameError) {
            problem = renameError.message();
        }
    }
    if (problem) {
        std::error_code ignored;
        std::filesystem::remove(beside, ignored);
        return trackFile + ": cannot be written: " + *problem;
    }
    return std::nullopt;
}

} // namespace velmorant::telemetry

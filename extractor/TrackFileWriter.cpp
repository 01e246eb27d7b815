#include "extractor/TrackFileWriter.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "extractor/DigitCursor.h"
#include "extractor/PrivateFiles.h"
#include "telemetry/UtcTime.h"
#include "telemetry/XmlText.h"

namespace velmorant::telemetry {

namespace {

// The longest sample, with the greatest numbers that DigitCursor writes, has some 700 bytes.
constexpr std::size_t longestSample = 2048;

// A file that keeps what is appended in one small buffer; the first failure is remembered.
class Output {
  public:
    // Takes the descriptor over; a negative one is a failure with errno set.
    explicit Output(int descriptor) : file_(descriptor < 0 ? nullptr : ::fdopen(descriptor, "wb")) {
        if (file_ == nullptr) {
            failed();
        } else {
            std::setvbuf(file_, nullptr, _IONBF, 0);
        }
    }
    ~Output() {
        if (file_ != nullptr) {
            std::fclose(file_);
        }
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // Where up to `length` bytes can be put, no more than the buffer has.
    char* room(std::size_t length) {
        if (buffer_.size() - used_ < length) {
            flush();
        }
        return buffer_.data() + used_;
    }
    void filledTo(const char* end) { used_ = static_cast<std::size_t>(end - buffer_.data()); }
    void append(std::string_view text) {
        while (!text.empty()) {
            const std::string_view part = text.substr(0, longestSample);
            char* at = room(part.size());
            std::memcpy(at, part.data(), part.size());
            filledTo(at + part.size());
            text.remove_prefix(part.size());
        }
    }
    // Returns what went wrong, if anything did.
    std::error_code close() {
        flush();
        if (file_ != nullptr && std::fclose(file_) != 0) {
            failed();
        }
        file_ = nullptr;
        return problem_;
    }

  private:
    void failed() {
        if (!problem_) {
            problem_ = std::error_code(errno, std::generic_category());
        }
    }
    void flush() {
        if (!problem_ && std::fwrite(buffer_.data(), 1, used_, file_) != used_) {
            failed();
        }
        used_ = 0;
    }

    std::FILE* file_;
    std::vector<char> buffer_ = std::vector<char>(65536);
    std::size_t used_ = 0;
    std::error_code problem_;
};

void appendAttribute(std::string& out, const char* attribute, std::string_view value) {
    out += ' ';
    out += attribute;
    out += "=\"";
    appendXmlText(out, value);
    out += '"';
}

void appendReason(std::string& out, const char* element, const Error& error,
                  std::string_view text) {
    out += '<';
    out += element;
    appendAttribute(out, "code", name(error.code));
    if (error.amount > 0) {
        appendAttribute(out, "amount", std::to_string(error.amount));
    }
    out += '>';
    appendXmlText(out, text);
    out += "</";
    out += element;
    out += ">\n";
}

// The beginning that all samples share, and the seconds from that date's midnight to the first.
struct Start {
    std::string opening;
    std::int64_t secondOfDay = 0;
};

Start startOf(std::int64_t firstTime) {
    const CivilTime date = civilFromMilliseconds(firstTime * 1000);
    Start start;
    start.opening = "<gpsinfo>\n<utc_Year>" + std::to_string(date.year) +
                    "</utc_Year>\n<utc_Month>" + std::to_string(date.month) +
                    "</utc_Month>\n<utc_Day>" + std::to_string(date.day) + "</utc_Day>\n<utc_Hour>";
    start.secondOfDay = ((firstTime % 86400) + 86400) % 86400;
    return start;
}

void writeCoordinate(DigitCursor& out, double value) {
    // A page tells a longitude from a recording's number by its sign.
    if (!(value <= -5e-8)) {
        out.character('+');
        value = value < 0 ? 0 : value;
    }
    out.fixed<7>(value);
}

void writeTimeRecorded(DigitCursor& out, const Sample& sample) {
    const CivilTime time = civilFromMilliseconds(sample.timeRecorded);
    const auto part = [](int number) { return static_cast<std::uint64_t>(number); };
    out.text("<time_recorded base=\"");
    out.text(name(sample.recordedBase));
    out.text("\">");
    out.padded<4>(part(time.year));
    out.character('-');
    out.padded<2>(part(time.month));
    out.character('-');
    out.padded<2>(part(time.day));
    out.character('T');
    out.padded<2>(part(time.hour));
    out.character(':');
    out.padded<2>(part(time.minute));
    out.character(':');
    const auto milliseconds = static_cast<std::uint64_t>(std::llround(time.second * 1000));
    out.padded<2>(milliseconds / 1000);
    out.character('.');
    out.padded<3>(milliseconds % 1000);
    out.text("</time_recorded>\n");
}

void writeMovement(DigitCursor& out, const Sample& sample) {
    out.text("</utc_Second>\n<Latitude>");
    writeCoordinate(out, sample.latitude);
    out.text("</Latitude>\n<Longitude>");
    writeCoordinate(out, sample.longitude);
    out.text("</Longitude>\n<Angle>");
    out.fixed<2>(sample.heading >= 359.995 ? 0 : sample.heading);
    out.text("</Angle>\n<Speed>");
    out.fixed<2>(sample.speed);
    out.text("</Speed>\n<G_sum>");
    out.fixed<4>(sample.magnitude());
    out.text("</G_sum>\n<G_x>");
    out.fixed<4>(sample.mean.x);
    out.text("</G_x>\n<G_y>");
    out.fixed<4>(sample.mean.y);
    out.text("</G_y>\n<G_z>");
    out.fixed<4>(sample.mean.z);
    out.text("</G_z>\n");
}

char* writeSample(char* at, const Sample& sample, const Start& start, std::int64_t second) {
    DigitCursor out(at);
    const auto time = static_cast<std::uint64_t>(start.secondOfDay + second);
    out.text(std::string_view(start.opening));
    out.integer(time / 3600);
    out.text("</utc_Hour>\n<utc_Minute>");
    out.integer(time / 60 % 60);
    out.text("</utc_Minute>\n<utc_Second>");
    out.integer(time % 60);
    writeMovement(out, sample);
    if (sample.state == FixState::good) {
        out.text("<fix>yes</fix>\n");
        if (known(sample.altitude)) {
            out.text("<altitude>");
            out.fixed<1>(sample.altitude);
            out.text("</altitude>\n");
        }
    } else {
        out.text("<fix>no</fix>\n<fix_reason>");
        out.text(name(sample.state));
        out.text("</fix_reason>\n");
    }
    if (sample.hasAcceleration) {
        out.text("<G_max>");
        out.fixed<4>(sample.strongest);
        out.text("</G_max>\n");
    }
    if (sample.timeRecorded != noTime) {
        writeTimeRecorded(out, sample);
    }
    out.text("</gpsinfo>\n");
    return out.end();
}

void appendRecording(std::string& out, const std::string& recording) {
    if (isXmlText(recording)) {
        appendAttribute(out, "recording", recording);
    } else {
        appendAttribute(out, "recording", percentEncoded(recording));
        appendAttribute(out, "recording_encoding", "percent");
    }
}

void appendHead(std::string& out, const Telemetry& telemetry) {
    appendAttribute(out, "family", telemetry.family);
    appendAttribute(out, "time_base", name(telemetry.base));
    out += " duration=\"";
    appendFixed(out, telemetry.duration, 3);
    out += "\" fixes=\"";
    appendInteger(out, static_cast<std::int64_t>(telemetry.fixes()));
    out += "\">\n";
    for (const Error& notice : telemetry.notices) {
        appendReason(out, "notice", notice, describe(notice));
    }
}

void writeSamples(Output& output, const Telemetry& telemetry) {
    const Start start = startOf(telemetry.samples.empty() ? 0 : telemetry.samples.front().time);
    std::int64_t second = 0;
    for (const Sample& sample : telemetry.samples) {
        output.filledTo(writeSample(output.room(longestSample), sample, start, second++));
    }
}

} // namespace

Error notWritten(const std::string& path, const std::error_code& cause) {
    const bool full = cause == std::errc::no_space_on_device || cause.value() == EDQUOT;
    return {path,
            {},
            0,
            "cannot be written: " + cause.message(),
            ErrorKind::unreadable,
            full ? ReasonCode::diskFull : ReasonCode::notWritten};
}

std::optional<Error> writeTrackFile(const std::string& trackFile, const std::string& recording,
                                    const Result<Telemetry>& outcome) {
    removeLeftOvers(trackFile);
    const BesideFile beside = openBeside(trackFile);
    Output output(beside.descriptor);
    std::string head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<track";
    appendRecording(head, recording);
    if (outcome) {
        appendHead(head, outcome.value());
    } else {
        head += ">\n";
        appendReason(head, "error", outcome.error(), outcome.error().reason);
    }
    output.append(head);
    if (outcome) {
        writeSamples(output, outcome.value());
    }
    output.append("</track>\n");
    // Not synced: the player reads it at once and removes it; after a crash nobody wants it.
    std::error_code problem = output.close();
    if (!problem) {
        std::filesystem::rename(beside.name, trackFile, problem);
    }
    if (problem) {
        std::error_code ignored;
        std::filesystem::remove(beside.name, ignored);
        return notWritten(trackFile, problem);
    }
    return std::nullopt;
}

} // namespace velmorant::telemetry

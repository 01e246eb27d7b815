#include "track/TrackFileReader.h"

#include "common/StepError.h"
#include "common/textRules.h"

#include <charconv>
#include <utility>

namespace velmorant {

namespace {

constexpr std::int64_t secondsPerHour = 3600;
constexpr std::int64_t secondsPerMinute = 60;
/// No number, date or word of a sample needs as much.
constexpr std::size_t longestText = 64;
/// More is no sensible count of anything in a recording.
constexpr double greatestAmount = 1e9;

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// What may be missing or odd: its beginning is kept.
std::string bounded(std::string_view text) {
    return leftCharacters(trimmed(text), longestText);
}

/// A "%" without two hexadecimal digits behind it stands for itself.
std::string percentDecoded(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned value = 0;
        const char* const digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(digits, digits + 2, value, 16).ptr == digits + 2) {
            bytes += static_cast<char>(value);
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

[[noreturn]] void refuse(std::size_t sample, std::string_view element, const std::string& reason) {
    throw StepError("sample " + std::to_string(sample + 1) + ", \"" + std::string(element) +
                    "\": " + reason);
}

/// Converts with the place of a failure added to its reason.
template <typename Convert>
auto converted(std::size_t sample, std::string_view element, Convert&& convert) {
    try {
        return convert();
    } catch (const StepError& error) {
        refuse(sample, element, error.what());
    }
}

std::string timeText(std::int32_t second) {
    return zeroPadded(second / 60, 2) + ":" + zeroPadded(second % 60, 2);
}

} // namespace

void TrackFileReader::load(const std::string& path) {
    m_count = 0;
    m_document.load(path);
    m_count = m_document.selectElements("gpsinfo");
}

std::string TrackFileReader::recording() const {
    const std::string path = m_document.rootAttribute("recording").value_or("");
    const bool encoded = m_document.rootAttribute("recording_encoding") == "percent";
    return encoded ? percentDecoded(path) : path;
}

std::optional<TrackReason> TrackFileReader::error() const {
    return reason("error", TrackReason::Kind::NoTrack);
}

std::optional<TrackReason> TrackFileReader::notice() const {
    return reason("notice", TrackReason::Kind::PartOfTrack);
}

std::optional<TrackReason> TrackFileReader::reason(const std::string& element,
                                                   TrackReason::Kind kind) const {
    const auto text = m_document.elementText(element);
    if (!text || trimmed(*text).empty())
        return std::nullopt;
    TrackReason reason;
    reason.kind = kind;
    reason.code = bounded(m_document.elementAttribute(element, "code").value_or(""));
    reason.technical = boundedLine(trimmed(*text));
    const std::string amount = m_document.elementAttribute(element, "amount").value_or("");
    if (isNumber(amount) && toDouble(amount) >= 0 && toDouble(amount) < greatestAmount)
        reason.amount = toInt32(amount);
    return reason;
}

std::string_view TrackFileReader::text(std::size_t sample, std::string_view element) const {
    const auto found = m_document.childText(sample, element);
    if (!found)
        refuse(sample, element, "the element is missing");
    const std::string_view text = trimmed(*found);
    if (text.size() > longestText)
        refuse(sample, element,
               "the text is longer than " + std::to_string(longestText) + " characters");
    return text;
}

std::int32_t TrackFileReader::wholeNumber(std::size_t sample, std::string_view element) const {
    const std::string_view number = text(sample, element);
    return converted(sample, element, [&] { return toInt32(number); });
}

std::int16_t TrackFileReader::shortNumber(std::size_t sample, std::string_view element) const {
    const std::string_view number = text(sample, element);
    return converted(sample, element, [&] { return toInt16(number); });
}

/// Two decimals, by way of a 16-bit integer of hundredths.
double TrackFileReader::acceleration(std::size_t sample, std::string_view element) const {
    const std::string_view number = text(sample, element);
    return converted(sample, element, [&] { return toInt16(toDouble(number) * 100.0) / 100.0; });
}

TrackFileReader::TimeOfDay TrackFileReader::timeOfDay(std::size_t sample) const {
    const std::int64_t hour = wholeNumber(sample, "utc_Hour");
    const std::int64_t minute = wholeNumber(sample, "utc_Minute");
    const std::int64_t second = wholeNumber(sample, "utc_Second");
    return {zeroPadded(hour, 2) + ":" + zeroPadded(minute, 2) + ":" + zeroPadded(second, 2),
            hour * secondsPerHour + minute * secondsPerMinute + second};
}

std::int64_t TrackFileReader::startOfRecording() const {
    const std::string time = timeOfDay(0).text;
    // The first time of day is read back from its text by fixed places, so it must fit them.
    if (time.size() != 8)
        refuse(0, "utc_Hour", "the time of day \"" + time + "\" is not of the form 00:00:00");
    return converted(0, "utc_Hour", [&] {
        return toInt32(time.substr(0, 2)) * secondsPerHour +
               toInt32(time.substr(3, 2)) * secondsPerMinute + toInt32(time.substr(6, 2));
    });
}

void TrackFileReader::readSample(std::size_t sample, std::int64_t start, clsDot& track) const {
    const std::string latitude(text(sample, "Latitude"));
    const std::string longitude(text(sample, "Longitude"));
    const std::int16_t angle = shortNumber(sample, "Angle");
    const std::int16_t speed = shortNumber(sample, "Speed");
    const TimeOfDay time = timeOfDay(sample);
    const std::string date = std::string(text(sample, "utc_Year")) + "/" +
                             std::string(text(sample, "utc_Month")) + "/" +
                             std::string(text(sample, "utc_Day")) + " " + time.text;
    const std::int32_t second = converted(
        sample, "utc_Hour", [&] { return toInt32(static_cast<double>(time.seconds - start)); });
    const double gSum = acceleration(sample, "G_sum");
    const double gX = acceleration(sample, "G_x");
    const double gY = acceleration(sample, "G_y");
    const double gZ = acceleration(sample, "G_z");
    converted(sample, "Longitude and Latitude", [&] {
        track.SetDot(date, timeText(second), speed, second, longitude, latitude, gSum, angle, gX,
                     gY, gZ);
    });
}

/// What is missing or odd here spoils no track.
SampleDetails TrackFileReader::readDetails(std::size_t sample) const {
    SampleDetails details;
    details.hasFix = trimmed(m_document.childText(sample, "fix").value_or("yes")) != "no";
    if (!details.hasFix)
        details.fixReason = bounded(m_document.childText(sample, "fix_reason").value_or(""));
    const auto optionalNumber = [&](std::string_view element) -> std::optional<double> {
        const auto number = m_document.childText(sample, element);
        return number && isNumber(*number) ? std::optional(toDouble(*number)) : std::nullopt;
    };
    details.strongestG = optionalNumber("G_max");
    details.altitude = optionalNumber("altitude");
    details.recordedTime = bounded(m_document.childText(sample, "time_recorded").value_or(""));
    return details;
}

std::shared_ptr<clsDot> TrackFileReader::read() const {
    if (m_count == 0)
        return nullptr;
    auto track = std::make_shared<clsDot>();
    TrackDetails details;
    details.timeBase = timeBaseNamed(m_document.rootAttribute("time_base").value_or(""));
    details.samples.reserve(m_count);
    const std::int64_t start = startOfRecording();
    for (std::size_t sample = 0; sample < m_count; ++sample) {
        readSample(sample, start, *track);
        details.samples.push_back(readDetails(sample));
    }
    track->setDetails(std::move(details));
    return track;
}

} // namespace velmorant

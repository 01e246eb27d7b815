#pragma once

#include "ports/XmlDocument.h"
#include "recordings/clsDot.h"
#include "track/TrackReason.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velmorant {

/// Reads the extractor's track file.
///
/// Grammar: an XML document with any number of elements "gpsinfo", one per second of the recording,
/// in order. Each has the children utc_Year, utc_Month, utc_Day (texts), utc_Hour, utc_Minute,
/// utc_Second (numbers), Longitude, Latitude (decimal degrees), Angle, Speed (km/h; 16-bit
/// integers), G_sum, G_x, G_y, G_z (in g). A missing child, or a text that does not convert, is
/// an error.
///
/// What else our extractor writes, each of which may be missing: the children "fix" ("yes", or
/// "no": the place is the last one known), "fix_reason", "G_max" (the second's strongest
/// magnitude), "time_recorded" (as the recorder wrote it), "altitude" (metres). The root's
/// attributes "recording" (the full path of the recording; with recording_encoding="percent" a
/// byte may stand as "%" and two hexadecimal digits) and "time_base". The element "error": why
/// there are no samples; elements "notice": what else was wrong with the recording; both with the
/// attributes "code" (a word) and "amount" (a number).
///
/// The file comes from outside: a sample's text has at most 64 characters, more is an error (in
/// what may be missing, it is cut off there); a reason is cut off as boundedLine() says.
class TrackFileReader {
  public:
    explicit TrackFileReader(XmlDocument& document) : m_document(document) {}

    void load(const std::string& path); ///< throws StepError (file, line, reason)
    std::size_t sampleCount() const { return m_count; }
    std::string recording() const; ///< the path; "" when the file names none
    std::optional<TrackReason> error() const;
    std::optional<TrackReason> notice() const; ///< the first one
    /// The track with its details; null when the file has no sample. Throws StepError that names
    /// the sample and the element.
    std::shared_ptr<clsDot> read() const;

  private:
    struct TimeOfDay {
        std::string text; ///< "08:05:09"
        std::int64_t seconds = 0;
    };

    std::optional<TrackReason> reason(const std::string& element, TrackReason::Kind kind) const;
    std::string_view text(std::size_t sample, std::string_view element) const;
    std::int32_t wholeNumber(std::size_t sample, std::string_view element) const;
    std::int16_t shortNumber(std::size_t sample, std::string_view element) const;
    double acceleration(std::size_t sample, std::string_view element) const;
    TimeOfDay timeOfDay(std::size_t sample) const;
    std::int64_t startOfRecording() const;
    void readSample(std::size_t sample, std::int64_t start, clsDot& track) const;
    SampleDetails readDetails(std::size_t sample) const;

    XmlDocument& m_document;
    std::size_t m_count = 0;
};

} // namespace velmorant

#pragma once

#include "recordings/SecondIndex.h"
#include "recordings/SegmentIndex.h"
#include "recordings/TrackDetails.h"
#include "recordings/TrackDot.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmorant {

/// The track of one recording: dots 1..count, one per second, and one spare empty dot after them; a
/// cursor, the current index, that follows the play position (0 at first: no dot); and what the
/// extractor says of the recording beyond its dots.
///
/// "Outside" below means an index that is neither a dot nor the spare one. The extrema start at 0,
/// so 0 always lies between them: the chart's axes rely on it.
class clsDot {
  public:
    clsDot();

    // The current dot; 0 or an empty text when the current index lies outside.
    std::int16_t iAngelValue() const { return current().angle; }
    const std::string& sLonLat() const { return current().lonLatText; }
    double dSpeed() const { return current().speed; } ///< km/h
    double dG_Sum() const { return current().gSum; }
    double dG_x() const { return current().gX; }
    double dG_y() const { return current().gY; }
    double dG_z() const { return current().gZ; }
    double lSecond() const { return current().second; }
    const std::string& strTime() const { return current().timeText; }
    const std::string& strDate() const { return current().dateText; }

    /// A number for the owner's use: the 1-based list index of the recording.
    std::int32_t lSerial() const { return m_serial; }
    void lSerial(std::int32_t serial) { m_serial = serial; }

    /// The first segment whose rectangle holds the point (right and bottom edges outside), named
    /// by the dot that starts it; 0 for none. The segment before the last dot is never tried. A
    /// track of one dot answers 1 for exactly that dot. Degrees times 10,000,000.
    std::int32_t lPtLocal(std::int32_t x, std::int32_t y) const;

    std::int32_t lPlayLocal() const { return m_current; }
    void lPlayLocal(std::int32_t index) { m_current = index; } ///< unchecked

    /// Moves the cursor to the first dot i of 1..count - 2 with second(i) <= second <=
    /// second(i + 1); leaves it where none does.
    void ForcePlayLocal(std::int32_t second);

    std::int32_t MouseSecond(std::int32_t index) const; ///< 0 outside
    std::int16_t MouseSpeed(std::int32_t index) const;  ///< km/h; 0 outside
    /// "Time:" time text, a carriage return, "Speed:" the speed times `speedFactor` with two
    /// decimals; empty outside.
    std::string ShowInfo(std::int32_t index, double speedFactor) const;
    /// Throws StepError outside.
    std::int32_t GetDotTime(std::int32_t index) const;

    /// Appends a dot. Throws StepError for a coordinate that is no number or does not fit; the
    /// spare dot is then half written and the count not raised.
    void SetDot(const std::string& dateText, const std::string& timeText, std::int16_t speed,
                std::int32_t second, const std::string& lonText, const std::string& latText,
                double gSum, std::int16_t angle, double gX, double gY, double gZ);

    std::int32_t count() const { return static_cast<std::int32_t>(m_dots.size()) - 1; }
    std::int32_t lastSecond() const { return m_lastSecond; } ///< of the dot stored last
    double maximumSpeed() const { return m_maximumSpeed; }   ///< km/h, at least 0
    double maximumG() const { return m_maximumG; }           ///< of G x, y and z, at least 0
    double minimumG() const { return m_minimumG; }           ///< of G x, y and z, at most 0

    /// The dot at an index, read without moving the cursor; an empty dot outside.
    const TrackDot& dot(std::int32_t index) const;

    const TrackDetails& details() const { return m_details; }
    void setDetails(TrackDetails details) { m_details = std::move(details); }
    /// What is known beyond the dot at an index; null where nothing is.
    const SampleDetails* detailsOfDot(std::int32_t index) const;

  private:
    const TrackDot& current() const { return dot(m_current); }
    void noteExtremes(const TrackDot& dot);
    void addToIndexes();

    std::vector<TrackDot> m_dots; ///< the last one is the spare
    std::int32_t m_current = 0;
    std::int32_t m_serial = 0;
    std::int32_t m_lastSecond = 0;
    double m_maximumSpeed = 0.0;
    double m_maximumG = 0.0;
    double m_minimumG = 0.0;
    SecondIndex m_seconds;
    TrackDetails m_details;
    SegmentIndex m_segments; ///< those that lPtLocal tries: dots 1 to count - 1
};

} // namespace velmorant

// Gathers the readings of a recording and makes one sample per second of them.
//
// Readings with a place in the recording (mediaTime) go into the bins of their seconds at once, so
// a source of any rate costs memory per second only. Readings without one, as written once per
// second by recorders that index their blocks, are kept in order and placed when all are known, see
// TimeLine.h. So are readings whose media times disagree with the clock that each of them carries.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

// The readings of one second, summed up. Sensors deliver hundreds a second, so adding one is all
// inline and takes no root.
class AccelerationMean {
  public:
    static constexpr float mostG = 100; // beyond what any sensor in a car measures

    void add(float x, float y, float z) {
        const float square = x * x + y * y + z * z;
        if (!(square <= mostG * mostG)) {
            return;
        }
        x_ += x;
        y_ += y;
        z_ += z;
        strongestSquare_ = strongestSquare_ < square ? square : strongestSquare_;
        ++count_;
    }
    // Of several readings, none beyond mostG: their sums and the square of the strongest.
    void addSums(float x, float y, float z, float strongestSquare, std::uint32_t count) {
        x_ += x;
        y_ += y;
        z_ += z;
        strongestSquare_ = strongestSquare_ < strongestSquare ? strongestSquare : strongestSquare_;
        count_ += count;
    }
    void add(const AccelerationMean& other) {
        x_ += other.x_;
        y_ += other.y_;
        z_ += other.z_;
        strongestSquare_ =
            strongestSquare_ < other.strongestSquare_ ? other.strongestSquare_ : strongestSquare_;
        count_ += other.count_;
    }
    bool empty() const { return count_ == 0; }
    // The same readings on other axes: x goes to axis number axes[0], and so on.
    AccelerationMean reordered(const std::array<std::size_t, 3>& axes) const {
        std::array<float, 3> values{};
        values[axes[0]] = x_;
        values[axes[1]] = y_;
        values[axes[2]] = z_;
        AccelerationMean other = *this;
        other.x_ = values[0];
        other.y_ = values[1];
        other.z_ = values[2];
        return other;
    }
    Acceleration mean() const {
        const double count = count_ == 0 ? 1 : count_;
        return {static_cast<double>(x_) / count, static_cast<double>(y_) / count,
                static_cast<double>(z_) / count};
    }
    double strongest() const { return std::sqrt(static_cast<double>(strongestSquare_)); }

  private:
    float x_ = 0, y_ = 0, z_ = 0, strongestSquare_ = 0;
    std::uint32_t count_ = 0;
};

class Collector {
  public:
    // So many seconds are likely to come: their room is taken at once.
    void expect(double seconds);
    // A reading with a media time goes to its second; one without joins the sequence.
    void add(const Fix& fix);
    void add(double mediaTime, const Acceleration& acceleration);
    // The sum of several readings of one second.
    void add(std::size_t second, const AccelerationMean& readings);
    // The second that a reading at this time belongs to; nothing outside the longest recording.
    static std::optional<std::size_t> secondOf(double mediaTime) {
        // A hair of rounding must not move the reading that opens a second into the one before.
        const double time = mediaTime + 1e-6;
        return time >= 0 && time < static_cast<double>(mostSeconds)
                   ? std::optional(static_cast<std::size_t>(time))
                   : std::nullopt;
    }
    // Belongs to the reading added last to the sequence.
    void addToLast(const Acceleration& acceleration);

    // Tells for file offsets in ascending order the recording's time in seconds; empty where it
    // cannot. Asked only where the readings' own clock leaves a doubt.
    using TimesAt = std::function<std::vector<double>(std::span<const std::uint64_t> offsets)>;
    void askContainer(TimesAt timesAt) { timesAt_ = std::move(timesAt); }
    // The readings added to the sequence from here on come from this place of the file.
    void comesFrom(std::uint64_t offset) { offset_ = offset; }
    // The same where the container tells their time itself, in seconds.
    void comesAt(double seconds);

    bool empty() const { return sequence_.empty() && bins_.empty() && probation_.empty(); }
    bool hasFixes() const { return fixes_ > 0; }
    // Whether the clock was read from a format that defines it as UTC.
    bool hasStandardTime() const { return standardTime_; }
    std::size_t readings() const { return readings_; }
    // Media times were found to be wrong and the readings' own clock was followed; known when the
    // readings are finished.
    bool followedClock() const { return followedClock_; }

    // One sample per second of `duration` seconds; where that is unknown (0), or far from what the
    // readings say, the readings tell how many. `creation` is in seconds since 1970, 0 for unknown.
    Telemetry finish(double duration, std::int64_t creation);

    // Ten hours: bounds the memory, whatever length a file claims. Seconds beyond are left out.
    static constexpr std::size_t mostSeconds = 36000;

  private:
    struct Bin {
        Fix fix;
        float distance = 2; // seconds between the fix and the bin's own time; 2 is "none"
        AccelerationMean acceleration;
    };
    struct InOrder {
        Fix fix;
        std::uint64_t offset = 0; // in the file
        AccelerationMean acceleration;
    };
    // What is known of the media times: whether they go at the pace of the clock.
    enum class MediaTimes : std::uint8_t { onProbation, believed, doubted };

    Bin* bin(std::size_t second);
    void offer(const Fix& fix, std::size_t second);
    void addToSequence(const Fix& fix);
    void addAtMediaTime(const Fix& fix);
    void endProbation();
    void settleDoubt(double duration);
    static void fill(Sample& sample, const Bin& bin);
    void placeSequence(double duration);
    std::vector<double> linedUp(double duration) const;
    std::size_t secondsOf(double duration) const;
    std::int64_t anchor(std::int64_t creation, TimeBase& base) const;

    std::vector<Bin> bins_;
    std::vector<InOrder> sequence_;
    std::vector<Fix> probation_; // the first readings with a media time
    MediaTimes mediaTimes_ = MediaTimes::onProbation;
    bool followedClock_ = false;
    Fix last_; // the reading before, to tell one that is written again
    TimesAt timesAt_;
    std::uint64_t offset_ = 0;
    std::size_t expected_ = 0;
    std::size_t fixes_ = 0;
    std::size_t readings_ = 0;
    bool standardTime_ = false;
};

// Sets the state of a fix whose own values betray it: range, zero, date.
void judge(Fix& fix);

} // namespace velmorant::telemetry

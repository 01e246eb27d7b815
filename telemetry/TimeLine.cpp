#include "telemetry/TimeLine.h"

#include <algorithm>
#include <unordered_map>

namespace velmorant::telemetry {

namespace {

std::int64_t wholeSeconds(std::int64_t milliseconds) {
    return milliseconds >= 0 ? milliseconds / 1000 : -((999 - milliseconds) / 1000);
}

double medianOf(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The places of the container from the recording's start; nothing where they are not believable,
// as when all blocks lie together.
std::vector<double> containerLine(std::span<const ClockedReading> readings) {
    std::vector<double> line;
    line.reserve(readings.size());
    std::size_t regular = 0;
    for (const ClockedReading& reading : readings) {
        if (!known(reading.container) ||
            (!line.empty() && reading.container < line.back() - 1e-6)) {
            return {};
        }
        const double gap = line.empty() ? 1 : reading.container - line.back();
        regular += reading.repeats || (gap > 0.5 && gap < 1.6) ? 1 : 0;
        line.push_back(reading.container);
    }
    if (2 * regular < readings.size()) {
        return {};
    }
    // A block stands in front of its second or behind it; only what is more was lost.
    constexpr double nothingLost = 1.5;
    const double first = line.front();
    const double start = first < nothingLost ? 0 : std::round(first);
    for (double& place : line) {
        place += start - first;
    }
    return line;
}

bool timed(const ClockedReading& reading) {
    return !reading.repeats && reading.clock != noTime;
}

// Readings that count as one second each where the container tells nothing. One that is written
// again may stand beside the others or in the place of one.
class Slots {
  public:
    Slots(std::span<const ClockedReading> readings, std::size_t seconds)
        : counts_(readings.size(), true) {
        std::size_t repeats = 0;
        for (const ClockedReading& reading : readings) {
            repeats += reading.repeats ? 1 : 0;
        }
        const std::size_t distinct = readings.size() - repeats;
        const auto away = [&](std::size_t count) {
            return count > seconds ? count - seconds : seconds - count;
        };
        const bool inPlace = seconds > 0 && away(readings.size()) < away(distinct);
        for (std::size_t i = 0; i < readings.size(); ++i) {
            counts_[i] = !readings[i].repeats || inPlace;
        }
        // As many readings as seconds leave nothing to ask.
        if (repeats > 0 && readings.size() != seconds) {
            askClock(readings);
        }
        count_ = static_cast<std::size_t>(std::count(counts_.begin(), counts_.end(), true));
        // Behind the last reading of the clock nothing but the length tells.
        for (std::size_t i = readings.size(); i-- > 0 && seconds > 0 && !timed(readings[i]);) {
            if (readings[i].repeats && counts_[i] && count_ > seconds) {
                counts_[i] = false;
                --count_;
            }
        }
    }
    bool counts(std::size_t i) const { return counts_[i]; }
    std::size_t count() const { return count_; }

  private:
    // Between two readings of the clock as many count as seconds went by, where that is possible.
    void askClock(std::span<const ClockedReading> readings) {
        std::size_t from = readings.size();
        for (std::size_t i = 0; i < readings.size(); ++i) {
            if (!timed(readings[i])) {
                continue;
            }
            if (from < readings.size() && i > from + 1) {
                countBetween(readings, from, i);
            }
            from = i;
        }
    }
    void countBetween(std::span<const ClockedReading> readings, std::size_t from, std::size_t to) {
        std::int64_t wanted =
            std::llround(static_cast<double>(readings[to].clock - readings[from].clock) / 1000) - 1;
        std::int64_t repeats = 0;
        for (std::size_t i = from + 1; i < to; ++i) {
            repeats += readings[i].repeats ? 1 : 0;
            wanted -= readings[i].repeats ? 0 : 1;
        }
        if (wanted < 0 || wanted > repeats) {
            return;
        }
        for (std::size_t i = from + 1; i < to; ++i) {
            if (readings[i].repeats) {
                counts_[i] = wanted-- > 0;
            }
        }
    }

    std::vector<bool> counts_;
    std::size_t count_ = 0;
};

// More than one reading a second, by the clock and, where it is known, by the length.
bool severalPerSecond(std::span<const ClockedReading> readings, const Slots& slots,
                      std::size_t seconds) {
    if (seconds > 0 && !farMore(slots.count(), seconds)) {
        return false;
    }
    std::vector<std::int64_t> clocks;
    for (const ClockedReading& reading : readings) {
        if (timed(reading)) {
            clocks.push_back(wholeSeconds(reading.clock));
        }
    }
    const std::size_t count = clocks.size();
    if (count <= 3) {
        return count == 0 && seconds > 0;
    }
    std::sort(clocks.begin(), clocks.end());
    const auto distinct = std::unique(clocks.begin(), clocks.end()) - clocks.begin();
    return static_cast<double>(count) > 1.5 * static_cast<double>(distinct);
}

// Spread evenly over the recording, moved to where most of the clock's readings have it.
std::vector<double> spreadLine(std::span<const ClockedReading> readings, std::size_t seconds) {
    std::vector<double> line(readings.size());
    std::unordered_map<std::int64_t, std::size_t> votes;
    std::int64_t start = noTime;
    std::int64_t first = noTime;
    std::int64_t last = noTime;
    for (std::size_t i = 0; i < readings.size(); ++i) {
        const bool clocked = timed(readings[i]);
        if (clocked && first == noTime) {
            first = wholeSeconds(readings[i].clock);
        }
        line[i] = seconds > 0 ? static_cast<double>(i) * static_cast<double>(seconds) /
                                    static_cast<double>(readings.size())
                  : clocked
                      ? static_cast<double>(readings[i].clock) / 1000 - static_cast<double>(first)
                  : i > 0 ? line[i - 1]
                          : 0;
        // Of readings within one second of the clock the first tells when it began.
        if (clocked && readings[i].clock != last) {
            last = readings[i].clock;
            const auto vote = static_cast<std::int64_t>(
                std::llround(static_cast<double>(readings[i].clock) / 1000 - line[i]));
            const std::size_t count = ++votes[vote];
            start = start == noTime || count > votes[start] ? vote : start;
        }
    }
    for (std::size_t i = 0; i < readings.size() && start != noTime; ++i) {
        if (timed(readings[i])) {
            const double place =
                static_cast<double>(readings[i].clock) / 1000 - static_cast<double>(start);
            constexpr double leap = 4;
            line[i] = std::abs(place - line[i]) < leap ? place : line[i];
        }
    }
    return line;
}

// The runs of the clock and where they stand.
class Runs {
  public:
    Runs(std::span<const ClockedReading> readings, std::size_t seconds)
        : readings_(readings),
          slots_(readings, seconds),
          container_(containerLine(readings)),
          missing_(seconds > slots_.count() ? static_cast<double>(seconds - slots_.count()) : 0),
          line_(readings.size()) {
        if (seconds == 0) {
            constexpr double longestTunnel = 600;
            missing_ = longestTunnel;
        }
    }

    std::vector<double> place() {
        std::size_t slot = 0;
        for (std::size_t i = 0; i < readings_.size(); ++i) {
            const bool counts = slots_.counts(i);
            if (!timed(readings_[i])) {
                placeUntimed(i, counts);
            } else if (!run_.empty() && goesOn(i, slot)) {
                run_.push_back(i);
            } else {
                settle();
                openRun(i, slot);
            }
            if (timed(readings_[i])) {
                lastTimed_ = i;
                lastSlot_ = slot;
                placeTimed(i);
            }
            slot += counts ? 1 : 0;
        }
        settle();
        return std::move(line_);
    }

  private:
    // Seconds by which the clock went further than the readings since the last one with a clock.
    double ahead(std::size_t i, std::size_t slot) const {
        return static_cast<double>(readings_[i].clock - readings_[lastTimed_].clock) / 1000 -
               static_cast<double>(slot - lastSlot_);
    }
    bool goesOn(std::size_t i, std::size_t slot) const {
        if (container_.empty()) {
            return std::abs(ahead(i, slot)) < 0.5;
        }
        const double clock =
            static_cast<double>(readings_[i].clock - readings_[lastTimed_].clock) / 1000;
        return std::abs(clock - (container_[i] - container_[lastTimed_])) <= unsteady;
    }

    void openRun(std::size_t i, std::size_t slot) {
        const auto clock = static_cast<double>(wholeSeconds(readings_[i].clock));
        if (start_ == noStart) {
            start_ = clock -
                     (container_.empty() ? static_cast<double>(slot) : std::round(container_[i]));
        } else if (container_.empty()) {
            const double gap = std::round(ahead(i, slot));
            // Lost readings: the clock went on. What it goes back soon after was a stumble.
            const bool lost = gap > 0 && gap <= missing_;
            const bool stumble = gap < 0 && -gap <= lost_;
            if (lost || stumble) {
                missing_ -= gap;
                lost_ += gap;
            } else {
                start_ += gap;
            }
        }
        run_.push_back(i);
    }

    void placeTimed(std::size_t i) {
        line_[i] = static_cast<double>(readings_[i].clock) / 1000 - start_;
    }

    // Moves the run to where the container has it; the writer's own unsteadiness moves none.
    void settle() {
        if (container_.empty() || run_.empty()) {
            run_.clear();
            return;
        }
        std::vector<double> off;
        for (const std::size_t i : run_) {
            off.push_back(static_cast<double>(wholeSeconds(readings_[i].clock)) - start_ -
                          container_[i]);
        }
        const double median = medianOf(off);
        if (std::abs(median) > unsteady) {
            start_ += std::round(median);
            for (const std::size_t i : run_) {
                placeTimed(i);
            }
        }
        run_.clear();
    }

    void placeUntimed(std::size_t i, bool counts) {
        if (!container_.empty()) {
            line_[i] = std::round(container_[i]);
        } else {
            line_[i] = i == 0 ? 0 : std::floor(line_[i - 1] + 1e-6) + (counts ? 1 : 0);
        }
    }

    static constexpr double noStart = -1e300;
    static constexpr double unsteady = 0.75; // seconds by which a writer is early or late

    std::span<const ClockedReading> readings_;
    Slots slots_;
    std::vector<double> container_; // empty where it tells nothing
    double missing_;                // seconds that no reading stands for
    double lost_ = 0;               // those that the clock has left out so far
    std::vector<double> line_;
    std::vector<std::size_t> run_;
    double start_ = noStart; // the clock at the recording's start, by the present run
    std::size_t lastTimed_ = 0;
    std::size_t lastSlot_ = 0;
};

} // namespace

bool farMore(std::size_t readings, std::size_t seconds) {
    return readings > seconds + std::max<std::size_t>(5, seconds / 10);
}

bool clockTellsAll(std::span<const ClockedReading> readings, std::size_t seconds) {
    const Slots slots(readings, seconds);
    if (slots.count() < seconds || seconds == 0) {
        return false;
    }
    const ClockedReading* last = nullptr;
    std::int64_t slot = 0;
    std::int64_t lastSlot = 0;
    for (std::size_t i = 0; i < readings.size(); ++i) {
        if (timed(readings[i])) {
            if (last != nullptr &&
                std::abs(readings[i].clock - last->clock - 1000 * (slot - lastSlot)) >= 500) {
                return false;
            }
            last = &readings[i];
            lastSlot = slot;
        }
        slot += slots.counts(i) ? 1 : 0;
    }
    return true;
}

std::vector<double> timeLine(std::span<const ClockedReading> readings, std::size_t seconds) {
    const Slots slots(readings, seconds);
    if (severalPerSecond(readings, slots, seconds)) {
        return spreadLine(readings, seconds);
    }
    if (seconds > 0 && farMore(slots.count(), seconds)) {
        seconds = slots.count();
    }
    std::vector<double> line = Runs(readings, seconds).place();
    if (seconds > 0 && !line.empty()) {
        double last = 0; // of a reading written again the container tells half a second too much
        for (std::size_t i = 0; i < line.size(); ++i) {
            last = readings[i].repeats ? last : std::max(last, std::floor(line[i] + 1e-6));
        }
        const double tail = last - static_cast<double>(seconds - 1);
        for (double& place : line) {
            place -= std::max(0.0, tail);
        }
    }
    return line;
}

} // namespace velmorant::telemetry

// Gathers the readings of a recording and makes one sample per second of them.
//
// Readings with a place in the recording (mediaTime) go into the bins of their seconds at once, so
// a source of any rate costs memory per second only. Readings without one, as written once per
// second by recorders that index their blocks, are kept in order and placed when all are known.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

class Collector {
  public:
    // A reading with a media time goes to its second; one without joins the sequence.
    void add(const Fix& fix);
    void add(double mediaTime, const Acceleration& acceleration);
    // Belongs to the reading added last to the sequence.
    void addToLast(const Acceleration& acceleration);

    bool empty() const { return sequence_.empty() && bins_.empty(); }
    bool hasFixes() const { return fixes_ > 0; }
    std::size_t readings() const { return readings_; }

    // One sample per second of `duration` seconds; where that is unknown (0), or far from what the
    // readings say, the readings tell how many. `creation` is in seconds since 1970, 0 for unknown.
    Telemetry finish(double duration, std::int64_t creation);

    // Ten hours: bounds the memory, whatever length a file claims. Seconds beyond are left out.
    static constexpr std::size_t mostSeconds = 36000;

  private:
    struct Mean {
        float x = 0, y = 0, z = 0, strongest = 0;
        std::uint32_t count = 0;
        void add(const Acceleration& acceleration);
        void add(const Mean& other);
    };
    struct Bin {
        Fix fix;
        float distance = 2; // seconds between the fix and the bin's own time; 2 is "none"
        Mean acceleration;
    };
    struct InOrder {
        Fix fix;
        Mean acceleration;
    };

    Bin* bin(std::size_t second);
    void offer(const Fix& fix, std::size_t second);
    static void fill(Sample& sample, const Bin& bin);
    void placeSequence(double duration);
    std::optional<std::int64_t> startOfSequence(double duration, std::size_t& seconds) const;
    void placeByClock(std::int64_t start, std::size_t seconds);
    std::int64_t firstSecondOfSequence(std::size_t seconds) const;
    void placeByIndex(std::size_t seconds);
    std::size_t secondsOf(double duration) const;
    std::int64_t anchor(std::int64_t creation, TimeBase& base) const;

    std::vector<Bin> bins_;
    std::vector<InOrder> sequence_;
    std::size_t fixes_ = 0;
    std::size_t readings_ = 0;
};

// Sets the state of a fix whose own values betray it: range, zero, date.
void judge(Fix& fix);

} // namespace velmorant::telemetry

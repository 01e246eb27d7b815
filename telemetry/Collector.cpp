#include "telemetry/Collector.h"

#include <algorithm>

#include "telemetry/FalsePositions.h"

namespace velmorant::telemetry {

namespace {

// The first candidate of several that a fair share agrees on: a single wrong clock reading at the
// start must not move a whole recording. Where none has that share, the commonest.
class Vote {
  public:
    void add(std::int64_t candidate) {
        ++total_;
        for (auto& [value, count] : counts_) {
            if (value == candidate) {
                ++count;
                return;
            }
        }
        constexpr std::size_t mostCandidates = 256;
        if (counts_.size() < mostCandidates) {
            counts_.emplace_back(candidate, 1);
        }
    }
    bool empty() const { return counts_.empty(); }
    std::int64_t firstSupported() const {
        for (const auto& [value, count] : counts_) {
            if (support(value) * 4 >= total_) {
                return value;
            }
        }
        return std::max_element(counts_.begin(), counts_.end(),
                                [](const auto& a, const auto& b) { return a.second < b.second; })
            ->first;
    }
    // The least of those with a tenth of the votes.
    std::int64_t leastSupported() const {
        std::int64_t least = firstSupported();
        for (const auto& [value, count] : counts_) {
            if (count * 10 >= total_) {
                least = std::min(least, value);
            }
        }
        return least;
    }

  private:
    // A second to either side counts too: receivers report up to one late.
    std::size_t support(std::int64_t candidate) const {
        std::size_t votes = 0;
        for (const auto& [value, count] : counts_) {
            votes += std::abs(value - candidate) <= 1 ? count : 0;
        }
        return votes;
    }

    std::vector<std::pair<std::int64_t, std::size_t>> counts_;
    std::size_t total_ = 0;
};

bool trustedTime(const Fix& fix) {
    return fix.state == FixState::good && fix.time != noTime;
}

std::int64_t wholeSeconds(std::int64_t milliseconds) {
    return milliseconds >= 0 ? milliseconds / 1000 : -((999 - milliseconds) / 1000);
}

// Every second that is recorded for at least half of its length, and always the first.
std::size_t wholeLength(double duration) {
    const double rounded = std::max(1.0, std::round(duration));
    return rounded < static_cast<double>(Collector::mostSeconds) ? static_cast<std::size_t>(rounded)
                                                                 : Collector::mostSeconds;
}

// A few readings more than seconds are the previous recording's tail; far more say that the length
// in the header is wrong.
bool farMore(std::size_t readings, std::size_t seconds) {
    return readings > seconds + std::max<std::size_t>(5, seconds / 10);
}

} // namespace

void judge(Fix& fix) {
    constexpr double farBeyondAnyCar = 1e5;
    for (double* value : {&fix.speed, &fix.heading, &fix.altitude}) {
        if (!(std::abs(*value) < farBeyondAnyCar)) {
            *value = unknown;
        }
    }
    if (fix.state != FixState::good) {
        return;
    }
    if (!(std::abs(fix.latitude) <= 90) || !(std::abs(fix.longitude) <= 180)) {
        fix.state = FixState::outOfRange;
    } else if (fix.latitude == 0 && fix.longitude == 0) {
        fix.state = FixState::zeroPosition;
    }
}

void Collector::expect(double seconds) {
    if (seconds > 0) {
        expected_ = wholeLength(seconds) + 2;
    }
}

Collector::Bin* Collector::bin(std::size_t second) {
    if (second >= mostSeconds) {
        return nullptr;
    }
    if (second >= bins_.size()) {
        if (second >= bins_.capacity()) {
            bins_.reserve(std::max(2 * second, expected_));
        }
        bins_.resize(second + 1);
    }
    return &bins_[second];
}

void Collector::offer(const Fix& fix, std::size_t second) {
    const double away = std::abs(fix.mediaTime - static_cast<double>(second));
    constexpr double furthest = 0.75; // a source that writes once a second, give or take
    if (away > furthest) {
        return;
    }
    Bin* target = bin(second);
    if (target == nullptr) {
        return;
    }
    // A good fix up to half a second away beats one without a fix that is nearer.
    const auto rank = [](const Fix& f, double distance) {
        return (f.state == FixState::good && distance <= 0.5 ? 0.0 : 2.0) + distance;
    };
    if (target->distance >= 2 ||
        rank(fix, away) < rank(target->fix, static_cast<double>(target->distance))) {
        target->fix = fix;
        target->distance = static_cast<float>(away);
    }
}

void Collector::add(const Fix& given) {
    ++readings_;
    Fix fix = given;
    judge(fix);
    if (fix.state == FixState::good) {
        ++fixes_;
        standardTime_ = standardTime_ || (fix.standardTime && fix.time != noTime);
    }
    if (!known(fix.mediaTime)) {
        if (sequence_.empty()) {
            sequence_.reserve(expected_);
        }
        if (sequence_.size() < mostSeconds) {
            sequence_.push_back({fix, {}});
        }
        return;
    }
    if (!(fix.mediaTime > -1 && fix.mediaTime < static_cast<double>(mostSeconds))) {
        return;
    }
    const double below = std::floor(fix.mediaTime);
    if (below >= 0) {
        offer(fix, static_cast<std::size_t>(below));
    }
    offer(fix, static_cast<std::size_t>(below + 1));
}

void Collector::add(double mediaTime, const Acceleration& acceleration) {
    if (const auto second = secondOf(mediaTime)) {
        AccelerationMean reading;
        reading.add(static_cast<float>(acceleration.x), static_cast<float>(acceleration.y),
                    static_cast<float>(acceleration.z));
        add(*second, reading);
    }
}

void Collector::add(std::size_t second, const AccelerationMean& readings) {
    ++readings_;
    if (Bin* target = bin(second)) {
        target->acceleration.add(readings);
    }
}

void Collector::addToLast(const Acceleration& acceleration) {
    if (!sequence_.empty()) {
        sequence_.back().acceleration.add(static_cast<float>(acceleration.x),
                                          static_cast<float>(acceleration.y),
                                          static_cast<float>(acceleration.z));
    }
}

std::size_t Collector::secondsOf(double duration) const {
    const std::size_t read = std::max(bins_.size(), sequence_.size());
    if (!(duration > 0)) {
        return std::min(read, mostSeconds);
    }
    const std::size_t seconds = wholeLength(duration);
    return farMore(bins_.size(), seconds) ? bins_.size() : seconds;
}

// The clock reading of the recording's first second. Each trusted reading votes with its time less
// its place in the row. Lost blocks make later votes greater and repeated ones smaller, so the
// least well-supported vote is the one that counts from the true start; blocks beyond the
// recording's length are the tail of the previous recording and come first.
std::int64_t Collector::firstSecondOfSequence(std::size_t seconds) const {
    Vote vote;
    for (std::size_t i = 0; i < sequence_.size(); ++i) {
        if (trustedTime(sequence_[i].fix)) {
            vote.add(wholeSeconds(sequence_[i].fix.time) - static_cast<std::int64_t>(i));
        }
    }
    const std::size_t excess = sequence_.size() > seconds ? sequence_.size() - seconds : 0;
    return vote.leastSupported() + static_cast<std::int64_t>(excess);
}

void Collector::placeByIndex(std::size_t seconds) {
    const std::size_t count = sequence_.size();
    const bool oncePerSecond = count <= seconds + 3;
    for (std::size_t i = 0; i < count; ++i) {
        if (known(sequence_[i].fix.mediaTime)) {
            continue;
        }
        const double place = static_cast<double>(i);
        sequence_[i].fix.mediaTime =
            oncePerSecond ? place - static_cast<double>(count > seconds ? count - seconds : 0)
                          : place * static_cast<double>(seconds) / static_cast<double>(count);
    }
}

// The clock reading of the recording's first second, or nothing where no trusted reading has a
// time.
std::optional<std::int64_t> Collector::startOfSequence(double duration,
                                                       std::size_t& seconds) const {
    std::size_t timed = 0;
    std::size_t firstIndex = 0;
    std::int64_t first = noTime;
    std::int64_t last = noTime;
    for (std::size_t i = 0; i < sequence_.size(); ++i) {
        if (trustedTime(sequence_[i].fix)) {
            last = sequence_[i].fix.time;
            if (timed++ == 0) {
                first = last;
                firstIndex = i;
            }
        }
    }
    if (timed == 0) {
        return std::nullopt;
    }
    const double spanned = static_cast<double>(last - first) / 1000 + 1;
    if (timed > 3 && spanned > 0 && static_cast<double>(timed) > 1.5 * spanned) {
        const double share =
            static_cast<double>(firstIndex) / static_cast<double>(sequence_.size());
        return wholeSeconds(first) - static_cast<std::int64_t>(duration > 0 ? share * duration : 0);
    }
    if (farMore(sequence_.size(), seconds)) {
        seconds = sequence_.size();
    }
    const std::int64_t start = firstSecondOfSequence(seconds);
    // Without a length nothing tells a tail from a start; the first reading opens the recording.
    return duration > 0 || firstIndex > 0 ? start : std::max(start, wholeSeconds(first));
}

// Trusted readings go where their own clock says; one whose clock belongs to another day stays at
// its place in the row, untrusted.
void Collector::placeByClock(std::int64_t start, std::size_t seconds) {
    const double reach = static_cast<double>(std::max(seconds, sequence_.size())) + 4;
    for (InOrder& reading : sequence_) {
        if (!trustedTime(reading.fix)) {
            continue;
        }
        const double place = static_cast<double>(reading.fix.time - start * 1000) / 1000;
        if (place > -4 && place < reach) {
            reading.fix.mediaTime = place;
        } else {
            reading.fix.state = place < 0 ? FixState::stale : FixState::badDate;
        }
    }
}

void Collector::placeSequence(double duration) {
    std::size_t seconds = duration > 0 ? wholeLength(duration) : sequence_.size();
    if (const auto start = startOfSequence(duration, seconds)) {
        placeByClock(*start, seconds);
    }
    placeByIndex(seconds);
    for (const InOrder& reading : sequence_) {
        const double place = reading.fix.mediaTime;
        if (!(place > -0.5 && place < static_cast<double>(mostSeconds))) {
            continue;
        }
        const auto second = static_cast<std::size_t>(std::max(0.0, std::round(place)));
        offer(reading.fix, second);
        if (Bin* target = bin(second)) {
            target->acceleration.add(reading.acceleration);
        }
    }
    sequence_.clear();
    sequence_.shrink_to_fit();
}

std::int64_t Collector::anchor(std::int64_t creation, TimeBase& base) const {
    Vote vote;
    std::int64_t untrusted = noTime;
    for (std::size_t second = 0; second < bins_.size(); ++second) {
        const Fix& fix = bins_[second].fix;
        if (bins_[second].distance >= 2 || fix.time == noTime) {
            continue;
        }
        const auto candidate = static_cast<std::int64_t>(
            std::llround(static_cast<double>(fix.time) / 1000 - fix.mediaTime));
        if (fix.state == FixState::good) {
            vote.add(candidate);
            base = fix.base;
        } else if (untrusted == noTime) {
            untrusted = candidate;
        }
    }
    if (!vote.empty()) {
        return vote.firstSupported();
    }
    if (creation > 0) {
        base = TimeBase::creation;
        return creation;
    }
    base = untrusted != noTime ? TimeBase::camera : TimeBase::none;
    return untrusted != noTime ? untrusted : 0;
}

void Collector::fill(Sample& sample, const Bin& bin) {
    if (!bin.acceleration.empty()) {
        sample.hasAcceleration = true;
        sample.mean = bin.acceleration.mean();
        sample.strongest = bin.acceleration.strongest();
    }
    if (bin.distance < 2) {
        sample.state = bin.fix.state;
        sample.timeRecorded = bin.fix.time;
        sample.recordedBase = bin.fix.base;
        sample.rawLatitude = bin.fix.latitude;
        sample.rawLongitude = bin.fix.longitude;
        sample.rawSpeed = bin.fix.speed;
        sample.heading = bin.fix.heading;
        sample.altitude = bin.fix.altitude;
    }
}

Telemetry Collector::finish(double duration, std::int64_t creation) {
    if (!sequence_.empty()) {
        placeSequence(duration);
    }
    Telemetry telemetry;
    telemetry.duration = duration;
    const std::int64_t start = anchor(creation, telemetry.base);
    telemetry.samples.resize(secondsOf(duration));
    for (std::size_t second = 0; second < telemetry.samples.size(); ++second) {
        telemetry.samples[second].time = start + static_cast<std::int64_t>(second);
        if (second < bins_.size()) {
            fill(telemetry.samples[second], bins_[second]);
        }
    }
    bins_.clear();
    bins_.shrink_to_fit();
    markFalsePositions(telemetry.samples);
    completeSamples(telemetry.samples);
    return telemetry;
}

} // namespace velmorant::telemetry

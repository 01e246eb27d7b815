#include "telemetry/Collector.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "telemetry/FalsePositions.h"
#include "telemetry/StartVote.h"
#include "telemetry/TimeLine.h"

namespace velmorant::telemetry {

namespace {

bool trustedTime(const Fix& fix) {
    return fix.state == FixState::good && fix.time != noTime;
}

// Every second that is recorded for at least half of its length, and always the first.
std::size_t wholeLength(double duration) {
    const double rounded = std::max(1.0, std::round(duration));
    return rounded < static_cast<double>(Collector::mostSeconds) ? static_cast<std::size_t>(rounded)
                                                                 : Collector::mostSeconds;
}

// The same reading again: a receiver gives each second another time.
bool repeats(const Fix& fix, const Fix& before) {
    return trustedTime(fix) && trustedTime(before) && fix.time == before.time &&
           fix.latitude == before.latitude && fix.longitude == before.longitude;
}

// A reading written again stands for its second only where the car has not moved since.
bool standing(const Fix& fix) {
    constexpr double walking = 2; // km/h
    return fix.speed < walking;
}

// How fast the clock of readings goes against their media times: 1 where both are right. Over an
// eighth of them each, so that a leap of the clock falls into few spans.
double paceOf(std::span<const Fix> readings) {
    std::vector<const Fix*> timed;
    for (const Fix& fix : readings) {
        if (trustedTime(fix)) {
            timed.push_back(&fix);
        }
    }
    constexpr std::size_t fewest = 8;
    if (timed.size() < fewest) {
        return 1;
    }
    const std::size_t span = timed.size() / 8;
    std::vector<double> paces;
    for (std::size_t i = span; i < timed.size(); ++i) {
        const double media = timed[i]->mediaTime - timed[i - span]->mediaTime;
        const auto clock = static_cast<double>(timed[i]->time - timed[i - span]->time) / 1000;
        if (media > 0) {
            paces.push_back(clock / media);
        }
    }
    if (paces.empty()) {
        return 1;
    }
    const auto middle = paces.begin() + static_cast<std::ptrdiff_t>(paces.size() / 2);
    std::nth_element(paces.begin(), middle, paces.end());
    return *middle;
}

} // namespace

void judge(Fix& fix) {
    // What recorders write for "nothing": 65535 and other values that no car has.
    const auto keepWithin = [](double& value, double least, double most) {
        if (!(value >= least && value <= most)) {
            value = unknown;
        }
    };
    constexpr double deepest = -1000;
    constexpr double highest = 10000; // metres; no road comes near either
    keepWithin(fix.speed, 0, fastestSpeed);
    keepWithin(fix.heading, -360, 360);
    keepWithin(fix.altitude, deepest, highest);
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
    if (!known(fix.mediaTime) || mediaTimes_ == MediaTimes::doubted) {
        addToSequence(fix);
    } else if (mediaTimes_ == MediaTimes::believed) {
        addAtMediaTime(fix);
    } else {
        constexpr std::size_t enough = 256;
        probation_.push_back(fix);
        if (probation_.size() == enough) {
            endProbation();
        }
    }
}

void Collector::addToSequence(const Fix& fix) {
    if (sequence_.empty()) {
        sequence_.reserve(expected_);
    }
    if (sequence_.size() < mostSeconds) {
        sequence_.push_back({fix, offset_, {}});
    }
}

void Collector::addAtMediaTime(const Fix& fix) {
    if (!(fix.mediaTime > -1 && fix.mediaTime < static_cast<double>(mostSeconds))) {
        return;
    }
    const bool again = repeats(fix, last_);
    last_ = fix;
    if (again && !standing(fix)) {
        return;
    }
    const double below = std::floor(fix.mediaTime);
    if (below >= 0) {
        offer(fix, static_cast<std::size_t>(below));
    }
    offer(fix, static_cast<std::size_t>(below + 1));
}

void Collector::endProbation() {
    constexpr double tooFast = 1.5;
    const double pace = paceOf(probation_);
    const bool doubted = pace > tooFast || (pace > 0.05 && pace < 1 / tooFast);
    mediaTimes_ = doubted ? MediaTimes::doubted : MediaTimes::believed;
    for (const Fix& fix : probation_) {
        doubted ? addToSequence(fix) : addAtMediaTime(fix);
    }
    probation_.clear();
    probation_.shrink_to_fit();
}

// Where the media times fill the recording as it is, the recording is a time lapse and they are
// right. Else the clock wins; accelerations that were placed by such times are as wrong as they.
void Collector::settleDoubt(double duration) {
    double end = 0;
    for (const InOrder& reading : sequence_) {
        end = known(reading.fix.mediaTime) ? std::max(end, reading.fix.mediaTime) : end;
    }
    constexpr double most = 0.25;
    if (duration > 0 && std::abs(end + 1 - duration) <= most * duration + 1) {
        for (const InOrder& reading : std::exchange(sequence_, {})) {
            addAtMediaTime(reading.fix);
        }
        return;
    }
    followedClock_ = true;
    for (InOrder& reading : sequence_) {
        reading.fix.mediaTime = unknown;
    }
    if (std::abs(static_cast<double>(bins_.size()) - duration) > most * duration + 1) {
        bins_.clear();
    }
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

void Collector::comesAt(double seconds) {
    constexpr double perSecond = 1000;
    offset_ = seconds > 0 ? static_cast<std::uint64_t>(std::llround(seconds * perSecond)) : 0;
    if (!timesAt_) {
        timesAt_ = [](std::span<const std::uint64_t> milliseconds) {
            std::vector<double> times;
            times.reserve(milliseconds.size());
            for (const std::uint64_t time : milliseconds) {
                times.push_back(static_cast<double>(time) / perSecond);
            }
            return times;
        };
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

// Seconds from the recording's start for each reading of the sequence.
std::vector<double> Collector::linedUp(double duration) const {
    const std::size_t seconds = duration > 0 ? wholeLength(duration) : 0;
    std::vector<ClockedReading> readings;
    readings.reserve(sequence_.size());
    const Fix* before = nullptr;
    for (const InOrder& reading : sequence_) {
        const Fix& fix = reading.fix;
        ClockedReading clocked;
        clocked.clock = trustedTime(fix) ? fix.time : noTime;
        clocked.repeats = before != nullptr && repeats(fix, *before);
        readings.push_back(clocked);
        before = &fix;
    }
    if (timesAt_ && !followedClock_ && !clockTellsAll(readings, seconds)) {
        std::vector<std::uint64_t> offsets;
        offsets.reserve(sequence_.size());
        for (const InOrder& reading : sequence_) {
            offsets.push_back(reading.offset);
        }
        const std::vector<double> times = timesAt_(offsets);
        for (std::size_t i = 0; i < times.size() && i < readings.size(); ++i) {
            readings[i].container = times[i];
        }
    }
    return timeLine(readings, seconds);
}

void Collector::placeSequence(double duration) {
    const std::vector<double> line = linedUp(duration);
    const Fix* before = nullptr;
    for (std::size_t i = 0; i < sequence_.size(); ++i) {
        InOrder& reading = sequence_[i];
        const bool again = before != nullptr && repeats(reading.fix, *before);
        before = &reading.fix;
        const double place = line[i];
        if (!(place > -0.5 && place < static_cast<double>(mostSeconds))) {
            continue;
        }
        const auto second = static_cast<std::size_t>(std::max(0.0, std::round(place)));
        reading.fix.mediaTime = place;
        if (!again || standing(reading.fix)) {
            offer(reading.fix, second);
        }
        if (Bin* target = bin(second)) {
            target->acceleration.add(reading.acceleration);
        }
    }
    sequence_.clear();
    sequence_.shrink_to_fit();
}

std::int64_t Collector::anchor(std::int64_t creation, TimeBase& base) const {
    StartVote vote;
    std::int64_t untrusted = noTime;
    for (std::size_t second = 0; second < bins_.size(); ++second) {
        const Fix& fix = bins_[second].fix;
        if (bins_[second].distance >= 2 || fix.time == noTime) {
            continue;
        }
        const double start = static_cast<double>(fix.time) / 1000 - fix.mediaTime;
        if (fix.state == FixState::good) {
            vote.add(start);
            base = fix.base;
        } else if (untrusted == noTime) {
            untrusted = static_cast<std::int64_t>(std::llround(start));
        }
    }
    if (!vote.empty()) {
        return vote.winner();
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
    if (!probation_.empty()) {
        endProbation();
    }
    if (mediaTimes_ == MediaTimes::doubted) {
        settleDoubt(duration);
    }
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

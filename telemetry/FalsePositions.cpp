#include "telemetry/FalsePositions.h"

#include <algorithm>
#include <optional>

#include "telemetry/Geometry.h"

namespace velmorant::telemetry {

namespace {

double between(const Sample& a, const Sample& b) {
    return distance(a.rawLatitude, a.rawLongitude, b.rawLatitude, b.rawLongitude);
}

Movement movement(const Sample& a, const Sample& b) {
    return movementBetween(a.rawLatitude, a.rawLongitude, b.rawLatitude, b.rawLongitude);
}

constexpr double samePlaceDegrees = 2e-5; // no place within a metre is further north or south

bool good(const Sample& sample) {
    return sample.state == FixState::good;
}

bool samePlace(const Sample& a, const Sample& b) {
    constexpr double metres = 1;
    return std::abs(a.rawLatitude - b.rawLatitude) < samePlaceDegrees && between(a, b) <= metres;
}

// A row of trusted positions that a car can have driven.
struct Chain {
    std::size_t first = 0;
    std::size_t last = 0;    // its last sample
    std::size_t arrived = 0; // since when its last place is reported
    std::size_t length = 0;
    double weight = 0;
};

bool believable(const std::vector<Sample>& samples, const Chain& chain, std::size_t to) {
    constexpr double fastest = 90; // metres per second
    constexpr double scatter = 30; // metres
    // A few metres apart, as nearly all neighbours are: no sphere is needed to see it.
    constexpr double fewMetres = 0.0002; // degrees
    const std::size_t from = chain.last;
    if (std::abs(samples[from].rawLatitude - samples[to].rawLatitude) < fewMetres &&
        std::abs(samples[from].rawLongitude - samples[to].rawLongitude) < fewMetres) {
        return true;
    }
    // A place that stands still may be frozen; the car drove on from when it was new.
    return between(samples[from], samples[to]) <=
           fastest * static_cast<double>(to - chain.arrived) + scatter;
}

// How far the step to a sample is from what its recorded speed tells, in metres per second.
double disagreement(const std::vector<Sample>& samples, std::size_t from, std::size_t to) {
    const double perSecond = between(samples[from], samples[to]) / static_cast<double>(to - from);
    double recorded = samples[to].rawSpeed;
    if (known(samples[from].rawSpeed) && known(recorded)) {
        recorded = (recorded + samples[from].rawSpeed) / 2;
    }
    return known(recorded) ? std::abs(perSecond - recorded / 3.6) : 0;
}

// What a sample adds to its chain: a step as far as the speed says counts in full, a place that
// stands still hardly, since a receiver without reception repeats its last one for hours.
double weightOf(const std::vector<Sample>& samples, std::size_t from, std::size_t to) {
    constexpr double standing = 0.05;
    if (samePlace(samples[from], samples[to])) {
        return standing;
    }
    const double perSecond = between(samples[from], samples[to]) / static_cast<double>(to - from);
    constexpr double tolerance = 4; // metres per second
    return disagreement(samples, from, to) <= std::max(tolerance, perSecond / 2) ? 1 : standing;
}

class Chains {
  public:
    explicit Chains(std::vector<Sample>& samples)
        : samples_(samples), chainOf_(samples.size(), none) {}

    // Every trusted sample joins the chain whose end its speed fits best, of equals the longest.
    void link() {
        for (std::size_t i = 0; i < samples_.size(); ++i) {
            if (!good(samples_[i])) {
                continue;
            }
            std::size_t best = bestFor(i);
            if (best == chains_.size()) {
                if (chains_.size() == none) {
                    continue;
                }
                chains_.push_back({i, i, i, 0, 0.05});
            } else {
                join(chains_[best], i);
            }
            ++chains_[best].length;
            chainOf_[i] = static_cast<std::uint8_t>(best);
        }
    }

    void keepHeaviest() {
        if (chains_.size() < 2) {
            return;
        }
        weigh();
        const auto heaviest =
            std::max_element(chains_.begin(), chains_.end(), [](const Chain& a, const Chain& b) {
                return a.weight < b.weight || (a.weight == b.weight && a.length < b.length);
            });
        const auto kept = static_cast<std::uint8_t>(heaviest - chains_.begin());
        for (std::size_t i = 0; i < samples_.size(); ++i) {
            if (good(samples_[i]) && chainOf_[i] != kept) {
                samples_[i].state = i < heaviest->first ? FixState::stale : FixState::jump;
            } else if (i > 0 && samples_[i].state == FixState::parkedDrift &&
                       samples_[i - 1].state == FixState::stale &&
                       samePlace(samples_[i - 1], samples_[i])) {
                samples_[i].state = FixState::stale;
            }
        }
    }

  private:
    static constexpr std::size_t none = 64;

    std::size_t bestFor(std::size_t i) const {
        std::size_t best = chains_.size();
        double least = 0;
        for (std::size_t c = 0; c < chains_.size(); ++c) {
            if (!believable(samples_, chains_[c], i)) {
                continue;
            }
            const double off =
                chains_.size() == 1 ? 0 : disagreement(samples_, chains_[c].arrived, i);
            if (best == chains_.size() || off < least ||
                (off == least && chains_[c].length > chains_[best].length)) {
                best = c;
                least = off;
            }
        }
        return best;
    }

    // Asked only where there is a choice, as in few recordings.
    void weigh() {
        std::vector<std::size_t> last(chains_.size(), samples_.size());
        for (std::size_t i = 0; i < samples_.size(); ++i) {
            const std::size_t chain = chainOf_[i];
            if (!good(samples_[i]) || chain >= chains_.size()) {
                continue;
            }
            if (last[chain] < samples_.size()) {
                chains_[chain].weight += weightOf(samples_, last[chain], i);
            }
            last[chain] = i;
        }
    }

    void join(Chain& chain, std::size_t i) const {
        if (!samePlace(samples_[chain.last], samples_[i])) {
            chain.arrived = i;
        }
        chain.last = i;
    }

    std::vector<Sample>& samples_;
    std::vector<Chain> chains_;
    std::vector<std::uint8_t> chainOf_;
};

// A place that stays while the recorded speed says that the car drives on: left over at the
// roadside or in a tunnel. Twice the same is what a receiver reports that comes late once.
void markSpeedWithoutMovement(std::vector<Sample>& samples) {
    constexpr double driving = 5;  // km/h; below, a parked receiver's own noise
    constexpr double movedFor = 5; // metres; the coarsest layouts tell places 4 m apart
    std::size_t runStart = samples.size();
    std::size_t before = samples.size(); // the trusted sample before
    double way = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (!good(samples[i])) {
            continue;
        }
        const bool goesOn = runStart < samples.size() && samples[before].rawSpeed >= driving &&
                            samples[i].rawSpeed >= driving &&
                            samePlace(samples[runStart], samples[i]);
        if (!goesOn) {
            runStart = before = i;
            way = 0;
            continue;
        }
        way += samples[i].rawSpeed / 3.6 * static_cast<double>(i - before);
        before = i;
        if (way > movedFor && i - runStart >= 2) {
            for (std::size_t frozen = runStart + 1; frozen <= i; ++frozen) {
                samples[frozen].state =
                    good(samples[frozen]) ? FixState::parkedDrift : samples[frozen].state;
            }
        }
    }
}

// A place without a speed, or with none, that stood still until a step betrays it which no car
// makes in that time, though it can have been driven since the place was new: frozen.
void markFrozen(std::vector<Sample>& samples) {
    std::size_t last = samples.size(); // the trusted sample before
    std::size_t arrived = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (!good(samples[i])) {
            continue;
        }
        if (last < samples.size() && samePlace(samples[last], samples[i])) {
            last = i;
            continue;
        }
        if (last < samples.size() && last > arrived) {
            const Chain since{arrived, last, arrived, 0, 0};
            const Chain now{last, last, last, 0, 0};
            if (!believable(samples, now, i) && believable(samples, since, i)) {
                for (std::size_t frozen = arrived + 1; frozen <= last; ++frozen) {
                    samples[frozen].state =
                        good(samples[frozen]) ? FixState::frozen : samples[frozen].state;
                }
            }
        }
        last = arrived = i;
    }
}

// Speed and heading over the good neighbours up to two seconds away.
void deriveMovement(std::vector<Sample>& samples, std::size_t i, double& lastHeading) {
    Sample& sample = samples[i];
    if (known(sample.rawSpeed) && known(sample.heading)) {
        lastHeading = sample.heading;
        return;
    }
    std::size_t from = i;
    std::size_t to = i;
    for (std::size_t step = 1; step <= 2; ++step) {
        if (i >= step && samples[i - step].state == FixState::good && from == i) {
            from = i - step;
        }
        if (i + step < samples.size() && samples[i + step].state == FixState::good && to == i) {
            to = i + step;
        }
    }
    const Movement moved = movement(samples[from], samples[to]);
    if (!known(sample.rawSpeed)) {
        sample.speed = from == to ? 0 : moved.metres() / static_cast<double>(to - from) * 3.6;
    }
    if (!known(sample.heading)) {
        constexpr double enoughForDirection = 2; // metres; below, scatter turns the car around
        if (moved.metres() >= enoughForDirection) {
            lastHeading = moved.heading();
        }
        sample.heading = lastHeading;
    }
}

// A car that has not moved yet points where it will go; every heading lies within one turn.
void turnHeadingsForward(std::vector<Sample>& samples) {
    double next = 0;
    for (auto sample = samples.rbegin(); sample != samples.rend(); ++sample) {
        if (sample->state != FixState::good) {
            continue;
        }
        if (!known(sample->heading)) {
            sample->heading = next;
        }
        sample->heading = std::fmod(sample->heading, 360.0);
        if (sample->heading < 0) {
            // So small a turn to the left that the sum rounds to the whole circle is none.
            sample->heading = sample->heading + 360 < 360 ? sample->heading + 360 : 0;
        }
        next = sample->heading;
    }
}

} // namespace

void markFalsePositions(std::vector<Sample>& samples) {
    markSpeedWithoutMovement(samples);
    Chains chains(samples);
    chains.link();
    chains.keepHeaviest();
    markFrozen(samples);
}

void completeSamples(std::vector<Sample>& samples) {
    double lastHeading = unknown;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        Sample& sample = samples[i];
        if (sample.state != FixState::good) {
            continue;
        }
        sample.latitude = sample.rawLatitude;
        sample.longitude = sample.rawLongitude;
        if (known(sample.rawSpeed)) {
            sample.speed = std::clamp(sample.rawSpeed, 0.0, fastestSpeed);
        }
        deriveMovement(samples, i, lastHeading);
    }
    turnHeadingsForward(samples);
    const auto firstGood = std::find_if(samples.begin(), samples.end(), [](const Sample& sample) {
        return sample.state == FixState::good;
    });
    std::optional<Sample> held;
    if (firstGood != samples.end()) {
        held = *firstGood;
    }
    for (Sample& sample : samples) {
        if (sample.state == FixState::good) {
            held = sample;
            continue;
        }
        sample.latitude = held ? held->latitude : 0;
        sample.longitude = held ? held->longitude : 0;
        sample.heading = held ? held->heading : 0;
        sample.speed = 0;
    }
}

} // namespace velmorant::telemetry

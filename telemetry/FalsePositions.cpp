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

struct Chain {
    std::size_t first = 0;
    std::size_t last = 0;
    std::size_t length = 0;
};

bool believable(const std::vector<Sample>& samples, std::size_t from, std::size_t to) {
    constexpr double fastest = 90; // metres per second
    constexpr double scatter = 50; // metres
    // A few metres apart, as nearly all neighbours are: no sphere is needed to see it.
    constexpr double fewMetres = 0.0003; // degrees
    if (std::abs(samples[from].rawLatitude - samples[to].rawLatitude) < fewMetres &&
        std::abs(samples[from].rawLongitude - samples[to].rawLongitude) < fewMetres) {
        return true;
    }
    return between(samples[from], samples[to]) <=
           fastest * static_cast<double>(to - from) + scatter;
}

// Every good sample joins the chain whose end it can follow, the longest first; chains are few.
void keepLongestChain(std::vector<Sample>& samples) {
    constexpr std::size_t mostChains = 64;
    std::vector<Chain> chains;
    std::vector<std::uint8_t> chainOf(samples.size(), UINT8_MAX);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (samples[i].state != FixState::good) {
            continue;
        }
        std::size_t best = chains.size();
        for (std::size_t c = 0; c < chains.size(); ++c) {
            if (believable(samples, chains[c].last, i) &&
                (best == chains.size() || chains[c].length > chains[best].length)) {
                best = c;
            }
        }
        if (best == chains.size()) {
            if (chains.size() == mostChains) {
                continue;
            }
            chains.push_back({i, i, 0});
        }
        chains[best].last = i;
        ++chains[best].length;
        chainOf[i] = static_cast<std::uint8_t>(best);
    }
    if (chains.size() < 2) {
        return;
    }
    const auto longest =
        std::max_element(chains.begin(), chains.end(),
                         [](const Chain& a, const Chain& b) { return a.length < b.length; });
    const auto kept = static_cast<std::uint8_t>(longest - chains.begin());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (samples[i].state == FixState::good && chainOf[i] != kept) {
            samples[i].state = i < longest->first ? FixState::stale : FixState::jump;
        }
    }
}

void markParkedDrift(std::vector<Sample>& samples) {
    constexpr double samePlace = 1;           // metres
    constexpr double drivingFast = 20;        // km/h
    constexpr double samePlaceDegrees = 2e-5; // no place within a metre is further north or south
    std::size_t runStart = 0;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        const bool goesOn =
            samples[runStart].state == FixState::good && samples[i].state == FixState::good &&
            samples[i].rawSpeed >= drivingFast &&
            std::abs(samples[runStart].rawLatitude - samples[i].rawLatitude) < samePlaceDegrees &&
            between(samples[runStart], samples[i]) <= samePlace;
        if (!goesOn) {
            runStart = i;
        } else if (i - runStart >= 2) {
            samples[i].state = FixState::parkedDrift;
        }
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
    keepLongestChain(samples);
    markParkedDrift(samples);
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
            sample.speed = std::clamp(sample.rawSpeed, 0.0, 9999.0);
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

#include "telemetry/families/VvPlaces.h"

#include <cmath>

#include "telemetry/Geometry.h"

namespace velmorant::telemetry {

namespace {

bool possibleMinutes(std::int32_t value) {
    constexpr std::int64_t perDegree = 10000000; // 100 minutes times 1e5
    return std::abs(std::int64_t{value}) % perDegree < 6000000;
}

// Steps from one block to the next that no car makes in a second.
std::size_t leaps(std::span<const VvPlace> places, VvUnit unit) {
    constexpr double mostMetres = 150;
    std::size_t count = 0;
    const VvPlace* before = nullptr;
    for (const VvPlace& place : places) {
        if (place.latitude == 0 && place.longitude == 0) {
            continue;
        }
        if (before != nullptr) {
            count += distance(vvDegrees(before->latitude, unit), vvDegrees(before->longitude, unit),
                              vvDegrees(place.latitude, unit),
                              vvDegrees(place.longitude, unit)) > mostMetres
                         ? 1
                         : 0;
        }
        before = &place;
    }
    return count;
}

} // namespace

double vvDegrees(std::int32_t value, VvUnit unit) {
    return unit == VvUnit::degrees ? value / 1e7 : fromDegreesMinutes(value / 1e5);
}

VvDecision decideVvUnit(std::span<const VvPlace> places) {
    for (const VvPlace& place : places) {
        if (!possibleMinutes(place.latitude) || !possibleMinutes(place.longitude)) {
            return {VvUnit::degrees, "the places are read as degrees: as degrees and minutes some "
                                     "would have more than 59 minutes"};
        }
    }
    const std::size_t asDegrees = leaps(places, VvUnit::degrees);
    const std::size_t asMinutes = leaps(places, VvUnit::degreesAndMinutes);
    if (asMinutes < asDegrees) {
        return {VvUnit::degreesAndMinutes, "the places are read as degrees and minutes: as degrees "
                                           "they would leap"};
    }
    if (asDegrees < asMinutes) {
        return {VvUnit::degrees,
                "the places are read as degrees: as degrees and minutes they would leap"};
    }
    return {VvUnit::degrees,
            "the places are read as degrees, as on the known real recordings; as "
            "degrees and minutes, as one decoder has them, they would lie up to 44 "
            "km elsewhere, and nothing in this recording tells the two apart"};
}

} // namespace velmorant::telemetry

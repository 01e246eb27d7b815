#include "recordings/TrackDetails.h"

#include <array>
#include <utility>

namespace velmorant {

namespace {

constexpr std::array<std::pair<TimeBase, const char*>, 4> names = {
    {{TimeBase::Utc, "utc"},
     {TimeBase::Camera, "camera"},
     {TimeBase::Creation, "creation"},
     {TimeBase::None, "none"}}};

} // namespace

TimeBase timeBaseNamed(std::string_view name) {
    for (const auto& [base, known] : names)
        if (name == known)
            return base;
    return TimeBase::Unknown;
}

std::string nameOf(TimeBase base) {
    for (const auto& [known, name] : names)
        if (base == known)
            return name;
    return {};
}

} // namespace velmorant

// The one table of the families of telemetry formats. A new family is one file in families/ and one
// row here.
#pragma once

#include <span>
#include <string_view>

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

struct Family {
    std::string_view name;
    // Hands the recording's readings to the collector and says whether it found its own structure;
    // what is wrong with it is noted with the recording's input.
    bool (*read)(Recording& recording, Collector& collector);
};

// In the order in which they are asked: what costs the fewest reads first.
std::span<const Family> families();

} // namespace velmorant::telemetry

// Reads many recordings on several threads and hands them over in their order.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

using Reader = std::function<Result<Telemetry>(const std::string& path)>;
enum class Reading { goesOn, ends };
using Consumer = std::function<Reading(std::size_t index, Result<Telemetry> outcome)>;

// `consume` is called on the caller's thread, for each path once, in their order, until it ends the
// reading; what is being read then is still read to its end. A reader never runs further ahead than
// a few recordings, so memory does not grow with their number.
void readInOrder(const std::vector<std::string>& paths, unsigned jobs, const Reader& read,
                 const Consumer& consume);

} // namespace velmorant::telemetry

// Numbers as base64 text over RC4 with a key that the recorders share.
#pragma once

#include <optional>
#include <string_view>

namespace velmorant::telemetry {

bool isBase64(std::string_view text);
// The plain decimal number, or nothing where no known key gives one.
std::optional<double> decipherNumber(std::string_view base64);

} // namespace velmorant::telemetry

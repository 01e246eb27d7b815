// Numbers as base64 text over RC4. The recorders share a few keys: "luckychip gps", and "customer
// XX gps" with one letter from a to t twice for XX.
#pragma once

#include <optional>
#include <string_view>

namespace velmorant::telemetry {

bool isBase64(std::string_view text);

struct CipheredPlace {
    double latitude = 0, longitude = 0; // as they stand: degrees and minutes in one number
};

// Nothing where no known key makes plain decimal numbers of both.
std::optional<CipheredPlace> decipherPlace(std::string_view latitude, std::string_view longitude);

} // namespace velmorant::telemetry

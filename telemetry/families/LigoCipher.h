// Enciphered records of LIGOGPSINFO:
//   record = "####" length:u32le (steering:u8 enciphered bytes)*
// The upper three bits of a steering byte tell how many bytes follow and where a blank stands
// between them, its lower bits belong to those bytes. The plain record is a u32 counter and the
// text that plain records have as well.
#pragma once

#include <optional>
#include <string>

#include "telemetry/Bytes.h"

namespace velmorant::telemetry {

// Counter and text; nothing where the bytes are no such record.
std::optional<std::string> decipherLigo(Bytes record);

struct LigoPlace {
    double latitude = 0, longitude = 0; // degrees without their signs
};

// Enciphered records have their places shifted as well: within ten degrees the two change places
// and are made smaller. Three scales are known that nothing in a recording tells apart; this is the
// commonest.
LigoPlace unshifted(const LigoPlace& shifted);

} // namespace velmorant::telemetry

// Text for XML 1.0 in UTF-8, and numbers as text without regard to any locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmorant::telemetry {

// True where every byte belongs to well-formed UTF-8 and every character may stand in XML 1.0.
bool isXmlText(std::string_view text);

// Escapes for element and attribute text. What XML cannot carry becomes U+FFFD. Tab, line feed and
// carriage return become character references, so that attributes keep them.
void appendXmlText(std::string& out, std::string_view text);

// Replaces '%' and each byte that XML cannot carry by '%' and two upper-case hexadecimal digits.
std::string percentEncoded(std::string_view bytes);

// Rounds half away from zero to the given number of decimals (0 to 9). No number becomes 0.
void appendFixed(std::string& out, double value, int decimals);
void appendInteger(std::string& out, std::int64_t value);

} // namespace velmorant::telemetry

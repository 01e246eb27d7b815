#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmorant {

/// The text and number rules that many rooms share.
///
/// Texts are UTF-8; a "character" is a Unicode code point, an invalid byte counts as one.
/// "Halves to even" means that 0.5 becomes 0, 1.5 becomes 2 and 2.5 becomes 2.

/// Rounds to the nearest integer, halves to even. Throws StepError outside the result's range and
/// for values that are not a number.
std::int16_t toInt16(double value);
std::int32_t toInt32(double value);

/// Reads a decimal number ("12", "-3.5", "+1e3"; blanks around it are allowed), independent of
/// the locale. Throws StepError for any other text.
double toDouble(std::string_view text);
std::int16_t toInt16(std::string_view text); ///< toDouble, then rounded; throws StepError
std::int32_t toInt32(std::string_view text); ///< toDouble, then rounded; throws StepError
bool isNumber(std::string_view text);

/// The shortest decimal text that reads back as the same double, without an exponent for
/// ordinary magnitudes: 121.5 gives "121.5", 60.0 gives "60".
std::string numberText(double value);

/// Pattern "00", "000", ...: at least `digits` digits, a minus sign in front of them.
std::string zeroPadded(std::int64_t value, int digits);

/// Pattern "#0.00": at least one integer digit, exactly two decimals, halves away from zero as
/// the display shows them.
std::string twoDecimals(double value);

/// Fills a digit pattern such as "00:00:00" or "####/##/##" from the right: the text's number,
/// rounded to an integer, gives the digits; digits that do not fit stand in front of the first
/// place; a "0" place without a digit becomes "0", a "#" place nothing. A text that is not a number
/// passes unchanged.
std::string digitPattern(std::string_view text, std::string_view pattern);

/// The first `width` characters of the text, or the text padded with blanks to `width`.
std::string fixedWidth(std::string_view text, std::size_t width);

std::size_t characterCount(std::string_view text);
std::string leftCharacters(std::string_view text, std::size_t count);
/// The text without its last `count` characters; empty when it has no more than those.
std::string withoutLastCharacters(std::string_view text, std::size_t count);

/// Comparison without regard to ASCII case.
bool equalsIgnoringCase(std::string_view left, std::string_view right);
std::string lowerCase(std::string_view text); ///< ASCII letters only
std::string upperCase(std::string_view text); ///< ASCII letters only

/// Splits at every separator; n separators give n + 1 parts, empty ones included.
std::vector<std::string> split(std::string_view text, char separator);

} // namespace velmorant

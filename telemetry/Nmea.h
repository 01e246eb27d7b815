// Sentences of NMEA 0183, with or without the leading "$":
//   $xxRMC,hhmmss.sss,A|V,ddmm.mmmm,N|S,dddmm.mmmm,E|W,knots,course,ddmmyy,...
//   $xxGGA,hhmmss.sss,ddmm.mmmm,N|S,dddmm.mmmm,E|W,quality,satellites,dilution,altitude,M,...
#pragma once

#include <optional>
#include <string_view>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

// The fix of a sentence that starts at the text's beginning; nothing for other sentences. A missing
// or impossible date leaves the fix without a time or marks it; the altitude comes from GGA alone,
// which has no date and no speed.
std::optional<Fix> readRmc(std::string_view sentence);
std::optional<Fix> readGga(std::string_view sentence);

// All RMC sentences of a text in order, each with the altitude of a GGA beside it; where a text has
// no RMC, its GGA sentences. `found` gets each.
template <class Found>
void readSentences(std::string_view text, Found found);

// Digits only; -1 for anything else.
int digits(std::string_view text, std::size_t at, std::size_t count);
// Plain decimal number, or unknown.
double decimal(std::string_view text);
// The field number `index` (0 is the first) of a text separated by `separator`.
std::string_view field(std::string_view text, std::size_t index, char separator = ',');

template <class Found>
void readSentences(std::string_view text, Found found) {
    double altitude = unknown;
    bool rmcSeen = false;
    for (int pass = 0; pass < 2; ++pass) {
        for (std::size_t at = 0; at + 6 <= text.size(); ++at) {
            if (text[at] != 'R' && text[at] != 'G') {
                continue;
            }
            const std::string_view tag = text.substr(at, 4);
            if (tag != "RMC," && tag != "GGA,") {
                continue;
            }
            // The standard allows 82 characters; a text full of names would else be searched to its
            // end for each of them.
            constexpr std::size_t longestSentence = 256;
            const std::string_view rest = text.substr(at, longestSentence);
            const std::string_view sentence = rest.substr(0, rest.find_first_of("\r\n"));
            if (tag == "GGA,") {
                const auto fix = readGga(sentence);
                if (fix && pass == 0) {
                    altitude = fix->altitude;
                } else if (fix && !rmcSeen) {
                    found(*fix);
                }
            } else if (auto fix = readRmc(sentence); fix && pass == 0) {
                rmcSeen = true;
                fix->altitude = altitude;
                altitude = unknown;
                found(*fix);
            }
        }
        if (rmcSeen) {
            return;
        }
    }
}

} // namespace velmorant::telemetry

#pragma once

#include "ports/Texts.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace velmorant {

/// Why a recording has no track, or not all of it.
struct TrackReason {
    enum class Kind {
        NoTrack,    ///< there is none
        PartOfTrack ///< there is one, and something is wrong with it
    };
    Kind kind = Kind::NoTrack;
    std::string code;        ///< the extractor's word for it, for example "cut-off"; may be empty
    std::int64_t amount = 0; ///< what the code counts; 0: nothing
    std::string technical;   ///< one bounded line with the place, in English; may be empty
};

/// The reason in plain words of the present language. A code that nobody knows gives general words.
std::string plainWords(const TrackReason& reason, const Texts& texts);

/// The plain words, and the technical line below them where there is one.
std::string wordsWithDetails(const TrackReason& reason, const Texts& texts);

/// A text from outside as one line that can be shown: at most 300 characters, and no control
/// character.
std::string boundedLine(std::string_view text);

/// The reason of an extractor that ended without a track file. `words` is what it wrote to its
/// error output; a code stands in it as "[code]" in front of a line's text.
TrackReason reasonOfWords(std::string_view words);

} // namespace velmorant

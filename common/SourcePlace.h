#pragma once

namespace velmorant {

/// A place of the source, as std::source_location is one: that is not there with every compiler
/// that builds this.
struct SourcePlace {
    const char* file = "";
    const char* function = ""; ///< its plain name
    int line = 0;

    /// As a default argument: the place of the call.
    static constexpr SourcePlace current(const char* file = __builtin_FILE(),
                                         const char* function = __builtin_FUNCTION(),
                                         int line = __builtin_LINE()) {
        return {file, function, line};
    }
};

} // namespace velmorant

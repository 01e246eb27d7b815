#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velmorant {

/// A language of the program. Its texts stand at the ids from 10000 * index in the string table,
/// in its column of the additions, and in the skins named by its index.
struct Language {
    std::int32_t index;
    std::string_view tag;    ///< BCP 47, as the map page names it
    std::string_view locale; ///< users' locales that begin with it get this language

    constexpr std::int32_t code() const { return 1000 + index; } ///< "mainv" of the configuration
};

/// Every language that the program offers. The first one is used where no other fits. A language is
/// added by a row here, its texts, and its button in the settings dialog's skin. Index 3 stays
/// free: the code 1003 stands for a language that has not been chosen.
inline constexpr std::array languages = {
    Language{1, "en", "en"},
    Language{2, "zh-TW", "zh"},
};

/// The language of an index; the first one for an index that has none.
constexpr const Language& languageOf(std::int32_t index) {
    const auto found = std::find_if(languages.begin(), languages.end(),
                                    [=](const Language& each) { return each.index == index; });
    return found == languages.end() ? languages.front() : *found;
}

/// Where the texts of a language stand in a table that has a column for each.
constexpr std::size_t columnOf(const Language& language) {
    return static_cast<std::size_t>(&language - languages.data());
}

/// The language of a locale in lower case, for example "zh_tw.utf-8"; the first one for a locale
/// without a language of its own.
constexpr const Language& languageOfLocale(std::string_view locale) {
    const auto found = std::find_if(languages.begin(), languages.end(), [=](const Language& each) {
        return locale.starts_with(each.locale);
    });
    return found == languages.end() ? languages.front() : *found;
}

} // namespace velmorant

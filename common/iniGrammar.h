#pragma once

#include <optional>
#include <string_view>

namespace velmorant {

// The grammar of an INI file, shared by everything that reads or writes one.
//
// An optional byte order mark; lines ended by LF or CR LF, the last one perhaps by nothing or CR;
// "[name]" after optional blanks opens a section, what follows the first "]" is ignored;
// "key=value" is a key of the open section, blanks around the key do not count, blanks around the
// value belong to it; a value between two equal quotes is what stands between them; a line that
// starts with ";" is a comment. Blanks are spaces and tabs.

struct IniLine {
    std::string_view content;
    std::string_view ending; ///< "\n", "\r\n" or, in the last line, "\r" or ""
};

struct IniKey {
    std::string_view name;
    std::string_view value; ///< without its quotes
};

inline constexpr std::string_view iniByteOrderMark = "\xef\xbb\xbf";

/// The first line of `rest`, which is shortened by it. `rest` must not be empty.
IniLine takeIniLine(std::string_view& rest);

std::string_view withoutBlanks(std::string_view text); ///< around it
/// The name of the section that a line opens; absent when it opens none.
std::optional<std::string_view> iniSection(std::string_view line);
/// The key of a line; absent when it holds none. The name may be empty.
std::optional<IniKey> iniKey(std::string_view line);
/// Whether a reader takes the first and the last character of a value for its quotes.
bool isQuoted(std::string_view value);

} // namespace velmorant

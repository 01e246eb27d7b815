#include "common/iniGrammar.h"

#include <algorithm>

namespace velmorant {

IniLine takeIniLine(std::string_view& rest) {
    const std::size_t feed = std::min(rest.find('\n'), rest.size());
    const std::string_view whole = rest.substr(0, std::min(feed + 1, rest.size()));
    std::size_t length = feed;
    if (length > 0 && rest[length - 1] == '\r')
        --length;
    rest.remove_prefix(whole.size());
    return {whole.substr(0, length), whole.substr(length)};
}

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::optional<std::string_view> iniSection(std::string_view line) {
    line = withoutBlanks(line);
    const std::size_t end = line.find(']');
    if (!line.starts_with('[') || end == std::string_view::npos)
        return std::nullopt;
    return withoutBlanks(line.substr(1, end - 1));
}

std::optional<IniKey> iniKey(std::string_view line) {
    const std::size_t equals = line.find('=');
    const std::string_view name = withoutBlanks(line.substr(0, equals));
    if (equals == std::string_view::npos || name.starts_with(';'))
        return std::nullopt;
    const std::string_view value = line.substr(equals + 1);
    return IniKey{name, isQuoted(value) ? value.substr(1, value.size() - 2) : value};
}

bool isQuoted(std::string_view value) {
    return value.size() >= 2 && value.front() == value.back() &&
           (value.front() == '"' || value.front() == '\'');
}

} // namespace velmorant

#include "update/Catalogue.h"

#include "common/StepError.h"
#include "common/textRules.h"

namespace velmorant {

namespace {

constexpr std::size_t longestValue = 254;
constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::optional<std::string_view> sectionName(std::string_view line) {
    line = trimmed(line);
    const std::size_t end = line.find(']');
    if (!line.starts_with('[') || end == std::string_view::npos)
        return std::nullopt;
    return trimmed(line.substr(1, end - 1));
}

std::string keptValue(std::string_view value) {
    const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                        (value.front() == '"' || value.front() == '\'');
    if (quoted)
        value = value.substr(1, value.size() - 2);
    value = value.substr(0, value.find('\0'));
    return leftCharacters(value, longestValue);
}

} // namespace

Catalogue::Catalogue(std::string_view bytes) {
    if (bytes.size() > largestFile)
        return;
    if (bytes.starts_with(byteOrderMark))
        bytes.remove_prefix(byteOrderMark.size());
    readLines(bytes);
}

void Catalogue::readLines(std::string_view text) {
    Keys* section = nullptr;
    while (!text.empty()) {
        const std::size_t feed = text.find('\n');
        std::string_view line = text.substr(0, feed);
        text.remove_prefix(feed == std::string_view::npos ? text.size() : feed + 1);
        if (feed != std::string_view::npos && line.ends_with('\r'))
            line.remove_suffix(1);
        if (const auto name = sectionName(line)) {
            // The first of two equal sections wins, also where it lacks a key.
            const auto [place, added] = m_sections.try_emplace(lowerCase(*name));
            section = added ? &place->second : nullptr;
            continue;
        }
        const std::size_t equals = line.find('=');
        const std::string_view key = trimmed(line.substr(0, equals));
        if (section != nullptr && equals != std::string_view::npos && !key.starts_with(';'))
            section->try_emplace(lowerCase(key), keptValue(line.substr(equals + 1)));
    }
}

std::string Catalogue::value(std::string_view section, std::string_view key) const {
    const auto keys = m_sections.find(lowerCase(section));
    if (keys == m_sections.end())
        return {};
    const auto value = keys->second.find(lowerCase(key));
    return value == keys->second.end() ? std::string() : value->second;
}

std::string Catalogue::mainVersion() const {
    return value("config", "mainv");
}

std::optional<std::int16_t> Catalogue::entryCount() const {
    try {
        return toInt16(value("config", "mainall"));
    } catch (const StepError&) {
        return std::nullopt;
    }
}

CatalogueEntry Catalogue::entry(int index) const {
    const std::string section = "NO" + std::to_string(index);
    return {value(section, "LOCAL"), value(section, "REMOTE"), value(section, "VERSION"),
            value(section, "SHA256")};
}

} // namespace velmorant

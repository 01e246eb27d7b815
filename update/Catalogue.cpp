#include "update/Catalogue.h"

#include "common/StepError.h"
#include "common/iniGrammar.h"
#include "common/textRules.h"

namespace velmorant {

namespace {

constexpr std::size_t longestValue = 254;

std::string keptValue(std::string_view value) {
    value = value.substr(0, value.find('\0'));
    return leftCharacters(value, longestValue);
}

} // namespace

Catalogue::Catalogue(std::string_view bytes) {
    if (bytes.size() > largestFile)
        return;
    if (bytes.starts_with(iniByteOrderMark))
        bytes.remove_prefix(iniByteOrderMark.size());
    readLines(bytes);
}

void Catalogue::readLines(std::string_view text) {
    Keys* section = nullptr;
    while (!text.empty()) {
        const std::string_view line = takeIniLine(text).content;
        if (const auto name = iniSection(line)) {
            // The first of two equal sections wins, also where it lacks a key.
            const auto [place, added] = m_sections.try_emplace(lowerCase(*name));
            section = added ? &place->second : nullptr;
            continue;
        }
        const auto key = iniKey(line);
        if (section != nullptr && key)
            section->try_emplace(lowerCase(key->name), keptValue(key->value));
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

#include "app/ProfileText.h"

#include "common/iniGrammar.h"
#include "common/textRules.h"

#include <algorithm>
#include <utility>

namespace velmorant {

namespace {

bool isControl(char letter) {
    const auto code = static_cast<unsigned char>(letter);
    return (code < 0x20 && code != '\t' && code != '\r' && code != '\n') || code == 0x7f;
}

bool hasControl(std::string_view text) {
    return std::any_of(text.begin(), text.end(), isControl);
}

bool fitsOneLine(std::string_view text) {
    return text.find_first_of("\r\n") == std::string_view::npos && !hasControl(text);
}

} // namespace

ProfileText::ProfileText(std::string_view text) {
    const bool onlyText = !hasControl(text);
    if (text.starts_with(iniByteOrderMark)) {
        m_byteOrderMark = iniByteOrderMark;
        text.remove_prefix(iniByteOrderMark.size());
    }
    while (!text.empty()) {
        const IniLine line = takeIniLine(text);
        m_lines.push_back({std::string(line.content), std::string(line.ending)});
    }
    const auto first = std::find_if(m_lines.begin(), m_lines.end(), [](const Line& line) {
        const std::string_view content = withoutBlanks(line.content);
        return !content.empty() && content.front() != ';' && content.front() != '#';
    });
    m_isProfile = onlyText && (first == m_lines.end() || iniSection(first->content));
}

std::optional<ProfileText::Range> ProfileText::find(std::string_view section) const {
    std::size_t header = 0;
    for (; header < m_lines.size(); ++header) {
        const auto name = iniSection(m_lines[header].content);
        if (name && equalsIgnoringCase(*name, withoutBlanks(section)))
            break;
    }
    if (header == m_lines.size())
        return std::nullopt;
    std::size_t end = header + 1;
    while (end < m_lines.size() && !iniSection(m_lines[end].content))
        ++end;
    return Range{header, end};
}

std::optional<std::size_t> ProfileText::find(std::string_view section, std::string_view key) const {
    const auto range = find(section);
    if (!range)
        return std::nullopt;
    for (std::size_t i = range->header + 1; i < range->end; ++i) {
        const auto present = iniKey(m_lines[i].content);
        if (present && equalsIgnoringCase(present->name, withoutBlanks(key)))
            return i;
    }
    return std::nullopt;
}

std::optional<std::string> ProfileText::value(std::string_view section,
                                              std::string_view key) const {
    const auto line = find(section, key);
    if (!line)
        return std::nullopt;
    return std::string(iniKey(m_lines[*line].content)->value);
}

std::vector<std::string> ProfileText::keys(std::string_view section) const {
    std::vector<std::string> names;
    const auto range = find(section);
    for (std::size_t i = range ? range->header + 1 : 0; range && i < range->end; ++i) {
        const auto present = iniKey(m_lines[i].content);
        if (present && !present->name.empty())
            names.emplace_back(present->name);
    }
    return names;
}

bool ProfileText::setValue(std::string_view section, std::string_view key, std::string_view value) {
    const std::string_view name = withoutBlanks(key);
    if (!fitsOneLine(section) || section.find(']') != std::string_view::npos ||
        !fitsOneLine(value) || !fitsOneLine(key) || name.empty() ||
        name.find('=') != std::string_view::npos || name.front() == ';' || name.front() == '[')
        return false;
    // Without a second pair, the reader would take the value's own quotes away.
    const std::string written =
        isQuoted(value) ? '"' + std::string(value) + '"' : std::string(value);
    if (const auto line = find(section, key)) {
        std::string& content = m_lines[*line].content;
        content = content.substr(0, content.find('=') + 1) + written;
        return true;
    }
    if (!find(section))
        insert(m_lines.size(), '[' + std::string(withoutBlanks(section)) + ']');
    const auto range = find(section);
    std::size_t place = range->end;
    while (place > range->header + 1 && withoutBlanks(m_lines[place - 1].content).empty())
        --place;
    insert(place, std::string(name) + '=' + written);
    return true;
}

void ProfileText::removeKey(std::string_view section, std::string_view key) {
    if (const auto line = find(section, key))
        m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(*line));
}

void ProfileText::removeSection(std::string_view section) {
    if (const auto range = find(section))
        m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(range->header),
                      m_lines.begin() + static_cast<std::ptrdiff_t>(range->end));
}

void ProfileText::insert(std::size_t place, std::string content) {
    const std::string ending = usualEnding();
    if (place > 0) {
        std::string& before = m_lines[place - 1].ending;
        if (before.empty())
            before = ending;
        else if (before == "\r")
            before = "\r\n";
    }
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(place),
                   {std::move(content), ending});
}

std::string ProfileText::usualEnding() const {
    return !m_lines.empty() && m_lines.front().ending.starts_with('\r') ? "\r\n" : "\n";
}

std::string ProfileText::text() const {
    std::string text = m_byteOrderMark;
    for (const Line& line : m_lines)
        text += line.content + line.ending;
    return text;
}

} // namespace velmorant

#include "app/ProfileText.h"

#include "common/textRules.h"

#include <algorithm>
#include <utility>

namespace velmorant {

namespace {

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view blanks = " \t";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::optional<std::string_view> sectionName(std::string_view line) {
    line = trimmed(line);
    const std::size_t end = line.find(']');
    if (line.empty() || line.front() != '[' || end == std::string_view::npos)
        return std::nullopt;
    return trimmed(line.substr(1, end - 1));
}

std::optional<std::string_view> keyName(std::string_view line) {
    const std::size_t end = line.find('=');
    const std::string_view key = trimmed(line.substr(0, end));
    if (end == std::string_view::npos || key.starts_with(';'))
        return std::nullopt;
    return key;
}

bool isQuoted(std::string_view value) {
    return value.size() >= 2 && value.front() == value.back() &&
           (value.front() == '"' || value.front() == '\'');
}

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
    if (text.starts_with(byteOrderMark)) {
        m_byteOrderMark = byteOrderMark;
        text.remove_prefix(byteOrderMark.size());
    }
    while (!text.empty()) {
        const std::size_t feed = text.find('\n');
        std::string_view line = text.substr(0, feed);
        std::string ending = feed == std::string_view::npos ? "" : "\n";
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
            ending.insert(0, "\r");
        }
        m_lines.push_back({std::string(line), ending});
        text.remove_prefix(feed == std::string_view::npos ? text.size() : feed + 1);
    }
    const auto first = std::find_if(m_lines.begin(), m_lines.end(), [](const Line& line) {
        const std::string_view content = trimmed(line.content);
        return !content.empty() && content.front() != ';' && content.front() != '#';
    });
    m_isProfile = onlyText && (first == m_lines.end() || sectionName(first->content));
}

std::optional<ProfileText::Range> ProfileText::find(std::string_view section) const {
    std::size_t header = 0;
    for (; header < m_lines.size(); ++header) {
        const auto name = sectionName(m_lines[header].content);
        if (name && equalsIgnoringCase(*name, trimmed(section)))
            break;
    }
    if (header == m_lines.size())
        return std::nullopt;
    std::size_t end = header + 1;
    while (end < m_lines.size() && !sectionName(m_lines[end].content))
        ++end;
    return Range{header, end};
}

std::optional<std::size_t> ProfileText::find(std::string_view section, std::string_view key) const {
    const auto range = find(section);
    if (!range)
        return std::nullopt;
    for (std::size_t i = range->header + 1; i < range->end; ++i) {
        const auto name = keyName(m_lines[i].content);
        if (name && equalsIgnoringCase(*name, trimmed(key)))
            return i;
    }
    return std::nullopt;
}

std::optional<std::string> ProfileText::value(std::string_view section,
                                              std::string_view key) const {
    const auto line = find(section, key);
    if (!line)
        return std::nullopt;
    const std::string& content = m_lines[*line].content;
    std::string_view value = std::string_view(content).substr(content.find('=') + 1);
    if (isQuoted(value))
        value = value.substr(1, value.size() - 2);
    return std::string(value);
}

std::vector<std::string> ProfileText::keys(std::string_view section) const {
    std::vector<std::string> names;
    const auto range = find(section);
    for (std::size_t i = range ? range->header + 1 : 0; range && i < range->end; ++i) {
        const auto name = keyName(m_lines[i].content);
        if (name && !name->empty())
            names.emplace_back(*name);
    }
    return names;
}

bool ProfileText::setValue(std::string_view section, std::string_view key, std::string_view value) {
    const std::string_view name = trimmed(key);
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
        insert(m_lines.size(), '[' + std::string(trimmed(section)) + ']');
    const auto range = find(section);
    std::size_t place = range->end;
    while (place > range->header + 1 && trimmed(m_lines[place - 1].content).empty())
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

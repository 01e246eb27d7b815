#include "app/Journal.h"

#include "common/textRules.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <utility>

namespace velmorant {

namespace {

constexpr std::array<std::string_view, 4> levelNames = {"error", "warning", "info", "debug"};
constexpr std::size_t longestText = 4000;

std::string timeText(std::chrono::system_clock::time_point moment) {
    const auto sinceEpoch =
        std::chrono::duration_cast<std::chrono::milliseconds>(moment.time_since_epoch()).count();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
    std::tm utc{};
    ::gmtime_r(&seconds, &utc);
    std::array<char, 64> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &utc);
    return std::string(text.data(), length) + "." + zeroPadded(sinceEpoch % 1000, 3) + "Z";
}

/// One line whatever the text holds, so that a name on a card cannot look like a line of its own.
std::string onOneLine(std::string_view text) {
    const bool cut = text.size() > longestText;
    std::string line;
    for (const char letter : text.substr(0, longestText)) {
        const auto code = static_cast<unsigned char>(letter);
        if (letter == '\\')
            line += "\\\\";
        else if (letter == '\n')
            line += "\\n";
        else if (letter == '\r')
            line += "\\r";
        else if (letter == '\t')
            line += "\\t";
        else if (code < 0x20 || code == 0x7f) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\x%02x", static_cast<unsigned>(code));
            line += escape.data();
        } else
            line += letter;
    }
    return cut ? line + "..." : line;
}

} // namespace

std::optional<JournalLevel> journalLevelNamed(std::string_view word) {
    for (std::size_t i = 0; i < levelNames.size(); ++i) {
        if (equalsIgnoringCase(word, levelNames[i]))
            return static_cast<JournalLevel>(i);
    }
    return std::nullopt;
}

Journal::Journal(const std::string& path, JournalLevel most, Now now)
    : m_most(most), m_now(std::move(now)) {
    if (!path.empty())
        m_file.open(path, std::ios::app);
}

void Journal::write(JournalLevel level, std::string_view text) {
    if (!m_file.is_open() || level > m_most)
        return;
    // Flushed at once: who reads along must not wait for a full buffer, and a crash must not take
    // the last lines along.
    m_file << timeText(m_now()) << ' ' << levelNames[static_cast<std::size_t>(level)] << ' '
           << onOneLine(text) << std::endl;
}

void Journal::passedOver(std::string_view what, const SourcePlace& where) {
    std::string_view file = where.file;
    if (const std::size_t slash = file.rfind('/'); slash != std::string_view::npos)
        file.remove_prefix(slash + 1);
    write(JournalLevel::Warning, "passed over in " + std::string(where.function) + "() (" +
                                     std::string(file) + ":" + std::to_string(where.line) +
                                     "): " + std::string(what));
}

} // namespace velmorant

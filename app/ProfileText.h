#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmorant {

/// The text of an INI file, editable without losing what is not understood: other lines, comments,
/// blank lines, line endings and order stay. The grammar stands in
/// common/iniGrammar.h.
class ProfileText {
  public:
    explicit ProfileText(std::string_view text);

    /// Whether this is an INI file: no control characters but tab and line ends, and nothing but
    /// blank lines and comments (";" or "#") before its first section. An empty text is one.
    bool isProfile() const { return m_isProfile; }

    /// Absent when there is no such section or key.
    std::optional<std::string> value(std::string_view section, std::string_view key) const;
    std::vector<std::string> keys(std::string_view section) const; ///< as written, in order

    /// Adds section and key where they are missing. False, and nothing changed, for names and
    /// values that the grammar cannot hold.
    bool setValue(std::string_view section, std::string_view key, std::string_view value);
    void removeKey(std::string_view section, std::string_view key); ///< the section stays
    void removeSection(std::string_view section); ///< the header and all lines up to the next one

    std::string text() const;

  private:
    struct Line {
        std::string content;
        std::string ending; ///< "\n", "\r\n" or, in the last line, "\r" or ""
    };
    struct Range {
        std::size_t header;
        std::size_t end; ///< behind the section's last line
    };

    std::optional<Range> find(std::string_view section) const;
    std::optional<std::size_t> find(std::string_view section, std::string_view key) const;
    void insert(std::size_t place, std::string content);
    std::string usualEnding() const;

    std::string m_byteOrderMark;
    std::vector<Line> m_lines;
    bool m_isProfile = false;
};

} // namespace velmorant

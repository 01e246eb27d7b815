#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace velmorant {

/// The two profile functions of an INI file. Grammar of a file: lines; "[name]" opens a section;
/// "key=value" is a key of the open section; a line that starts with ";" or has no "=" is no key.
/// Keys and sections compare without regard to ASCII case; the first of two equal keys, and of two
/// equal sections, wins.
class ProfileFunctions {
  public:
    virtual ~ProfileFunctions() = default;
    /// Fills a buffer of `size` characters and returns it whole, from its first character to the
    /// terminating NUL included, as the platform's function leaves it. The value is cut to size
    /// - 1. Without a key: the section's key names, each ended by a NUL, and one more NUL.
    virtual std::string read(const std::string& file, const std::string& section,
                             const std::optional<std::string>& key, const std::string& defaultValue,
                             std::size_t size) const = 0;
    /// Without a value the key is removed, without a key the section. False when it failed; the
    /// file is then as before: it is replaced as a whole, and a file that is no INI file never.
    virtual bool write(const std::string& file, const std::string& section,
                       const std::optional<std::string>& key,
                       const std::optional<std::string>& value) = 0;
};

} // namespace velmorant

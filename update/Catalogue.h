#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace velmorant {

/// One numbered entry; a key that is missing is "".
struct CatalogueEntry {
    std::string local;  ///< file name relative to the program folder, "/" or "\" between components
    std::string remote; ///< relative to the server base, percent-encoded
    std::string version; ///< only compared for equality
    std::string sha256;  ///< 64 hexadecimal digits, or ""
};

/// A catalogue of the update, read once from its bytes: what was checked is what is used, and a
/// long catalogue costs no more per entry than a short one.
///
/// Grammar: the INI text of ProfileFunctions, with a limit of 254 characters to a value.
///   [config]  mainv    overall version text
///             mainall  number of entries, a 16-bit integer
///   [NO0] [NO1] ...  LOCAL, REMOTE, VERSION and, as an addition, SHA256
class Catalogue {
  public:
    static constexpr std::size_t largestFile = std::size_t{8} << 20;

    explicit Catalogue(std::string_view bytes = {});

    std::string mainVersion() const;
    /// Absent when "mainall" is no 16-bit number.
    std::optional<std::int16_t> entryCount() const;
    CatalogueEntry entry(int index) const;

    std::string value(std::string_view section, std::string_view key) const; ///< "" when missing

  private:
    using Keys = std::unordered_map<std::string, std::string>; ///< by lower-case name

    void readLines(std::string_view text);

    std::unordered_map<std::string, Keys> m_sections; ///< by lower-case name
};

} // namespace velmorant

#pragma once

#include <compare>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velmorant {

struct PathRefusal {
    std::string reason;
};

/// The place of a file below the program folder. Only names that cannot lead out of that folder,
/// on any host, become one.
class ProgramPath {
  public:
    /// Reads a catalogue's "LOCAL": components between "/" or "\", UTF-8. Refused are: absolute
    /// names, drives and streams (":"), empty components, "." and "..", components that end in a
    /// dot or a blank, device names (CON, COM1 ..., with any extension), control characters, the
    /// characters that some host gives a meaning (< > " | ? *), more than 16 components, and what
    /// belongs to the user or to the update itself (isReserved).
    static std::variant<ProgramPath, PathRefusal> fromCatalogue(std::string_view local);
    /// A fixed path of the program's own code, components between "/".
    static ProgramPath own(std::string_view path);

    const std::vector<std::string>& components() const { return m_components; }
    const std::string& name() const { return m_components.back(); }
    std::string text() const; ///< with "/" between the components
    auto operator<=>(const ProgramPath&) const = default;

  private:
    explicit ProgramPath(std::vector<std::string> components)
        : m_components(std::move(components)) {}

    std::vector<std::string> m_components; ///< at least one
};

/// The suffix of a file that is being written beside its destination.
inline constexpr std::string_view besideEnding = ".part~";
/// The suffix of the main program's last version, kept beside the present one.
inline constexpr std::string_view keptEnding = ".old";
/// The suffix of the main program's next version, until the present one has ended.
inline constexpr std::string_view nextEnding = ".next";

/// Whether a catalogue may not name this path: the update's own files, the configuration, the
/// hand-over file of the list, hidden files, and recordings, pictures, lists and tracks anywhere
/// but in the folders that hold nothing but the program's own files.
bool isReserved(const ProgramPath& path);

/// Whether a catalogue's "REMOTE" may be appended to the server base: no control characters, no
/// "..", no fragment. Blanks and other characters are written percent-encoded by the maker.
bool isRemotePath(std::string_view remote);

} // namespace velmorant

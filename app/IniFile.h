#pragma once

#include "ports/ProfileFunctions.h"

#include <string>
#include <vector>

namespace velmorant {

/// Whether a value reached the file. The program continues either way; callers that must inform the
/// user check the result.
enum class IniFileWrite { Kept, NotKept };

/// The INI file object: one file and one current section of it, to which every read and write goes.
/// It reports no errors of its own: what is missing reads as "".
class IniFile {
  public:
    explicit IniFile(ProfileFunctions& profile);

    void open(const std::string& path, const std::string& section);
    void setSection(const std::string& name); ///< of the same file

    /// The value up to 254 characters, blanks around it kept; "" when the file, the section or the
    /// key is missing. Creates nothing.
    std::string readKey(const std::string& key) const;
    IniFileWrite writeKey(const std::string& key, const std::string& value);
    IniFileWrite deleteKey(const std::string& key);
    IniFileWrite deleteSection(); ///< the current one
    std::vector<std::string> listKeys() const;
    /// Writes "version" = "1.0" in the named section; the current section stays.
    IniFileWrite stampVersion(const std::string& section);

  private:
    ProfileFunctions& m_profile;
    std::string m_path;
    std::string m_section;
};

} // namespace velmorant

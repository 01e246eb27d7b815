#pragma once

#include "common/textRules.h"
#include "ports/ProfileFunctions.h"
#include "tests/fakes/IgnoringCase.h"

#include <map>
#include <set>
#include <string>

namespace velmorant::fakes {

using ProfileKeys = std::map<std::string, std::string, IgnoringCase>;

/// INI files in memory, as file and section -> key -> value; the case of sections and keys does not
/// matter. A file in `refused` cannot be written.
class FakeProfileFunctions : public ProfileFunctions {
  public:
    std::string read(const std::string& file, const std::string& section,
                     const std::optional<std::string>& key, const std::string& defaultValue,
                     std::size_t size) const override {
        const auto keys = contents.find({file, section});
        if (!key) {
            std::string names;
            if (keys != contents.end()) {
                for (const auto& entry : keys->second)
                    names += entry.first + '\0';
            }
            return names + '\0';
        }
        std::string value = defaultValue;
        if (keys != contents.end() && keys->second.contains(*key))
            value = keys->second.at(*key);
        if (!withTerminator)
            return value;
        return leftCharacters(value, size - 1) + '\0';
    }
    bool write(const std::string& file, const std::string& section,
               const std::optional<std::string>& key,
               const std::optional<std::string>& value) override {
        if (refused.contains(file))
            return false;
        if (!key)
            contents.erase({file, section});
        else if (!value)
            contents[{file, section}].erase(*key);
        else
            contents[{file, section}][*key] = *value;
        writes.push_back(file + " [" + section + "] " + key.value_or("") + "=" +
                         value.value_or(""));
        return true;
    }

    std::map<std::pair<std::string, std::string>, ProfileKeys, IgnoringCase> contents;
    std::set<std::string> refused;
    std::vector<std::string> writes;
    bool withTerminator = true; ///< false: the buffer holds no NUL
};

} // namespace velmorant::fakes

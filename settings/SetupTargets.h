#pragma once

#include <string>

namespace velmorant {

/// What the settings dialog asks of the rest of the program.
class SetupTargets {
  public:
    virtual ~SetupTargets() = default;
    /// Writes a key of section "config" of the machine-wide configuration file; false when it could
    /// not be kept.
    virtual bool writeConfiguration(const std::string& key, const std::string& value) = 0;
    virtual void saveRecordingList() = 0; ///< writes the list's hand-over file
    virtual void removeSavedList() = 0;   ///< nobody is going to read the hand-over file
    virtual void redrawChart() = 0;       ///< in the new speed unit
    virtual void endProgram() = 0;        ///< asks nothing
};

} // namespace velmorant

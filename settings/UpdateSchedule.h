#pragma once

#include "common/ErrorLog.h"
#include "ports/Clock.h"
#include "ports/HostPaths.h"
#include "ports/ProfileFunctions.h"
#include "ports/Texts.h"
#include "ports/Timer.h"

#include <functional>
#include <string>

namespace velmorant {

struct UpdateScheduleNeeds {
    Timer& timer;
    const Clock& clock;
    const Texts& texts;
    ProfileFunctions& profile;
    const HostPaths& paths;
    std::function<void()> open; ///< opens the update by itself (UpdateOpening::Automatic)
    ErrorLog* errors = nullptr; ///< records what the handlers pass over
};

/// When the update opens by itself: some seconds after the start, at most once a day, and only when
/// an http or https server base is configured and the program folder is the user's own.
///
/// The day of the last time is the key "UpdateDay", as "20261231", in section "config" of the
/// machine-wide configuration file.
class UpdateSchedule {
  public:
    explicit UpdateSchedule(UpdateScheduleNeeds needs);
    void Start();

  private:
    bool isDue() const;
    std::string today() const;

    UpdateScheduleNeeds m_needs;
};

} // namespace velmorant

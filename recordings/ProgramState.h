#pragma once

#include "common/SettingsState.h"
#include "recordings/LoadedTracks.h"
#include "recordings/clsDot.h"

#include <memory>

namespace velmorant {

/// What is program-wide. One object of the wiring, handed in by reference.
struct ProgramState {
    SettingsState settings;
    LoadedTracks loadedTracks;
    std::shared_ptr<clsDot> currentTrack; ///< of the recording that plays; null: none
};

} // namespace velmorant

#pragma once

#include "playback/frmChild.h"
#include "ports/HostPaths.h"
#include "ports/Skin.h"
#include "ports/Texts.h"
#include "recordings/ProgramState.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace velmorant {

/// What the card works with; all of it must outlive its user.
struct MomentCardNeeds {
    PlayerControls& controls;
    frmChild& player;
    Skin& frame;      ///< with the places of the card
    Skin& controlBar; ///< with "place.elapsed", "place.duration" and "place.unit"
    HostPaths& paths;
    Texts& texts;
    ProgramState& state;
    /// Minutes from UTC to the system's zone at a moment (seconds since 1970, UTC).
    std::function<int(std::int64_t)> zoneOffset;
};

/// Describes what is shown: the recording's name, the clock time of the position in the system's
/// zone and in UTC, the place, and the position in the recording. Where the extractor knew only the
/// recorder's own clock, that time is shown as it stands and labelled so.
class MomentCard {
  public:
    explicit MomentCard(const MomentCardNeeds& needs) : m_needs(needs) {}

    void Show(); ///< the present position; empties the card while nothing is open
    /// The position a dragged progress slider stands for; it stays until EndPreview().
    void Preview(double percent);
    /// The slider was let go. The card shows it until the player has reached it.
    void EndPreview();
    void ShowUnit(); ///< of the speed digits

  private:
    void showPosition(double position);
    void showPlace(double position);
    void clear();

    MomentCardNeeds m_needs;
    std::optional<double> m_previewed; ///< percent
};

} // namespace velmorant

#pragma once

#include "desktop/wiring/Panes.h"
#include "desktop/wiring/Rooms.h"

#include <vector>

namespace velmorant {

/// The keys of the player, for those that the focused pane has no use for:
///   Space, K  play and pause      Left, Right  5 s (with Shift 1 s)    ",", "."  one picture
///   Up, Down  volume              M  mute      N, P  next, previous    1 to 5  the rates
///   F  full screen                Esc  back    S  save the picture
std::vector<int> playerKeys();
void useKey(const KeyPress& press, Rooms& rooms, Panes& panes);

/// Adds the keys to the tool tips of the control bar's elements.
void nameKeys(SkinView& controlBar);

} // namespace velmorant

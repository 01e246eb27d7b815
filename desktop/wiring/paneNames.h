#pragma once

#include "desktop/wiring/Panes.h"
#include "ports/Texts.h"

namespace velmorant {

/// Names whatever is not named by a language's skin, in the language of the program, for screen
/// readers and as tool tips. Call it before the skins are loaded; the texts must outlive the panes.
void namePanes(Panes& panes, const Texts& texts);

/// Adds the player's keys to the tool tips of the control bar's elements, which its skin has named.
void nameKeys(SkinView& controlBar);

} // namespace velmorant

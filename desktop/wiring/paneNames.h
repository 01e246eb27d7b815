#pragma once

#include "desktop/wiring/Panes.h"
#include "ports/Texts.h"

namespace velmorant {

/// Gives a name, in the language of the program, to whatever no skin of one language names: for
/// screen readers and as tool tips. Before the skins are loaded; the texts must outlive the panes.
void namePanes(Panes& panes, const Texts& texts);

/// Adds the player's keys to the tool tips of the control bar's elements, which its skin has named.
void nameKeys(SkinView& controlBar);

} // namespace velmorant

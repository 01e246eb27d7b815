#pragma once

#include "tools/check_skin/DissectedSkin.h"
#include "tools/check_skin/SkinKind.h"

#include <QImage>

namespace velmorant {

/// One picture with every state of every button and knob of a skin, a row an element, a column a
/// state, so that they can be looked at together.
QImage stateSheet(const DissectedSkin& drawing, SkinKind kind);

} // namespace velmorant

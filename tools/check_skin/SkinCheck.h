#pragma once

#include "tools/check_skin/DissectedSkin.h"
#include "tools/check_skin/SkinKind.h"

#include <QString>
#include <QStringList>

namespace velmorant {

/// The least contrast of a text and of a sign against what lies under it (the WCAG formula).
constexpr double leastTextContrast = 4.5;
constexpr double leastSignContrast = 3.0;

/// Everything that is wrong with a skin of this kind, one sentence each; empty: the skin is good.
QStringList checkSkin(const DissectedSkin& drawing, SkinKind kind);

/// WCAG contrast of two opaque colours, 1..21.
double contrastOf(QRgb one, QRgb other);

} // namespace velmorant

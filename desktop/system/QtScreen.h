#pragma once

#include "ports/Screen.h"

namespace velmorant {

/// The primary screen in the toolkit's own pixels, which the toolkit scales on dense screens.
///
/// 120 dots per inch are reported as such (12 twips per pixel); every other density is left to the
/// toolkit and seen as 96 (15 twips per pixel).
class QtScreen : public Screen {
  public:
    int width() const override;
    int height() const override;
    int twipsPerPixelX() const override;
    int twipsPerPixelY() const override;

    /// The twips per pixel for a density.
    static int twipsPerPixel(double dotsPerInch);
};

} // namespace velmorant

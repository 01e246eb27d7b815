#pragma once

#include "ports/Screen.h"
#include "ports/Window.h"

namespace velmorant {

struct PixelSize {
    int width;
    int height;
};

/// Gives the window a size in pixels and centres it on the screen.
inline void sizeAndCentre(Window& window, const Screen& screen, PixelSize size) {
    const int width = size.width * screen.twipsPerPixelX();
    const int height = size.height * screen.twipsPerPixelY();
    window.resize(width, height);
    window.move(screen.width() / 2 - width / 2, screen.height() / 2 - height / 2);
}

} // namespace velmorant

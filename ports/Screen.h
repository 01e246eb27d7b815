#pragma once

#include <string>

namespace velmorant {

struct PixelRectangle {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool operator==(const PixelRectangle&) const = default;
};

class Screen {
  public:
    virtual ~Screen() = default;
    virtual int width() const = 0;          ///< twips
    virtual int height() const = 0;         ///< twips
    virtual int twipsPerPixelX() const = 0; ///< 15 at 96 dots per inch, 12 at 120
    virtual int twipsPerPixelY() const = 0;
};

/// Copies an area of the screen and keeps the copy until the next one.
class ScreenCapture {
  public:
    virtual ~ScreenCapture() = default;
    /// Pixels; parts outside the screen are black. Throws StepError when nothing could be copied.
    virtual void capture(const PixelRectangle& area) = 0;
    /// Writes the copy as Windows BMP whatever the name says: beside, then renamed. Throws
    /// StepError with path and reason.
    virtual void savePicture(const std::string& path) = 0;
};

} // namespace velmorant

#pragma once

#include <cstddef>
#include <string>

namespace velmorant {

/// The control `LstMP4` in report view. The rows themselves belong to the logic, whose list of
/// recordings tells the control what changed. Indexes are 1-based.
class ListControl {
  public:
    virtual ~ListControl() = default;
    /// The row at a place of the control, in pixels; 0 for none.
    virtual int hitTest(int x, int y) const = 0;
    virtual int columnLeft(int column) const = 0; ///< twips, 1-based header
    virtual void setColumnWidth(int column, int twips) = 0;
    virtual void setFontSize(double points) = 0;
    virtual int rowHeight() const = 0; ///< twips
};

/// The picture `picBg` behind the rows.
class ListBackground {
  public:
    virtual ~ListBackground() = default;
    virtual void setBackColour(int colour) = 0; ///< red + 256 * green + 65536 * blue
    virtual void setHeight(int twips) = 0;
    virtual void draw() = 0;
};

} // namespace velmorant

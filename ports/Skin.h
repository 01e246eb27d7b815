#pragma once

#include <cstdint>
#include <string>

namespace velmorant {

/// The skin of one window: a drawing whose elements are addressed by name, without regard to case.
/// Clicks and slider changes of the user arrive by element name; changes by the program do not.
/// A call for an element that the drawing lacks does nothing.
class Skin {
  public:
    virtual ~Skin() = default;
    /// Loads the drawing and applies it to the window; false when it cannot be read as a drawing.
    virtual bool load(const std::string& path) = 0;
    virtual void setOn(const std::string& element, bool on) = 0; ///< selected, switched on
    virtual bool isOn(const std::string& element) const = 0;
    virtual void setEnabled(const std::string& element, bool enabled) = 0;
    virtual void setValue(const std::string& element, double value) = 0; ///< a slider, its 0..100
    virtual double value(const std::string& element) const = 0;
    /// Shows digit 0..9 of the strip `datum` in a display item ("A1").
    virtual void setDigit(const std::string& element, int digit) = 0;
    virtual void refresh(const std::string& element) = 0; ///< draws it anew
    virtual std::int32_t backColour() const = 0;          ///< red + 256 * green + 65536 * blue
    /// A text place of the drawing ("place.status").
    virtual void setText(const std::string& element, const std::string& text) = 0;
};

} // namespace velmorant

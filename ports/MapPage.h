#pragma once

#include <string>

namespace velmorant {

/// The calls into the map page. A caller asks ready() first and skips the call otherwise; nothing
/// is queued. The texts go into the page unescaped: they hold digits, signs, points, "!", "|" and
/// "/" only. Throws StepError for any other text.
class MapPage {
  public:
    virtual ~MapPage() = default;
    virtual bool ready() const = 0;
    /// The page needs no pauses within a route. False until a page has said so.
    virtual bool takesWholeRoutes() const { return false; }
    /// Adds to the route being drawn: the recording's number, then groups of longitude "!"
    /// latitude "|"; or "Over", which completes it.
    virtual void getContentHis(const std::string& routeText) = 0;
    /// Moves the car: longitude "|" latitude "|" dot index "|" heading.
    virtual void MoveCar(const std::string& place) = 0;
    /// Removes the drawn track of a recording by its number in at least three digits.
    virtual void clearHistroy(const std::string& number) = 0;
};

} // namespace velmorant

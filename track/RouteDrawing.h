#pragma once

#include "ports/MapPage.h"
#include "ports/ProgressWindow.h"
#include "ports/Texts.h"
#include "ports/Waits.h"
#include "recordings/ProgramState.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace velmorant {

/// What the drawing of loaded tracks works with; everything outlives it.
struct RouteDrawingNeeds {
    ProgressWindow& window;
    Waits& waits;
    Texts& texts;
    MapPage& page;
    ProgramState& state;
};

/// Streams loaded tracks to the map page once more. Where that takes a while, it shows how far it
/// has come and can be cancelled.
class RouteDrawing {
  public:
    explicit RouteDrawing(const RouteDrawingNeeds& needs) : m_needs(needs) {}

    /// Draws the tracks of these recordings and leaves each track's cursor at its last dot; a
    /// number without a track is passed over. Returns how many of the numbers were dealt with:
    /// after a "Cancel" the route at hand is completed and those behind it are not begun.
    [[nodiscard]] std::size_t draw(const std::vector<std::int32_t>& numbers);

  private:
    std::int64_t dots(const std::vector<std::int32_t>& numbers) const;
    std::size_t drawEach(const std::vector<std::int32_t>& numbers,
                         const std::function<void(std::size_t)>& beforeEach,
                         const std::function<void()>& afterDot);
    std::size_t drawInWindow(const std::vector<std::int32_t>& numbers, std::int64_t all);
    void drawOne(std::int32_t number, const std::function<void()>& afterDot);

    RouteDrawingNeeds m_needs;
    bool m_cancelled = false;
};

} // namespace velmorant

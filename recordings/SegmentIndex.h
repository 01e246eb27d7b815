#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace velmorant {

/// Finds the first of a row of rectangles that holds a point. The right and bottom edges lie
/// outside, so a rectangle without width or height holds nothing.
///
/// Neighbouring rectangles of a route lie close together, so the bounds of each group of them
/// rule out most of the route at once.
class SegmentIndex {
  public:
    /// Appends the rectangle that two opposite corners span.
    void add(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    /// The 1-based number of the first rectangle that holds the point; 0 for none.
    std::size_t firstHolding(std::int32_t x, std::int32_t y) const;

  private:
    struct Rectangle {
        std::int32_t left = std::numeric_limits<std::int32_t>::max();
        std::int32_t right = std::numeric_limits<std::int32_t>::min();
        std::int32_t top = std::numeric_limits<std::int32_t>::max();
        std::int32_t bottom = std::numeric_limits<std::int32_t>::min();

        bool holds(std::int32_t x, std::int32_t y) const {
            return left <= x && x < right && top <= y && y < bottom;
        }
        void unite(const Rectangle& other);
    };

    static void addToGroup(std::vector<Rectangle>& groups, std::size_t group,
                           const Rectangle& rectangle);

    std::vector<Rectangle> m_rectangles;
    std::vector<Rectangle> m_groups;      ///< bounds of each groupSize rectangles
    std::vector<Rectangle> m_largeGroups; ///< bounds of each groupSize groups
};

} // namespace velmorant

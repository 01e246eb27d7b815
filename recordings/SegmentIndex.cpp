#include "recordings/SegmentIndex.h"

#include <algorithm>

namespace velmorant {

namespace {

constexpr std::size_t groupSize = 32;

} // namespace

void SegmentIndex::Rectangle::unite(const Rectangle& other) {
    left = std::min(left, other.left);
    right = std::max(right, other.right);
    top = std::min(top, other.top);
    bottom = std::max(bottom, other.bottom);
}

void SegmentIndex::addToGroup(std::vector<Rectangle>& groups, std::size_t group,
                              const Rectangle& rectangle) {
    if (groups.size() <= group)
        groups.emplace_back();
    groups[group].unite(rectangle);
}

void SegmentIndex::add(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
    const Rectangle rectangle{std::min(x1, x2), std::max(x1, x2), std::min(y1, y2),
                              std::max(y1, y2)};
    const std::size_t group = m_rectangles.size() / groupSize;
    m_rectangles.push_back(rectangle);
    // What holds nothing must not widen the bounds: a parked car leaves its groups without any.
    const bool empty = rectangle.left == rectangle.right || rectangle.top == rectangle.bottom;
    const Rectangle bounds = empty ? Rectangle{} : rectangle;
    addToGroup(m_groups, group, bounds);
    addToGroup(m_largeGroups, group / groupSize, bounds);
}

std::size_t SegmentIndex::firstHolding(std::int32_t x, std::int32_t y) const {
    for (std::size_t large = 0; large < m_largeGroups.size(); ++large) {
        if (!m_largeGroups[large].holds(x, y))
            continue;
        const std::size_t groupEnd = std::min((large + 1) * groupSize, m_groups.size());
        for (std::size_t group = large * groupSize; group < groupEnd; ++group) {
            if (!m_groups[group].holds(x, y))
                continue;
            const std::size_t end = std::min((group + 1) * groupSize, m_rectangles.size());
            for (std::size_t i = group * groupSize; i < end; ++i)
                if (m_rectangles[i].holds(x, y))
                    return i + 1;
        }
    }
    return 0;
}

} // namespace velmorant

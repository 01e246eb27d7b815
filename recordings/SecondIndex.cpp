#include "recordings/SecondIndex.h"

#include <algorithm>

namespace velmorant {

void SecondIndex::add(std::int32_t second) {
    if (m_seconds.empty() || second < m_seconds.back())
        m_runStarts.push_back(m_seconds.size());
    m_seconds.push_back(second);
}

std::size_t SecondIndex::firstPairHolding(std::int32_t second, std::size_t pairCount) const {
    for (std::size_t run = 0; run < m_runStarts.size(); ++run) {
        const std::size_t first = m_runStarts[run];
        if (first >= pairCount)
            return 0;
        const std::size_t runEnd =
            run + 1 < m_runStarts.size() ? m_runStarts[run + 1] : m_seconds.size();
        const std::size_t end = std::min(runEnd, pairCount + 1);
        if (end - first < 2 || m_seconds[first] > second || m_seconds[end - 1] < second)
            continue;
        const auto begin = m_seconds.begin();
        const auto upper = std::lower_bound(begin + static_cast<std::ptrdiff_t>(first + 1),
                                            begin + static_cast<std::ptrdiff_t>(end), second);
        // 0-based upper end of the pair is the 1-based number of its lower end.
        return static_cast<std::size_t>(upper - begin);
    }
    return 0;
}

} // namespace velmorant

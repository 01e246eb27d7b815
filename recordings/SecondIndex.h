#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmorant {

/// Finds the first pair of neighbouring seconds that holds a second.
///
/// Seconds nearly always rise, so they are kept as runs that never fall: within a run the pair is
/// found by halving, and the step down between two runs holds nothing.
class SecondIndex {
  public:
    void add(std::int32_t second);
    /// The smallest i in 1..pairCount with second(i) <= second <= second(i + 1); 0 for none.
    /// `pairCount` must be less than the number of seconds.
    std::size_t firstPairHolding(std::int32_t second, std::size_t pairCount) const;

  private:
    std::vector<std::int32_t> m_seconds;
    std::vector<std::size_t> m_runStarts; ///< 0-based, rising
};

} // namespace velmorant

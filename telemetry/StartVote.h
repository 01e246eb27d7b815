// What the clock showed at the recording's start, by the vote of all readings.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace velmorant::telemetry {

class StartVote {
  public:
    void add(double start) {
        ++total_;
        const auto candidate = static_cast<std::int64_t>(std::llround(start));
        fractions_ = fractions_ || std::abs(start - static_cast<double>(candidate)) > 0.0005;
        for (auto& [value, count] : counts_) {
            if (value == candidate) {
                ++count;
                return;
            }
        }
        constexpr std::size_t mostCandidates = 256;
        if (counts_.size() < mostCandidates) {
            counts_.emplace_back(candidate, 1);
        }
    }
    bool empty() const { return counts_.empty(); }
    // Of whole seconds what most agree on, of equals the first: a clock that leaps or stumbles
    // moves no other second. Fractions near a half are rounded up or down by chance, so there the
    // first counts that a fair share agrees with to within a second.
    std::int64_t winner() const {
        if (fractions_) {
            for (const auto& [value, count] : counts_) {
                if (support(value) * 4 >= total_) {
                    return value;
                }
            }
        }
        return std::max_element(counts_.begin(), counts_.end(),
                                [](const auto& a, const auto& b) { return a.second < b.second; })
            ->first;
    }

  private:
    std::size_t support(std::int64_t candidate) const {
        std::size_t votes = 0;
        for (const auto& [value, count] : counts_) {
            votes += std::abs(value - candidate) <= 1 ? count : 0;
        }
        return votes;
    }

    std::vector<std::pair<std::int64_t, std::size_t>> counts_;
    std::size_t total_ = 0;
    bool fractions_ = false;
};

} // namespace velmorant::telemetry

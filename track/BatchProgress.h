#pragma once

#include "ports/Clock.h"
#include "ports/Texts.h"

#include <chrono>
#include <string>

namespace velmorant {

/// What the window says of a run over several recordings, and what is said at its end.
class BatchProgress {
  public:
    /// Begins now. Clock and texts outlive it.
    BatchProgress(const Clock& clock, const Texts& texts, int total);

    /// The next recording is begun: its name, its place, and about how long the rest will take once
    /// that can be told.
    std::string begin(const std::string& name);
    /// The recording begun last gave its track, whole or in part.
    void read() { ++m_read; }
    /// How many tracks were read, and how many of the recordings gave none; those that a "Cancel"
    /// left count as neither.
    std::string summary(int failed) const;

  private:
    std::string timeLeft() const;

    const Clock& m_clock;
    const Texts& m_texts;
    std::chrono::milliseconds m_start;
    int m_total;
    int m_begun = 0;
    int m_read = 0;
};

} // namespace velmorant

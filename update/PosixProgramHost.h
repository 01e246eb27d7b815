#pragma once

#include "update/MainProgramUpdate.h"

#include <chrono>

namespace velmorant {

/// The programs of a system that lists its processes under /proc.
class PosixProgramHost : public ProgramHost {
  public:
    /// `watched` is how long a started program is watched.
    explicit PosixProgramHost(std::chrono::milliseconds watched);

    bool isRunning(const std::string& path) override; ///< any process of this user's
    void waitABit() override;
    ProgramStart startAndWatch(const std::string& path, const std::string& folder) override;

  private:
    std::chrono::milliseconds m_watched;
};

} // namespace velmorant

#pragma once

#include <cstdint>
#include <string>

namespace velmorant {

/// What the update window shows.
class UpdateProgress {
  public:
    virtual ~UpdateProgress() = default;
    virtual void showSum(int value, int maximum) = 0;                      ///< prgSum: files
    virtual void showSingle(std::int64_t value, std::int64_t maximum) = 0; ///< prgSingle: bytes
    virtual void showStatus(const std::string& text) = 0;
};

} // namespace velmorant

#pragma once

#include "common/ErrorLog.h"

#include <string>
#include <vector>

namespace velmorant::fakes {

/// Keeps what was noted, in order.
class FakeErrorLog : public ErrorLog {
  public:
    void passedOver(std::string_view what, const SourcePlace& where) override {
        noted.emplace_back(what);
        functions.emplace_back(where.function);
    }

    std::vector<std::string> noted;
    std::vector<std::string> functions; ///< that passed them over
};

} // namespace velmorant::fakes

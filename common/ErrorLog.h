#pragma once

#include "common/SourcePlace.h"

#include <string_view>

namespace velmorant {

/// Records the errors that handlers pass over, so that they can be found afterwards. Code without
/// one is handed null.
class ErrorLog {
  public:
    virtual ~ErrorLog() = default;
    /// `where` is the place that passed the error over. Throws nothing.
    virtual void passedOver(std::string_view what, const SourcePlace& where) = 0;
};

} // namespace velmorant

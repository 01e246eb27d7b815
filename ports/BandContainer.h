#pragma once

#include <string>

namespace velmorant {

/// A container of named bands, each of which hosts one window.
class BandContainer {
  public:
    virtual ~BandContainer() = default;
    /// Throws StepError for a band that is missing.
    virtual void setHeight(const std::string& band, int twips) = 0;
    virtual void setChild(const std::string& band, const std::string& window) = 0;
    virtual void recalculateLayout() = 0;
};

} // namespace velmorant

#pragma once

#include "ports/BandContainer.h"

#include <map>
#include <string>

namespace velmorant::fakes {

class FakeBandContainer : public BandContainer {
  public:
    void setHeight(const std::string& band, int twips) override { heights[band] = twips; }
    void setChild(const std::string& band, const std::string& window) override {
        children[band] = window;
    }
    void recalculateLayout() override { ++layouts; }

    std::map<std::string, int> heights; ///< twips
    std::map<std::string, std::string> children;
    int layouts = 0;
};

} // namespace velmorant::fakes

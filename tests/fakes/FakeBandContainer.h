#pragma once

#include "common/StepError.h"
#include "ports/BandContainer.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace velmorant::fakes {

/// Records what it was told. A band in `missing` cannot be addressed.
class FakeBandContainer : public BandContainer {
  public:
    void setHeight(const std::string& band, int twips) override {
        require(band);
        heights[band] = twips;
        call("setHeight " + band);
    }
    void setChild(const std::string& band, const std::string& window) override {
        require(band);
        children[band] = window;
        call("setChild " + band);
    }
    void recalculateLayout() override {
        ++layouts;
        call("recalculateLayout");
    }

    std::map<std::string, int> heights; ///< twips
    std::map<std::string, std::string> children;
    int layouts = 0;
    std::set<std::string> missing;
    std::vector<std::string>* log = nullptr; ///< shared with other fakes to see an order of calls

  private:
    void require(const std::string& band) const {
        if (missing.count(band) > 0)
            throw StepError("no band " + band);
    }
    void call(const std::string& text) {
        if (log != nullptr)
            log->push_back(text);
    }
};

} // namespace velmorant::fakes

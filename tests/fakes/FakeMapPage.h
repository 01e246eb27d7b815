#pragma once

#include "ports/MapPage.h"

#include <string>
#include <vector>

namespace velmorant::fakes {

/// Records what the page was told; whether it is ready is the test's.
class FakeMapPage : public MapPage {
  public:
    bool ready() const override { return isReady; }
    void getContentHis(const std::string& text) override {
        routes.push_back(text);
        if (log != nullptr)
            log->push_back("route");
    }
    void MoveCar(const std::string& place) override { cars.push_back(place); }
    void clearHistroy(const std::string& number) override { cleared.push_back(number); }

    bool isReady = true;
    std::vector<std::string> routes;
    std::vector<std::string> cars;
    std::vector<std::string> cleared;
    std::vector<std::string>* log = nullptr; ///< shared with other fakes to see an order of calls
};

} // namespace velmorant::fakes

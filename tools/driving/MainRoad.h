#pragma once

#include "tools/driving/ProgramDriver.h"

#include <string>

namespace velmorant {

/// The main road, step by step: the list, all extracted, routes, a recording plays and the car
/// moves, a click on another recording's route. Prints what it sees and leaves a picture of the
/// screen after each step. Throws std::runtime_error when a step does not come within its limit.
class MainRoad {
  public:
    MainRoad(Application& program, std::string picturesFolder);
    void drive();

  private:
    void showList();
    void extractAll();
    void play(int row);
    void clickOtherRoute(int row);
    int rowOfAnotherRoute(int row, MapProbe::RoutePlace& place);
    void tell(const std::string& step, const std::string& seen);
    std::string played();

    ProgramDriver m_driver;
    std::string m_folder;
    int m_pictures = 0;
};

} // namespace velmorant

#pragma once

#include "desktop/wiring/Application.h"
#include "tools/driving/MapProbe.h"

#include <functional>
#include <string>

namespace velmorant {

/// Uses the running program as a user does, by the mouse on its widgets, and looks at what came of
/// it. Waits run the event loop; limits are in milliseconds.
class ProgramDriver {
  public:
    explicit ProgramDriver(Application& program);

    static bool waitUntil(const std::function<bool()>& condition, int limit);

    // the mouse
    void click(SkinView& skin, const std::string& element);
    void clickList(const std::string& element) { click(*pane().list.skin, element); }
    void clickControl(const std::string& element) { click(*pane().control.skin, element); }
    void clickMark(int row);
    void doubleClickRow(int row);

    // what is seen
    bool windowShown(); ///< with the map page loaded
    bool extracting();
    int rowCount();
    int extractedRows();
    int rowsWithPlaces(); ///< whose track holds a place that the map can draw
    std::string path(int row);
    std::shared_ptr<clsDot> track(int row); ///< null: none is loaded
    long number(int row);                   ///< of the row's route on the map
    bool playing(int row);                  ///< the player plays that row's recording
    double position();                      ///< seconds; -1 while unknown
    MapProbe& map() { return m_map; }

    Panes& pane() { return m_program.panes(); }
    Rooms& rooms() { return m_program.rooms(); }

  private:
    QPoint placeOf(int row, int column);

    Application& m_program;
    MapProbe m_map;
};

} // namespace velmorant

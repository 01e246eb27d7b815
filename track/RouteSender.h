#pragma once

#include "ports/MapPage.h"
#include "ports/Waits.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace velmorant {

/// Streams one recording's route to the map page: its number, then ten points to a call, then
/// "Over". After each call the page gets time to draw; without it thousands of points would stall
/// it. A page that takes whole routes gets the calls in one go, and its time behind them. Points
/// that come while the page is not ready are skipped, none is kept for later.
class RouteSender {
  public:
    /// `hurried` is asked before each pause: when it says so, the rest goes without pauses.
    RouteSender(MapPage& page, Waits& waits, std::int32_t recordingNumber,
                std::function<bool()> hurried = {});

    /// Adds a point; a call goes out at every tenth index. `lonLat` is longitude "|" latitude.
    void point(std::int64_t index, std::string_view lonLat);
    void flush();    ///< sends what is left
    void complete(); ///< sends "Over"

  private:
    enum class Pause { Full, EventsOnly };
    void call(const std::string& text, Pause pause);

    MapPage& m_page;
    Waits& m_waits;
    std::function<bool()> m_hurried;
    std::string m_buffer;
};

} // namespace velmorant

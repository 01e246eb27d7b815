#pragma once

#include "playback/PositionFollow.h"
#include "playback/frmChild.h"
#include "ports/Chart.h"
#include "ports/Texts.h"
#include "recordings/ProgramState.h"

#include <cstdint>
#include <string>

namespace velmorant {

enum class ChartMode { Speed, Acceleration };

/// What the chart works with; all of it must outlive its user.
struct CurveChartNeeds {
    Chart& chart; ///< TCLine
    Texts& texts;
    frmChild& player;
    PositionFollow& follow;
    ProgramState& state;
};

/// The chart under the picture: the current track as a speed curve (series 1) or as the curves of
/// G x, G y and G z (series 1 to 3), point i of the track at x = i - 1. Series 3 also serves as the
/// red marker of the second that was clicked.
class CurveChart {
  public:
    explicit CurveChart(const CurveChartNeeds& needs) : m_needs(needs) {}

    ChartMode mode() const { return m_mode; }
    std::string tag() const { return m_mode == ChartMode::Speed ? "SPEED" : "GS"; }
    /// When the window is built: takes its texts, which stay even when the language changes, and
    /// draws in the speed mode.
    void Load();
    /// The mode of the next drawing; without a track the empty chart of that mode is shown at once.
    void setMode(ChartMode mode);

    /// Draws the current track anew, in the present unit; without one the chart is empty, its axes
    /// those of a track at rest. Leaves the track's cursor.
    void Draw();
    void Clear(); ///< an empty chart, without a cursor
    /// A click: `point` is the 0-based point of the curve under the mouse, -1 for none. Seeks to
    /// its second, moves the car and marks it.
    void Click(std::int32_t point);

    /// Time and values of a point for the pointer: "" for none. In the G mode also the strongest
    /// reading of the second, which the mean in the curve hides.
    std::string PointText(std::int32_t point) const;

  private:
    void clearSeries();
    void draw(const clsDot& track);
    void nameAxes();
    void drawSpeed(const clsDot& track);
    void drawAcceleration(const clsDot& track);
    void setBottomAxis(std::int32_t points);
    std::string accelerationText(const clsDot& track, std::int32_t index) const;

    CurveChartNeeds m_needs;
    ChartMode m_mode = ChartMode::Speed;
    std::string m_speedTitle;
    std::string m_timeTitle;
    std::string m_strongest;
};

} // namespace velmorant

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velmorant {

/// The series' own colour.
inline constexpr std::int32_t automaticColour = 536870912;

enum class ChartAxis { Left, Bottom };

/// The line chart `TCLine` with four series, numbered 0 to 3, and a cursor on a layer of its own.
class Chart {
  public:
    virtual ~Chart() = default;
    virtual void clearSeries(int series) = 0;
    /// `colour` is red + 256 * green + 65536 * blue, or automaticColour.
    virtual void addXY(int series, double x, double y, const std::string& label,
                       std::int32_t colour) = 0;
    /// An absent bound is found from the points.
    virtual void setAxis(ChartAxis axis, std::optional<double> minimum,
                         std::optional<double> maximum) = 0;
    virtual void setAxisTitle(ChartAxis axis, const std::string& title) = 0;
    /// The line that follows the play position; absent: none.
    virtual void setCursor(std::optional<double> x) = 0;
    /// Names of series 1 to 3 in a legend; an empty name has no entry.
    virtual void setLegend(int series, const std::string& name) = 0;
    virtual void redraw() = 0;
};

} // namespace velmorant

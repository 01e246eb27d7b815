#pragma once

#include "ports/Chart.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velmorant::fakes {

struct ChartPoint {
    double x;
    double y;
    std::string label;
    std::int32_t colour;
    bool operator==(const ChartPoint&) const = default;
};

struct AxisRange {
    std::optional<double> minimum;
    std::optional<double> maximum;
};

class FakeChart : public Chart {
  public:
    void clearSeries(int number) override {
        series.at(static_cast<std::size_t>(number)).clear();
        calls.push_back("clear " + std::to_string(number));
    }
    void addXY(int number, double x, double y, const std::string& label,
               std::int32_t colour) override {
        series.at(static_cast<std::size_t>(number)).push_back({x, y, label, colour});
    }
    void setAxis(ChartAxis axis, std::optional<double> minimum,
                 std::optional<double> maximum) override {
        axes[axis] = {minimum, maximum};
    }
    void setAxisTitle(ChartAxis axis, const std::string& title) override { titles[axis] = title; }
    void setCursor(std::optional<double> x) override {
        cursor = x;
        ++cursorMoves;
    }
    void setLegend(int number, const std::string& name) override { legend[number] = name; }
    void redraw() override { ++redraws; }

    std::array<std::vector<ChartPoint>, 4> series;
    std::map<ChartAxis, AxisRange> axes;
    std::map<ChartAxis, std::string> titles;
    std::map<int, std::string> legend;
    std::optional<double> cursor;
    int cursorMoves = 0;
    int redraws = 0;
    std::vector<std::string> calls;
};

} // namespace velmorant::fakes

#pragma once

#include "ports/ListControl.h"
#include "recordings/RecordingListListener.h"

#include <map>
#include <string>
#include <vector>

namespace velmorant::fakes {

/// Records what the list was told. A point's row and a column's place are set by the test.
class FakeListControl : public ListControl, public RecordingListListener {
  public:
    void rowsAdded(int first, int count) override { call("added", first, count); }
    void rowsRemoved(int first, int count) override { call("removed", first, count); }
    void rowsChanged(int first, int count) override { call("changed", first, count); }
    void selectionChanged(int index) override { selections.push_back(index); }
    int hitTest(int, int) const override { return rowUnderMouse; }
    int columnLeft(int column) const override {
        const auto left = columnLefts.find(column);
        return left == columnLefts.end() ? 0 : left->second;
    }
    void setColumnWidth(int column, int twips) override { columnWidths[column] = twips; }
    void setFontSize(double points) override { fontSize = points; }
    int rowHeight() const override { return heightOfRow; }

    int rowUnderMouse = 0;
    int heightOfRow = 255;
    double fontSize = 0.0;
    std::map<int, int> columnLefts;  ///< twips, by 1-based column
    std::map<int, int> columnWidths; ///< twips, by 1-based column
    std::vector<int> selections;
    std::vector<std::string> calls; ///< for example "changed 1 20"

  private:
    void call(const std::string& what, int first, int count) {
        calls.push_back(what + " " + std::to_string(first) + " " + std::to_string(count));
    }
};

class FakeListBackground : public ListBackground {
  public:
    void setBackColour(int newColour) override { colour = newColour; }
    void setHeight(int twips) override { height = twips; }
    void draw() override { ++draws; }

    int colour = 0;
    int height = 0; ///< twips
    int draws = 0;
};

} // namespace velmorant::fakes

#pragma once

#include "ports/NativeWindow.h"

#include <utility>
#include <vector>

namespace velmorant::fakes {

class FakeNativeWindow : public NativeWindow {
  public:
    WindowProcedure windowProcedure() const override { return procedure; }
    void setWindowProcedure(WindowProcedure newProcedure) override {
        procedure = std::move(newProcedure);
        ++changes;
    }
    int systemMenuItemCount() const override { return menuItems; }
    void deleteSystemMenuItem(int position) override { deleted.push_back(position); }

    WindowProcedure procedure;
    int changes = 0;
    int menuItems = 7;
    std::vector<int> deleted;
};

} // namespace velmorant::fakes

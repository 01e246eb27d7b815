#pragma once

#include "ports/Window.h"

#include <functional>
#include <string>

namespace velmorant::fakes {

class FakeWindow : public Window {
  public:
    void show() override { ++shows; }
    void showModal() override {
        ++modalShows;
        if (whileShown)
            whileShown();
    }
    void close() override { ++closes; }
    void setForeground() override { ++foregrounds; }
    void setCaption(const std::string& text) override { caption = text; }
    void move(int newLeft, int newTop) override {
        x = newLeft;
        y = newTop;
    }
    void resize(int newWidth, int newHeight) override {
        width = newWidth;
        height = newHeight;
    }
    int left() const override { return x; }
    int top() const override { return y; }

    int shows = 0;
    int modalShows = 0;
    int closes = 0;
    int foregrounds = 0;
    int x = 0; ///< twips, as the sizes
    int y = 0;
    int width = 0;
    int height = 0;
    std::string caption;
    std::function<void()> whileShown;
};

} // namespace velmorant::fakes

#pragma once

#include "ports/ProgressWindow.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace velmorant::fakes {

/// `whileShown` plays the window's own event loop; the call returns with it.
class FakeProgressWindow : public ProgressWindow {
  public:
    void showModal(const std::string& title) override {
        titles.push_back(title);
        shown = true;
        if (whileShown)
            whileShown();
    }
    void showWhile(const std::string& title, const std::function<void()>& work) override {
        titles.push_back(title);
        shown = true;
        try {
            work();
        } catch (...) {
            close();
            throw;
        }
        close();
    }
    void setText(const std::string& text) override { texts.push_back(text); }
    void setValue(int percent) override { values.push_back(percent); }
    void close() override {
        shown = false;
        ++closed;
    }
    void onCancel(std::function<void()> listener) override { m_cancel = std::move(listener); }

    void cancel() {
        if (m_cancel)
            m_cancel();
    }

    bool shown = false;
    int closed = 0;
    std::vector<std::string> titles;
    std::vector<std::string> texts;
    std::vector<int> values;
    std::function<void()> whileShown;

  private:
    std::function<void()> m_cancel;
};

} // namespace velmorant::fakes

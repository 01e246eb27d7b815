#pragma once

#include <functional>
#include <string>

namespace velmorant {

/// A small modal window with a progress bar and a "Cancel" button.
class ProgressWindow {
  public:
    virtual ~ProgressWindow() = default;
    /// Shows it and returns when close() was called.
    virtual void showModal(const std::string& title) = 0;
    /// Shows it for as long as `work` runs. Only what the work lets through while it waits reaches
    /// the program; an error of the work comes out again.
    virtual void showWhile(const std::string& title, const std::function<void()>& work) = 0;
    virtual void setText(const std::string& text) = 0;
    virtual void setValue(int percent) = 0; ///< 0..100
    virtual void close() = 0;
    virtual void onCancel(std::function<void()> listener) = 0;
};

} // namespace velmorant

#pragma once

#include <cstdint>
#include <string>

namespace velmorant {

/// One of the program's windows as its logic sees it. Sizes and places are in twips (Screen).
class Window {
  public:
    virtual ~Window() = default;
    virtual void show() = 0;
    /// Shows it and returns when it was closed.
    virtual void showModal() = 0;
    virtual void close() = 0; ///< without the close request
    virtual void setForeground() = 0;
    virtual void setCaption(const std::string& caption) = 0;
    virtual void move(int left, int top) = 0;
    virtual void resize(int width, int height) = 0;
    virtual int left() const = 0;
    virtual int top() const = 0;
};

} // namespace velmorant

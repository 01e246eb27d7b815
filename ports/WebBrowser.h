#pragma once

#include <functional>
#include <string>

namespace velmorant {

/// The browser control `HTMLView`. The page runs in a process of its own, so a value of the page
/// arrives through a call back; it comes only while no other handler runs or waits.
class WebBrowser {
  public:
    virtual ~WebBrowser() = default;
    virtual void navigate(const std::string& address) = 0;
    virtual std::string documentUrl() const = 0;
    /// Runs a script text; errors of the script stay in the page.
    virtual void execScript(const std::string& text, const std::string& language) = 0;
    /// Reads a property of the page's window as text; absent values arrive as "".
    virtual void readWindowProperty(const std::string& name,
                                    std::function<void(const std::string&)> result) = 0;
    virtual void setWindowProperty(const std::string& name, const std::string& value) = 0;
    virtual void setBodyScroll(const std::string& value) = 0; ///< "no": no scroll bars
    virtual void attachToBackground() = 0; ///< shows the control in the pane's background bar
};

} // namespace velmorant

#pragma once

#include "app/Journal.h"
#include "ports/WebBrowser.h"

#include <string>

namespace velmorant {

/// The browser control with every script call logged.
class JournalledBrowser : public WebBrowser {
  public:
    JournalledBrowser(WebBrowser& browser, Journal& journal)
        : m_browser(browser), m_journal(journal) {}
    void navigate(const std::string& address) override;
    std::string documentUrl() const override { return m_browser.documentUrl(); }
    void execScript(const std::string& text, const std::string& language) override;
    void readWindowProperty(const std::string& name,
                            std::function<void(const std::string&)> result) override;
    void setWindowProperty(const std::string& name, const std::string& value) override;
    void setBodyScroll(const std::string& value) override { m_browser.setBodyScroll(value); }
    void attachToBackground() override { m_browser.attachToBackground(); }

  private:
    WebBrowser& m_browser;
    Journal& m_journal;
};

} // namespace velmorant

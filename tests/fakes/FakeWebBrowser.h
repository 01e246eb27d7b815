#pragma once

#include "ports/WebBrowser.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace velmorant::fakes {

/// Records navigation and scripts. Property values are given back at once, or by deliver() when
/// `holdAnswers` is set.
class FakeWebBrowser : public WebBrowser {
  public:
    void navigate(const std::string& address) override { navigations.push_back(address); }
    std::string documentUrl() const override { return url; }
    void execScript(const std::string& text, const std::string& language) override {
        scripts.push_back(text);
        languages.push_back(language);
        if (log != nullptr)
            log->push_back(text);
    }
    void readWindowProperty(const std::string& name,
                            std::function<void(const std::string&)> result) override {
        if (name == "varLocal")
            ++reads;
        if (holdAnswers)
            m_held.emplace_back(name, std::move(result));
        else
            result(properties[name]);
    }
    void setWindowProperty(const std::string& name, const std::string& value) override {
        properties[name] = value;
        ++propertyWrites;
    }
    void setBodyScroll(const std::string& value) override { bodyScroll = value; }
    void attachToBackground() override { ++attached; }

    void deliver() {
        auto held = std::move(m_held);
        m_held.clear();
        for (auto& [name, result] : held)
            result(properties[name]);
    }

    std::string url;
    std::string bodyScroll;
    bool holdAnswers = false;
    int attached = 0;
    int reads = 0; ///< of the picked place
    int propertyWrites = 0;
    std::vector<std::string> navigations;
    std::vector<std::string> scripts;
    std::vector<std::string> languages;
    std::map<std::string, std::string> properties;
    std::vector<std::string>* log = nullptr; ///< shared with other fakes to see an order of calls

  private:
    std::vector<std::pair<std::string, std::function<void(const std::string&)>>> m_held;
};

} // namespace velmorant::fakes

#pragma once

#include "ports/Skin.h"
#include "tests/fakes/IgnoringCase.h"

#include <map>
#include <string>
#include <vector>

namespace velmorant::fakes {

/// Keeps what it was told by the elements' names, without regard to case.
class FakeSkin : public Skin {
  public:
    bool load(const std::string& path) override {
        loaded.push_back(path);
        return loadable;
    }
    void setOn(const std::string& element, bool state) override {
        on[element] = state;
        calls.push_back("setOn " + element + (state ? " 1" : " 0"));
    }
    bool isOn(const std::string& element) const override {
        const auto state = on.find(element);
        return state != on.end() && state->second;
    }
    void setEnabled(const std::string& element, bool state) override { enabled[element] = state; }
    void setValue(const std::string& element, double value) override {
        values[element] = value;
        calls.push_back("setValue " + element);
    }
    double value(const std::string& element) const override {
        const auto found = values.find(element);
        return found == values.end() ? 0.0 : found->second;
    }
    void setDigit(const std::string& element, int digit) override { digits[element] = digit; }
    void refresh(const std::string& element) override { refreshed.push_back(element); }
    std::int32_t backColour() const override { return colour; }
    void setText(const std::string& element, const std::string& text) override {
        texts[element] = text;
    }

    bool loadable = true;
    std::int32_t colour = 0;
    std::vector<std::string> loaded;
    std::vector<std::string> calls;
    std::vector<std::string> refreshed;
    std::map<std::string, bool, IgnoringCase> on;
    std::map<std::string, bool, IgnoringCase> enabled;
    std::map<std::string, double, IgnoringCase> values;
    std::map<std::string, int, IgnoringCase> digits;
    std::map<std::string, std::string, IgnoringCase> texts;
};

} // namespace velmorant::fakes

#pragma once

#include "ports/Texts.h"

#include <map>
#include <string>

namespace velmorant::fakes {

/// Every text is its own name: byId(13009) is "<13009>", byOffset(3009) the same, and
/// addition("cancel") is "<cancel>". `texts` overrides.
class FakeTexts : public Texts {
  public:
    std::string byId(int id) const override { return named(std::to_string(id)); }
    std::string byOffset(int offset) const override { return byId(languageBase + offset); }
    std::string addition(const std::string& name) const override { return named(name); }

    int languageBase = 10000;
    std::map<std::string, std::string> texts;

  private:
    std::string named(const std::string& name) const {
        const auto text = texts.find(name);
        return text == texts.end() ? "<" + name + ">" : text->second;
    }
};

} // namespace velmorant::fakes

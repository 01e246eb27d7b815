#pragma once

#include "ports/StatusLine.h"

#include <string>
#include <vector>

namespace velmorant::fakes {

class FakeStatusLine : public StatusLine {
  public:
    void show(const std::string& text) override { texts.push_back(text); }
    std::string last() const { return texts.empty() ? std::string() : texts.back(); }

    std::vector<std::string> texts;
};

} // namespace velmorant::fakes

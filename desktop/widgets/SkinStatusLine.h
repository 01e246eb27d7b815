#pragma once

#include "ports/StatusLine.h"
#include <string>

namespace velmorant {

class Skin;

/// The status line as a text place of a skin.
class SkinStatusLine : public StatusLine {
  public:
    /// The skin must outlive the line.
    SkinStatusLine(Skin& skin, std::string place);
    void show(const std::string& text) override;

  private:
    Skin& m_skin;
    std::string m_place;
};

} // namespace velmorant

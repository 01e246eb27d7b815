#pragma once

#include <string>

namespace velmorant {

/// The language-dependent texts, in the language of the present settings.
class Texts {
  public:
    virtual ~Texts() = default;
    /// The text of an id, for example 13009; throws StepError when the table has no such row.
    virtual std::string byId(int id) const = 0;
    /// byId(language base + offset), for example 3009.
    virtual std::string byOffset(int offset) const = 0;
    /// A text of the program's own additions, by name, in the present language (English when the
    /// language is neither of the two). Throws StepError for an unknown name.
    virtual std::string addition(const std::string& name) const = 0;
};

} // namespace velmorant

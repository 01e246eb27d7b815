#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace velmorant {

/// An XML document of records: elements of one name, anywhere in the document, whose child elements
/// hold the texts. Ill-formed input, a document type and entities of its own are refused; nothing
/// outside the document is ever read.
class XmlDocument {
  public:
    virtual ~XmlDocument() = default;
    /// Throw StepError (file, line, reason) and leave the document empty.
    virtual void load(const std::string& path) = 0;
    virtual void loadText(const std::string& text) = 0;
    /// Writes the document, UTF-8: beside, then renamed. An empty document writes an empty file.
    virtual void save(const std::string& path) = 0;
    /// Selects all elements of that name in document order and returns their number.
    virtual std::size_t selectElements(const std::string& name) = 0;
    /// The text of the first child of that name of the selected element `index` (from 0); absent
    /// when there is no such child.
    virtual std::optional<std::string_view> childText(std::size_t index,
                                                      std::string_view child) const = 0;
    /// The text of the first element of that name anywhere; absent when there is none.
    virtual std::optional<std::string> elementText(const std::string& name) const = 0;
    /// An attribute of the element whose text elementText() gives; absent when there is none.
    virtual std::optional<std::string> elementAttribute(const std::string& name,
                                                        const std::string& attribute) const = 0;
    /// An attribute of the document's root; absent when there is none.
    virtual std::optional<std::string> rootAttribute(const std::string& name) const = 0;
};

} // namespace velmorant

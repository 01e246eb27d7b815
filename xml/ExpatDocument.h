#pragma once

#include "ports/XmlDocument.h"

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

namespace velmorant {

/// What a document may grow to before it is refused. A track of ten hours has about 36,000 samples,
/// 750,000 elements and 30 MB.
struct XmlLimits {
    std::size_t bytes = std::size_t{256} * 1024 * 1024;
    std::size_t elements = 8'000'000;
    std::size_t attributes = 8'000'000;
    std::size_t depth = 100;
};

/// XmlDocument over expat, which is fed piece by piece: the file is never held as a whole.
///
/// Read: XML 1.0 in UTF-8, UTF-16, ISO-8859-1 or US-ASCII. Refused: ill-formed input, any document
/// type declaration and hence any entity of its own, other encodings, and more than the limits.
/// The text of an element is all character data between its tags, that of its descendants included,
/// as it stands. Names count as written, with their prefix.
///
/// save() writes the elements, attributes and texts; comments and processing instructions are not
/// kept. An element without contents is written as "<name/>".
class ExpatDocument : public XmlDocument {
  public:
    explicit ExpatDocument(XmlLimits limits = {});

    void load(const std::string& path) override;
    void loadText(const std::string& text) override;
    void save(const std::string& path) override;
    std::size_t selectElements(const std::string& name) override;
    std::optional<std::string_view> childText(std::size_t index,
                                              std::string_view child) const override;
    std::optional<std::string> elementText(const std::string& name) const override;
    std::optional<std::string> elementAttribute(const std::string& name,
                                                const std::string& attribute) const override;
    std::optional<std::string> rootAttribute(const std::string& name) const override;

  private:
    friend class ExpatBuilder;
    using Index = std::uint32_t;
    static constexpr Index none = UINT32_MAX;

    /// Elements stand in document order. Their texts are ranges of one string: the character data
    /// of the whole document, so that an element's range spans those of its descendants.
    struct Element {
        Index name = none;
        Index firstChild = none;
        Index nextSibling = none;
        Index firstAttribute = 0;
        Index attributeEnd = 0;
        Index textBegin = 0;
        Index textEnd = 0;
    };
    struct Attribute {
        Index name = none;
        std::string value;
    };

    /// Puts the next piece of input into the buffer and returns its length; 0 at the end.
    using Source = std::function<std::size_t(char* buffer, std::size_t size)>;

    void clear();
    void parse(const std::string& sourceName, const Source& source);
    Index nameIndex(std::string_view name) const;
    Index internName(std::string_view name);
    const Element* firstElement(std::string_view name) const; ///< null: none
    std::optional<std::string> attributeOf(const Element& element, std::string_view name) const;
    std::string_view textOf(const Element& element) const;
    std::string serialized() const;
    void writeStart(std::string& out, const Element& element) const;

    XmlLimits m_limits;
    std::vector<std::string> m_names;
    std::map<std::string, Index, std::less<>> m_nameIndexes;
    std::vector<Element> m_elements;
    std::vector<Attribute> m_attributes;
    std::string m_text;
    std::vector<Index> m_selected;
};

} // namespace velmorant
